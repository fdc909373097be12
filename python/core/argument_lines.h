#pragma once

/// Lines and scans by pointer: the memory of the caller's arrays.

#include <string>
#include <vector>

#include "arrays.h"
#include "roles.h"

namespace binding {

/// A contiguous row of samples: that of the array, or a copy of it with a warning.
struct SampleRow {
  Block block;
  std::vector<STesk3DPosition> copy;
  STesk3DPosition* data = nullptr;
  int size = 0;
};
SampleRow sampleRow(const Source& source, bool isWritten);

template <typename Role>
struct Argument<Role,
                STesk3DPosition*,
                std::enable_if_t<std::is_same_v<Role, In> || std::is_same_v<Role, InOut>>>
    : ArgumentBase {
  static constexpr bool visitsSamples = true;
  SampleRow row;
  explicit Argument(const Source& source) : row(sampleRow(source, std::is_same_v<Role, InOut>)) {}
  STesk3DPosition* pass() {
    return row.data;
  }
  [[nodiscard]] int size() const {
    return row.size;
  }
  static std::string annotation() {
    return "NDArray[np.void]";
  }
};

template <>
struct Argument<OneLine, STesk3DLaserLine*> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  SampleRow row;
  STesk3DLaserLine line;
  explicit Argument(const Source& source)
      : row(sampleRow(source, true)), line{row.data, row.size, 0} {}
  STesk3DLaserLine* pass() {
    return &line;
  }
  static std::string annotation() {
    return "NDArray[np.void]";
  }
};

template <>
struct Argument<OneLine, STeskXYZRGBDLaserLine*> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  Block block;
  STeskXYZRGBDLaserLine line;
  explicit Argument(const Source& source);
  STeskXYZRGBDLaserLine* pass() {
    return &line;
  }
  static std::string annotation() {
    return "NDArray[np.void]";
  }
};

/// A scan whose lines are rows of the caller's arrays.
template <>
struct Argument<In, STesk3DLaserLine*> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  std::vector<SampleRow> rows;
  std::vector<STesk3DLaserLine> lines;
  explicit Argument(const Source& source);
  STesk3DLaserLine* pass() {
    return lines.data();
  }
  [[nodiscard]] int size() const {
    return static_cast<int>(lines.size()) - 1;
  }
  static std::string annotation() {
    return "Scan";
  }
};

/// Not given; its value is the size of the preceding argument.
template <>
struct Argument<Count, int> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  explicit Argument(const Source& /*source*/) {}
};

}  // namespace binding
