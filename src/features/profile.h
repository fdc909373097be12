#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The index of no point.
constexpr int kNoPoint = -1;

/// A range of points, both ends included.
struct PointRange {
  int first;
  int last;
};

/// A column of numbers with NaN before the first and after the last one, so that a kernel may read
/// `kPadding` numbers beyond either end.
class PaddedColumn {
 public:
  static constexpr int kPadding = 8;

  explicit PaddedColumn(std::size_t capacity)
      : values_(capacity + 2 * std::size_t{kPadding}, std::numeric_limits<double>::quiet_NaN()) {}

  [[nodiscard]] double* data() {
    return values_.data() + kPadding;
  }
  [[nodiscard]] const double* data() const {
    return values_.data() + kPadding;
  }
  double operator[](std::size_t i) const {
    return data()[i];
  }

 private:
  std::vector<double> values_;
};

/// The samples of a line that a search uses, in the y-z plane. They are called points here and are
/// known by their index in the profile, as opposed to that on the line. Each coordinate has a
/// column of its own, so that a search reads only what it compares.
struct Profile {
  explicit Profile(std::size_t capacity) : y(capacity), z(capacity), index(capacity) {}

  [[nodiscard]] int count() const {
    return static_cast<int>(index.size());
  }

  PaddedColumn y;
  PaddedColumn z;
  std::vector<int> index;  ///< Index of each point on the line.
};

/// The profile of the samples that pass `isPoint(sample)`.
template <typename IsPoint>
Profile collectProfile(const STesk3DPosition* lineData, int dataSize, IsPoint isPoint) {
  Profile profile(dataSize > 0 ? static_cast<std::size_t>(dataSize) : 0);
  double* const y = profile.y.data();
  double* const z = profile.z.data();
  std::size_t count = 0;
  // Every sample is written, and overwritten by the next one unless it is a point. A branch would
  // often be mispredicted where samples are missing.
  for (int i = 0; i < dataSize; ++i) {
    y[count] = lineData[i].pt3D.y;
    z[count] = lineData[i].pt3D.z;
    profile.index[count] = i;
    count += isPoint(lineData[i]) ? 1 : 0;
  }
  y[count] = std::numeric_limits<double>::quiet_NaN();
  z[count] = std::numeric_limits<double>::quiet_NaN();
  profile.index.resize(count);
  return profile;
}

/// The profile of the measured samples.
Profile collectProfile(const STesk3DPosition* lineData, int dataSize);

}  // namespace scanline::detail
