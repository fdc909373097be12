#include "input/ply_header.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <sstream>

#include "base/failure.h"
#include "input/byte_reader.h"

namespace program {
namespace {

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

/// Collects the statements of a header line by line.
class HeaderReader {
 public:
  explicit HeaderReader(const std::string& path) : path_(path) {}

  PlyHeader header;

  void take(const std::string& line) {
    std::istringstream text(line);
    std::vector<std::string> words;
    for (std::string word; text >> word;) {
      words.push_back(std::move(word));
    }
    const std::string keyword = words.empty() ? "" : words.front();
    if (keyword == "format" && words.size() == 3 && words[2] == "1.0") {
      takeFormat(words[1]);
    } else if (keyword == "obj_info") {
      takeInfo(words);
    } else if (keyword == "element" && words.size() == 3) {
      header.elements.push_back({words[1], countOf(words[2]), {}});
    } else if (keyword == "property" && !header.elements.empty()) {
      takeProperty(words);
    } else if (keyword != "comment") {
      throw damaged(line);
    }
  }

 private:
  [[nodiscard]] Failure damaged(const std::string& line) const {
    constexpr std::size_t kShown = 60;
    return refused(path_,
                   "is a damaged PLY file: its header holds '" + line.substr(0, kShown) + "'");
  }

  [[nodiscard]] std::uint64_t countOf(const std::string& text) const {
    std::uint64_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc{} || end != text.data() + text.size() ||
        count > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
      throw damaged(text);
    }
    return count;
  }

  void takeFormat(const std::string& name) {
    header.isText = name == "ascii";
    header.isBigEndian = name == "binary_big_endian";
    if (!header.isText && !header.isBigEndian && name != "binary_little_endian") {
      throw damaged(name);
    }
  }

  /// Other programs write texts of their own here.
  void takeInfo(const std::vector<std::string>& words) {
    if (words.size() == 3 && words[1] == "num_cols") {
      header.columns = countOf(words[2]);
    } else if (words.size() == 3 && words[1] == "num_rows") {
      header.rows = countOf(words[2]);
    }
  }

  [[nodiscard]] PlyType typeOf(const std::string& name) const {
    static const std::map<std::string, PlyType> types = {
        {"char", {'i', 1}},  {"int8", {'i', 1}},    {"uchar", {'u', 1}},  {"uint8", {'u', 1}},
        {"short", {'i', 2}}, {"int16", {'i', 2}},   {"ushort", {'u', 2}}, {"uint16", {'u', 2}},
        {"int", {'i', 4}},   {"int32", {'i', 4}},   {"uint", {'u', 4}},   {"uint32", {'u', 4}},
        {"float", {'f', 4}}, {"float32", {'f', 4}}, {"double", {'f', 8}}, {"float64", {'f', 8}}};
    const auto found = types.find(name);
    if (found == types.end()) {
      throw damaged(name);
    }
    return found->second;
  }

  void takeProperty(const std::vector<std::string>& words) {
    std::vector<PlyProperty>& properties = header.elements.back().properties;
    if (words.size() == 5 && words[1] == "list" && typeOf(words[2]).kind != 'f') {
      properties.push_back({words[4], typeOf(words[3]), true, typeOf(words[2])});
    } else if (words.size() == 3) {
      properties.push_back({words[2], typeOf(words[1]), false, {}});
    } else {
      throw damaged(words.back());
    }
  }

  const std::string& path_;
};

/// The fewest bytes of an element: empty lists, digits of one character.
std::uint64_t leastBytes(const PlyElement& element, bool isText) {
  std::uint64_t bytes = 0;
  for (const PlyProperty& property : element.properties) {
    bytes += isText ? 2 : property.isList ? property.countType.size : property.type.size;
  }
  return bytes;
}

void requireScan(const std::string& path, const PlyHeader& header, std::uint64_t fileSize) {
  const PlyElement* vertices = header.find("vertex");
  if (vertices == nullptr || vertices->find("x") < 0 || vertices->find("y") < 0 ||
      vertices->find("z") < 0) {
    throw refused(path, "holds no vertices with x, y and z");
  }
  std::uint64_t wanted = 0;
  for (const PlyElement& element : header.elements) {
    // Both factors fit into 32 bits.
    wanted += element.count * leastBytes(element, header.isText);
  }
  // The last line of a text may have no end.
  if (wanted > fileSize - header.dataAt + 1) {
    throw refused(path, "is cut short: its header states " + std::to_string(wanted) +
                            " bytes or more of elements, it holds " +
                            std::to_string(fileSize - header.dataAt) + ". Copy or save it again");
  }
  const PlyElement* grid = header.find("range_grid");
  const std::uint64_t cells = grid == nullptr ? vertices->count : grid->count;
  if (header.rows == 0 || header.columns == 0 || header.rows * header.columns != cells) {
    throw refused(path, "is not organised in lines: it holds " + std::to_string(cells) +
                            (grid == nullptr ? " vertices" : " cells") + ", 'obj_info' states " +
                            std::to_string(header.rows) + " rows (num_rows) and " +
                            std::to_string(header.columns) +
                            " columns (num_cols). Save the scan with its rows and columns");
  }
}

}  // namespace

int PlyElement::find(const std::string& property) const {
  const auto found = std::find_if(properties.begin(), properties.end(), [&](const PlyProperty& p) {
    return p.name == property && !p.isList;
  });
  return found == properties.end() ? -1 : static_cast<int>(found - properties.begin());
}

const PlyElement* PlyHeader::find(const std::string& element) const {
  const auto found = std::find_if(elements.begin(), elements.end(),
                                  [&](const PlyElement& e) { return e.name == element; });
  return found == elements.end() ? nullptr : &*found;
}

PlyHeader readPlyHeader(const std::string& path) {
  constexpr std::uint64_t kLongest = 65536;
  ByteReader bytes(path);
  std::istringstream text(bytes.text(0, std::min(bytes.size(), kLongest)));
  HeaderReader reader(path);
  std::string line;
  bool isFirst = true;
  while (std::getline(text, line)) {
    line.erase(line.find_last_not_of(" \t\r") + 1);
    if (isFirst && line != "ply") {
      throw refused(path, "is no PLY file");
    }
    if (line == "end_header" && !text.eof()) {
      reader.header.dataAt = static_cast<std::uint64_t>(text.tellg());
      requireScan(path, reader.header, bytes.size());
      return reader.header;
    }
    if (!isFirst) {
      reader.take(line);
    }
    isFirst = false;
  }
  throw refused(path, "is a damaged PLY file, or cut short: its header has no end");
}

}  // namespace program
