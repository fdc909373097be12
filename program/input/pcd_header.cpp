#include "input/pcd_header.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <sstream>
#include <vector>

#include "base/failure.h"
#include "input/byte_reader.h"

namespace program {
namespace {

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

/// The words after each keyword, and where the data begins.
struct Statements {
  std::map<std::string, std::vector<std::string>> words;
  std::uint64_t dataAt = 0;
};

Statements readStatements(const std::string& path, ByteReader& bytes) {
  constexpr std::uint64_t kLongest = 65536;
  std::istringstream text(bytes.text(0, std::min(bytes.size(), kLongest)));
  Statements statements;
  std::string line;
  while (std::getline(text, line)) {
    std::istringstream rest(line);
    std::string keyword;
    rest >> keyword;
    if (keyword.empty() || keyword.front() == '#') {
      continue;
    }
    std::vector<std::string>& words = statements.words[keyword];
    for (std::string word; rest >> word;) {
      words.push_back(std::move(word));
    }
    if (keyword == "DATA") {
      statements.dataAt = text.eof() ? bytes.size() : static_cast<std::uint64_t>(text.tellg());
      return statements;
    }
    if (keyword != "VERSION" && statements.words.count("VERSION") == 0) {
      break;
    }
  }
  throw refused(path, "is no PCD file, or is cut short in its header");
}

/// The numbers after a keyword, none above 2^31.
std::vector<std::uint64_t> numbersOf(const std::string& path,
                                     const Statements& statements,
                                     const std::string& keyword) {
  constexpr std::uint64_t kMost = 1ULL << 31U;
  std::vector<std::uint64_t> numbers;
  const auto found = statements.words.find(keyword);
  if (found != statements.words.end()) {
    for (const std::string& word : found->second) {
      std::uint64_t number = 0;
      const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
      if (error != std::errc{} || end != word.data() + word.size() || number > kMost) {
        throw refused(path, "is a damaged PCD file: " + keyword + " " + word);
      }
      numbers.push_back(number);
    }
  }
  return numbers;
}

/// A record's size in bytes and in values.
struct Record {
  std::uint64_t bytes = 0;
  std::uint64_t values = 0;
};

Record recordOf(const std::string& path, const Statements& statements) {
  const auto fields = statements.words.find("FIELDS");
  const std::size_t count = fields == statements.words.end() ? 0 : fields->second.size();
  const std::vector<std::uint64_t> sizes = numbersOf(path, statements, "SIZE");
  std::vector<std::uint64_t> counts = numbersOf(path, statements, "COUNT");
  counts = counts.empty() ? std::vector<std::uint64_t>(count, 1) : counts;
  const auto types = statements.words.find("TYPE");
  if (count == 0 || sizes.size() != count || counts.size() != count ||
      types == statements.words.end() || types->second.size() != count) {
    throw refused(path, "is a damaged PCD file: FIELDS, SIZE, TYPE and COUNT do not match");
  }
  Record record;
  int found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string& name = fields->second[i];
    const bool isAxis = name == "x" || name == "y" || name == "z";
    const bool isFloat = types->second[i] == "F" && (sizes[i] == 4 || sizes[i] == 8);
    found += isAxis && isFloat && counts[i] == 1 ? 1 : 0;
    record.bytes +=
        std::min<std::uint64_t>(sizes[i], 8) * std::min<std::uint64_t>(counts[i], 1U << 20U);
    record.values += counts[i];
  }
  if (found != 3) {
    throw refused(path, "holds no fields x, y and z of floats");
  }
  return record;
}

std::uint64_t pointsOf(const std::string& path, const Statements& statements) {
  const auto one = [&](const char* keyword) {
    const std::vector<std::uint64_t> numbers = numbersOf(path, statements, keyword);
    return numbers.size() == 1 ? numbers.front() : 0;
  };
  const std::uint64_t points = one("WIDTH") * one("HEIGHT");
  if (points == 0 || one("POINTS") != points) {
    throw refused(path, "is a damaged PCD file: WIDTH times HEIGHT is not POINTS");
  }
  if (one("HEIGHT") < 2) {
    throw refused(path,
                  "is not organised in lines: its HEIGHT is 1. Save it with a line of the "
                  "scan in each row");
  }
  return points;
}

}  // namespace

PcdHeader checkPcdHeader(const std::string& path) {
  // LZF stores 264 bytes in three at best.
  constexpr std::uint64_t kMostCompression = 100;
  ByteReader bytes(path);
  const Statements statements = readStatements(path, bytes);
  const std::uint64_t points = pointsOf(path, statements);
  const Record record = recordOf(path, statements);
  const std::vector<std::string>& data = statements.words.at("DATA");
  const std::string kind = data.size() == 1 ? data.front() : "";
  const std::uint64_t rest = bytes.size() - statements.dataAt;
  const auto perPoint = [&](std::uint64_t perRecord) {
    return rest / std::max<std::uint64_t>(perRecord, 1);
  };
  bool fits = false;
  if (kind == "ascii") {
    fits = points <= perPoint(2 * record.values) + 1;
  } else if (kind == "binary") {
    fits = points <= perPoint(record.bytes);
  } else if (kind == "binary_compressed") {
    const std::uint64_t compressed = bytes.number(statements.dataAt, 4).value_or(0);
    const std::uint64_t whole = bytes.number(statements.dataAt + 4, 4).value_or(0);
    fits = rest >= 8 && compressed <= rest - 8 && whole == points * record.bytes &&
           whole / kMostCompression <= compressed;
  } else {
    throw refused(path, "is a damaged PCD file: DATA " + kind);
  }
  if (!fits) {
    throw refused(path, "is cut short: its header states " + std::to_string(points) +
                            " points, which " + std::to_string(rest) +
                            " bytes cannot hold. Copy or save it again");
  }
  const auto viewpoint = statements.words.find("VIEWPOINT");
  const std::vector<std::string> origin = {"0", "0", "0", "1", "0", "0", "0"};
  return {viewpoint != statements.words.end() && viewpoint->second != origin};
}

}  // namespace program
