#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <string>

namespace program {

/// Reads numbers at any place of a file; nothing outside of it.
class ByteReader {
 public:
  explicit ByteReader(const std::string& path) : file_(path, std::ios::binary) {
    file_.seekg(0, std::ios::end);
    size_ = file_ ? static_cast<std::uint64_t>(file_.tellg()) : 0;
  }

  [[nodiscard]] std::uint64_t size() const {
    return size_;
  }

  void setBigEndian(bool isBigEndian) {
    isBigEndian_ = isBigEndian;
  }

  /// The unsigned number of `bytes` bytes (1 to 8) at `at`, unless the file ends before it.
  std::optional<std::uint64_t> number(std::uint64_t at, std::size_t bytes) {
    unsigned char raw[8] = {};
    if (!read(at, raw, bytes)) {
      return std::nullopt;
    }
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
      value = value << 8U | raw[isBigEndian_ ? i : bytes - 1 - i];
    }
    return value;
  }

  /// Text of `bytes` bytes at `at`; empty if the file ends before it.
  std::string text(std::uint64_t at, std::size_t bytes) {
    if (at > size_ || bytes > size_ - at) {
      return {};
    }
    std::string text(bytes, ' ');
    return read(at, text.data(), bytes) ? text : std::string{};
  }

 private:
  bool read(std::uint64_t at, void* to, std::size_t bytes) {
    if (at > size_ || bytes > size_ - at) {
      return false;
    }
    file_.seekg(static_cast<std::streamoff>(at));
    return static_cast<bool>(
        file_.read(static_cast<char*>(to), static_cast<std::streamsize>(bytes)));
  }

  std::ifstream file_;
  std::uint64_t size_ = 0;
  bool isBigEndian_ = false;
};

}  // namespace program
