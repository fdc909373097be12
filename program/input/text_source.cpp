#include "input/text_source.h"

#include <cstring>

#include "base/failure.h"

namespace program {
namespace {

constexpr std::size_t kLongestLine = 8U << 20U;

bool isComment(std::string_view text) {
  const std::size_t at = text.find_first_not_of(" \t\r");
  return at == std::string_view::npos || text[at] == '#' || text.substr(at, 2) == "//";
}

}  // namespace

TextSource::TextSource(const std::string& path)
    : path_(path), file_(path, std::ios::binary), buffer_(kLongestLine, '\0') {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string mark(kByteOrderMark.size(), '\0');
  file_.read(mark.data(), static_cast<std::streamsize>(mark.size()));
  file_.clear();
  file_.seekg(mark == kByteOrderMark ? static_cast<std::streamoff>(mark.size()) : 0);
}

bool TextSource::next(std::string_view& row) {
  while (nextLine(row)) {
    ++number_;
    if (row.find('\0') != std::string_view::npos) {
      throw Failure(ExitCode::badInput, path_ + ":" + std::to_string(number_) +
                                            ": is no text. Save it as ASCII or UTF-8");
    }
    if (!isComment(row)) {
      return true;
    }
  }
  return false;
}

bool TextSource::nextLine(std::string_view& line) {
  const void* newline = std::memchr(&buffer_[at_], '\n', end_ - at_);
  if (newline == nullptr && file_) {
    std::memmove(buffer_.data(), &buffer_[at_], end_ - at_);
    end_ -= at_;
    at_ = 0;
    file_.read(&buffer_[end_], static_cast<std::streamsize>(buffer_.size() - end_));
    const std::size_t old = end_;
    end_ += static_cast<std::size_t>(file_.gcount());
    newline = std::memchr(&buffer_[old], '\n', end_ - old);
    if (newline == nullptr && end_ == buffer_.size()) {
      throw Failure(ExitCode::badInput, path_ + ":" + std::to_string(number_ + 1) +
                                            ": is no text of numbers: the line is longer than " +
                                            std::to_string(kLongestLine >> 20U) + " MB");
    }
  }
  const std::size_t stop =
      newline == nullptr
          ? end_
          : static_cast<std::size_t>(static_cast<const char*>(newline) - buffer_.data());
  line = std::string_view(&buffer_[at_], stop - at_);
  const bool isLine = newline != nullptr || stop > at_;
  at_ = newline == nullptr ? stop : stop + 1;
  return isLine;
}

}  // namespace program
