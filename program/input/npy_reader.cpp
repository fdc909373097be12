#include <fstream>
#include <vector>

#include "base/failure.h"
#include "input/npy_header.h"
#include "input/raw_number.h"
#include "input/readers.h"
#include "input/scan_input.h"

namespace program {
namespace {

template <typename Value>
void readLine(const std::vector<char>& row, bool isRange, bool swaps, double x, Line& line) {
  const std::size_t sampleSize = sizeof(Value) * (isRange ? 1 : 3);
  line.reserve(row.size() / sampleSize);
  for (const char* raw = row.data(); raw != row.data() + row.size(); raw += sampleSize) {
    const auto index = static_cast<int>(line.size());
    const double first = rawNumber<Value>(raw, swaps);
    line.push_back({index, isRange ? rangePoint(x, static_cast<double>(index), first)
                                   : spacePoint(first, rawNumber<Value>(raw + sizeof(Value), swaps),
                                                rawNumber<Value>(raw + 2 * sizeof(Value), swaps))});
  }
}

using LineReader = void (*)(const std::vector<char>&, bool, bool, double, Line&);

LineReader lineReaderOf(const NpyHeader& header) {
  if (header.kind == 'f') {
    return header.itemSize == 4 ? readLine<float> : readLine<double>;
  }
  return header.kind == 'i' ? readLine<std::int16_t> : readLine<std::uint16_t>;
}

}  // namespace

RawScan readNpy(const InputOptions& options) {
  const NpyHeader header = readNpyHeader(options.path);
  RawScan raw;
  raw.isRange = header.shape.size() == 2;
  raw.format = raw.isRange ? "NPY range image" : "NPY of x, y, z";
  const LineReader readLineOf = lineReaderOf(header);
  const bool swaps = mustSwap(header.isBigEndian);
  std::vector<char> row(header.shape[1] * header.itemSize * (raw.isRange ? 1 : 3));
  std::ifstream file(options.path, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(header.dataAt));
  raw.scan.resize(header.shape[0]);
  for (std::size_t l = 0; l < raw.scan.size(); ++l) {
    if (!file.read(row.data(), static_cast<std::streamsize>(row.size()))) {
      throw Failure(ExitCode::badInput, options.path + ": cannot be read to its end");
    }
    readLineOf(row, raw.isRange, swaps, static_cast<double>(l), raw.scan[l]);
  }
  return raw;
}

}  // namespace program
