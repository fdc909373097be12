#include "conditioning/smoothing_kernels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "records/sample_rules.h"
#include "records/wide_kernel.h"

namespace scanline::detail {

namespace {

/// Long lines are processed in blocks whose intermediate values stay in the first-level cache.
constexpr std::size_t kBlock = 256;

/// Starts the sums of `size` windows with their first 1, 3, 5 or 7 heights.
inline void sumFirst(const double* z, std::size_t heights, std::size_t size, double* sums) {
  switch (heights) {
    case 1:
      std::copy_n(z, size, sums);
      break;
    case 3:
      for (std::size_t i = 0; i < size; ++i) {
        sums[i] = z[i] + z[i + 1] + z[i + 2];
      }
      break;
    case 5:
      for (std::size_t i = 0; i < size; ++i) {
        sums[i] = z[i] + z[i + 1] + z[i + 2] + z[i + 3] + z[i + 4];
      }
      break;
    default:
      for (std::size_t i = 0; i < size; ++i) {
        sums[i] = z[i] + z[i + 1] + z[i + 2] + z[i + 3] + z[i + 4] + z[i + 5] + z[i + 6];
      }
  }
}

}  // namespace

SCANLINE_WIDE_KERNEL
void gatherHeights(const STesk3DPosition* samples, std::size_t count, double* heights) {
  for (std::size_t i = 0; i < count; ++i) {
    const double z = samples[i].pt3D.z;
    heights[i] = isMeasured(z) ? z : 0.0;
  }
}

SCANLINE_WIDE_KERNEL
void gatherHeightsAndSteps(const STesk3DPosition* samples,
                           std::size_t count,
                           double yTh,
                           double zTh,
                           double* heights,
                           int* isStep) {
  // Element 0 is the sample before the block; for the first block, the first sample itself.
  std::array<double, 1 + kBlock> y = {samples[0].pt3D.y};
  std::array<double, 1 + kBlock> z = {samples[0].pt3D.z};
  for (std::size_t first = 0; first < count; first += kBlock) {
    const std::size_t size = std::min(kBlock, count - first);
    for (std::size_t i = 0; i < size; ++i) {
      y[1 + i] = samples[first + i].pt3D.y;
      z[1 + i] = samples[first + i].pt3D.z;
    }
    for (std::size_t i = 0; i < size; ++i) {
      heights[first + i] = isMeasured(z[1 + i]) ? z[1 + i] : 0.0;
    }
    for (std::size_t i = 0; i < size; ++i) {
      const auto inY = static_cast<int>(std::fabs(y[1 + i] - y[i]) > yTh);
      const auto inZ = static_cast<int>(std::fabs(z[1 + i] - z[i]) > zTh);
      isStep[first + i] = static_cast<int>(isMeasured(z[1 + i])) & (inY | inZ);
    }
    y[0] = y[size];
    z[0] = z[size];
  }
  isStep[0] = 0;
}

// Neighbouring windows are summed side by side, so that the loops over i vectorise while each sum
// keeps its own order. The first pass adds the remainder of the width divided by eight, each of the
// others eight heights, which saves loads and stores of the sums.
SCANLINE_WIDE_KERNEL
void meanWindows(const double* heights,
                 const int* measuredBefore,
                 std::size_t width,
                 std::size_t count,
                 double* means) {
  std::array<double, kBlock> sums;
  for (std::size_t first = 0; first < count; first += kBlock) {
    const std::size_t size = std::min(kBlock, count - first);
    const double* z = heights + first;
    sumFirst(z, width % 8, size, sums.data());
    z += width % 8;
    for (std::size_t left = width / 8; left > 0; --left, z += 8) {
      for (std::size_t i = 0; i < size; ++i) {
        sums[i] = sums[i] + z[i] + z[i + 1] + z[i + 2] + z[i + 3] + z[i + 4] + z[i + 5] + z[i + 6] +
                  z[i + 7];
      }
    }
    const int* const before = measuredBefore + first;
    for (std::size_t i = 0; i < size; ++i) {
      means[first + i] = sums[i] / (before[i + width] - before[i]);
    }
  }
}

SCANLINE_WIDE_KERNEL
void storeMeans(const double* heights,
                const double* means,
                std::size_t count,
                STesk3DPosition* samples) {
  for (std::size_t i = 0; i < count; ++i) {
    const double mean = means[i];
    const double z = samples[i].pt3D.z;
    samples[i].pt3D.z = heights[i] > 0.0 ? mean : z;
  }
}

}  // namespace scanline::detail
