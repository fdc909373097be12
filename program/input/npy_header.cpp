#include "input/npy_header.h"

#include <cctype>
#include <charconv>
#include <limits>
#include <string_view>

#include "base/failure.h"
#include "input/byte_reader.h"

namespace program {
namespace {

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

/// Reads the header's text, a dictionary as Python writes it.
class DictionaryReader {
 public:
  DictionaryReader(const std::string& path, std::string_view text) : path_(path), rest_(text) {}

  NpyHeader read() {
    NpyHeader header;
    bool hasType = false;
    bool hasShape = false;
    wants('{');
    while (!takes('}')) {
      const std::string_view key = string();
      wants(':');
      if (key == "descr") {
        takeType(header);
        hasType = true;
      } else if (key == "fortran_order") {
        refuseFortranOrder();
      } else if (key == "shape") {
        takeShape(header);
        hasShape = true;
      } else {
        throw damaged();
      }
      takes(',');
    }
    if (!hasType || !hasShape || !nextIs('\0')) {
      throw damaged();
    }
    return header;
  }

 private:
  [[nodiscard]] Failure damaged() const {
    return refused(path_, "is a damaged NPY file: its header cannot be read");
  }

  /// The next character that is no blank; '\0' at the end.
  bool nextIs(char wanted) {
    while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_.front())) != 0) {
      rest_.remove_prefix(1);
    }
    return (rest_.empty() ? '\0' : rest_.front()) == wanted;
  }

  bool takes(char wanted) {
    const bool isNext = nextIs(wanted) && !rest_.empty();
    rest_.remove_prefix(isNext ? 1 : 0);
    return isNext;
  }

  void wants(char wanted) {
    if (!takes(wanted)) {
      throw damaged();
    }
  }

  std::string_view string() {
    const char quote = nextIs('"') ? '"' : '\'';
    wants(quote);
    const std::size_t end = rest_.find(quote);
    if (end == std::string_view::npos) {
      throw damaged();
    }
    const std::string_view text = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    return text;
  }

  void takeType(NpyHeader& header) {
    const std::string_view type = nextIs('[') ? std::string_view{} : string();
    for (const std::string_view known : {"f4", "f8", "u2", "i2"}) {
      if (type.size() == 3 && type.substr(1) == known && (type[0] == '<' || type[0] == '>')) {
        header.isBigEndian = type[0] == '>';
        header.kind = known[0];
        header.itemSize = static_cast<std::size_t>(known[1] - '0');
        return;
      }
    }
    throw refused(path_, "its array is of type '" + std::string(type) +
                             "', not of floats or 16-bit integers. Save array.astype(float)");
  }

  void refuseFortranOrder() {
    nextIs('T');
    if (rest_.substr(0, 4) == "True") {
      throw refused(path_, "its array is in Fortran order. Save numpy.ascontiguousarray(array)");
    }
    if (rest_.substr(0, 5) != "False") {
      throw damaged();
    }
    rest_.remove_prefix(5);
  }

  void takeShape(NpyHeader& header) {
    wants('(');
    while (!takes(')')) {
      std::uint64_t size = 0;
      nextIs('0');
      const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), size);
      if (error != std::errc{}) {
        throw damaged();
      }
      rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
      header.shape.push_back(size);
      takes(',');
    }
  }

  const std::string& path_;
  std::string_view rest_;
};

std::string headerText(const std::string& path, std::uint64_t& dataAt) {
  // NumPy's own limit for files that are not trusted.
  constexpr std::uint64_t kLongest = 10000;
  ByteReader bytes(path);
  if (bytes.text(0, 6) != "\x93NUMPY") {
    throw refused(path, "is no NPY file");
  }
  const auto version = bytes.number(6, 1).value_or(0);
  const std::size_t lengthSize = version == 1 ? 2 : 4;
  const auto length = bytes.number(8, lengthSize).value_or(0);
  const std::string text = length > kLongest ? "" : bytes.text(8 + lengthSize, length);
  if (version < 1 || version > 3 || text.empty()) {
    throw refused(path, "is a damaged NPY file, or cut short in its header");
  }
  dataAt = 8 + lengthSize + length;
  return text;
}

void requireShape(const std::string& path, const NpyHeader& header) {
  const bool isRange = header.shape.size() == 2;
  const bool isSpace = header.shape.size() == 3 && header.shape[2] == 3;
  std::string shape;
  for (const std::uint64_t size : header.shape) {
    shape += (shape.empty() ? "" : ", ") + std::to_string(size);
  }
  if (!isRange && !isSpace) {
    throw refused(path, "its array has the shape (" + shape +
                            "), not (lines, samples) of z or (lines, samples, 3) of x, y, z");
  }
  const std::uint64_t fileSize = ByteReader(path).size();
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
  std::uint64_t left = (fileSize - header.dataAt) / header.itemSize;
  bool isExact = (fileSize - header.dataAt) % header.itemSize == 0;
  for (const std::uint64_t size : header.shape) {
    isExact = isExact && size > 0 && size <= kMost && left % size == 0;
    left = size == 0 ? 0 : left / size;
  }
  if (left != 1 || !isExact) {
    throw refused(path, "its length of " + std::to_string(fileSize) +
                            " bytes does not match the shape (" + shape +
                            ") in its header. It may be cut short: copy or save it again");
  }
}

}  // namespace

NpyHeader readNpyHeader(const std::string& path) {
  std::uint64_t dataAt = 0;
  const std::string text = headerText(path, dataAt);
  NpyHeader header = DictionaryReader(path, text).read();
  header.dataAt = dataAt;
  requireShape(path, header);
  return header;
}

}  // namespace program
