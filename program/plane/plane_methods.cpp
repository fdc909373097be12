#include "plane/plane_methods.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "plane/plane_fit.h"

namespace program {
namespace {

/// The height of a search that found no plane.
constexpr double kNotFound = -1.0;

cv::Point3d centreOf(const Extent& extent) {
  return {0.5 * (extent.x.min + extent.x.max), 0.5 * (extent.y.min + extent.y.max),
          0.5 * (extent.shownZ.min + extent.shownZ.max)};
}

/// A candidate with its matrices, without a height.
PlaneCandidate candidateOf(const char* method,
                           const SQO_planeCalibPara& calibration,
                           const Extent& extent) {
  PlaneCandidate candidate{};
  candidate.method = method;
  candidate.calibration = calibration;
  candidate.centre = centreOf(extent);
  return candidate;
}

PlaneCandidate refusal(const std::string& method, std::string why) {
  PlaneCandidate candidate{};
  candidate.method = method;
  candidate.refused = std::move(why);
  return candidate;
}

/// The rotation that belongs to coordinates whose z runs the other way.
void mirror(double (&matrix)[9]) {
  for (const int mixed : {2, 5, 6, 7}) {
    matrix[mixed] = -matrix[mixed];
  }
}

/// Maps z for the search among the heights and back: the nearest, or the farthest, becomes 1.0 and
/// the span of the heights `bins`.
struct HeightScale {
  double scale;
  double zero;  ///< The z that becomes 0.0.
  bool fromFar;

  [[nodiscard]] double mapped(double z) const {
    return scale * (fromFar ? zero - z : z - zero);
  }
  /// What a levelled height is in the coordinates of the scan; `upright` is the last element of the
  /// rotation.
  [[nodiscard]] double heightOf(double mappedHeight, double upright) const {
    const double levelled = mappedHeight / scale;
    return upright * zero + (fromFar ? -levelled : levelled);
  }
};

HeightScale heightScale(const Extent& extent, double bins, bool fromFar) {
  const double scale = bins / (extent.shownZ.max - extent.shownZ.min);
  const double end = fromFar ? extent.z.max + 1.0 / scale : extent.z.min - 1.0 / scale;
  return {scale, end, fromFar};
}

Scan scaled(Scan scan, const HeightScale& to) {
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      const STesk3DPoint& p = sample.pt3D;
      const double z = isMeasured(sample) ? to.mapped(p.z) : 0.0;
      sample.pt3D = {to.scale * p.x, to.scale * p.y, z};
    }
  });
  return scan;
}

/// The height in a candidate's frame of a plane at `atOrigin` in a frame that turns around the
/// origin.
double heightAround(const PlaneCandidate& candidate, double atOrigin) {
  return atOrigin + levelledHeight(candidate, {0.0, 0.0, 0.0});
}

/// The search among the heights counts them in bins of 1.0, which are too coarse or too fine for
/// most units. Tries several scales and keeps the plane with the most samples on it.
PlaneCandidate byHeights(const char* method, const Scan& few, const Extent& extent, bool fromFar) {
  if (!(extent.shownZ.max > extent.shownZ.min)) {
    return refusal(method, "all samples have the same z");
  }
  PlaneCandidate best = refusal(method, "no height holds a tenth of the samples");
  for (const double bins : {400.0, 100.0, 30.0}) {
    const HeightScale to = heightScale(extent, bins, fromFar);
    Scan copy = scaled(few, to);
    SQO_planeCalibPara found = qo_getPlaneCalibPara2(copy);
    if (found.planeHeight == kNotFound) {
      continue;
    }
    const double atOrigin = to.heightOf(found.planeHeight, found.levelMatrix[8]);
    if (fromFar) {
      mirror(found.levelMatrix);
      mirror(found.invLevelMatrix);
    }
    PlaneCandidate candidate = candidateOf(method, found, extent);
    candidate.height = heightAround(candidate, atOrigin);
    refine(candidate, few, extent);
    best = candidate.onPlane > best.onPlane ? candidate : best;
  }
  return best;
}

/// The search as the library does it, in bins of one unit of the scan, and its lowest sample.
PlaneCandidate byLowest(Scan& scan, const Scan& few, const Extent& extent) {
  std::vector<STesk3DLaserLine> lines = pointerForm(scan);
  const auto found = qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
  if (found.planeHeight == kNotFound) {
    return refusal("lowest", "no height, in bins of one unit, holds a tenth of the samples");
  }
  PlaneCandidate candidate = candidateOf("lowest", found, extent);
  // The mean of the same plane's samples, for its smallest z may be that of a stray.
  candidate.height = heightAround(candidate, qo_getPlaneCalibPara2(scan).planeHeight);
  measureFit(candidate, few, extent);
  return candidate;
}

PlaneCandidate byRegion(Scan& scan,
                        const Scan& few,
                        const Extent& extent,
                        const PlaneOptions& options) {
  const std::array<double, 4> all = {extent.x.min, extent.x.max, extent.y.min, extent.y.max};
  const std::array<double, 4> r = options.region.value_or(all);
  const auto isInside = [&](const STesk3DPoint& p) {
    return p.x >= r[0] && p.x <= r[1] && p.y >= r[2] && p.y <= r[3];
  };
  if (!determinePlane(scan, isInside)) {
    return refusal("region", "it holds fewer than three samples, or all on one line");
  }
  // The upper end of the z range limits y: it has to let all of the region pass.
  const STesk3DRangeD region = {{r[0], r[1]}, {r[2], r[3]}, {0.0, r[3]}};
  const SQO_planeCalibPara found = qo_getPlaneCalibPara2_ROI(scan, region);
  PlaneCandidate candidate = candidateOf("region", found, extent);
  candidate.height = medianHeight(candidate, few, isInside);
  measureFit(candidate, few, extent);
  return candidate;
}

/// Calibrations that use the samples' stamps put them to 0 or 1; readers set them to the indices.
void restoreIndices(Scan& scan) {
  for (Line& line : scan) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      line[i].nPointIdx = static_cast<int>(i);
    }
  }
}

PlaneCandidate byUnbrokenLines(Scan& scan, const Scan& few, const Extent& extent) {
  const SQO_planeCalibPara found = qo_getHolePlaneCalibPara(scan);
  restoreIndices(scan);
  if (found.planeHeight == 0.0) {
    return refusal("hole", "no line is in one piece, with steps below 1.0 in y and in z");
  }
  PlaneCandidate candidate = candidateOf("hole", found, extent);
  candidate.height = heightAround(candidate, found.planeHeight);
  measureFit(candidate, few, extent);
  return candidate;
}

PlaneCandidate byGround(Scan& scan, const Scan& few, const Extent& extent) {
  const SQO_planeCalibPara found = qo_HCameraVScan_getGroundCalibPara(scan);
  restoreIndices(scan);
  if (found.planeHeight == 0.0) {
    return refusal("ground", "no line ends in a piece that falls at more than 60 deg");
  }
  PlaneCandidate candidate = candidateOf("ground", found, extent);
  candidate.isGround = true;
  candidate.height = heightAround(candidate, found.planeHeight);
  measureFit(candidate, few, extent);
  return candidate;
}

/// The candidate of either search that more samples lie on.
PlaneCandidate byFullerHeight(const Scan& few, const Extent& extent) {
  const PlaneCandidate nearest = byHeights("heights", few, extent, false);
  const PlaneCandidate farthest = byHeights("heights", few, extent, true);
  return farthest.onPlane > nearest.onPlane ? farthest : nearest;
}

}  // namespace

const std::vector<PlaneMethod>& planeMethods() {
  static const std::vector<PlaneMethod> methods = {
      {"heights", "the height that most samples have"},
      {"nearest", "the first plane from the sensor"},
      {"farthest", "the last plane from the sensor"},
      {"lowest", "the plane of the smallest z, in bins of one unit"},
      {"region", "the samples of --region, by default of the whole scan"},
      {"hole", "the lines that no hole breaks"},
      {"ground", "the steep ends of the lines, levelled to a constant y"}};
  return methods;
}

PlaneCandidate tryMethod(const std::string& method,
                         Scan& scan,
                         const Scan& few,
                         const Extent& extent,
                         const PlaneOptions& options) {
  if (!determinePlane(few, [](const STesk3DPoint&) { return true; })) {
    return refusal(method, "the scan has fewer than three samples, or all on one line");
  }
  if (method == "nearest") {
    return byHeights("nearest", few, extent, false);
  }
  if (method == "farthest") {
    return byHeights("farthest", few, extent, true);
  }
  if (method == "lowest") {
    return byLowest(scan, few, extent);
  }
  if (method == "region") {
    return byRegion(scan, few, extent, options);
  }
  if (method == "hole") {
    return byUnbrokenLines(scan, few, extent);
  }
  return method == "ground" ? byGround(scan, few, extent) : byFullerHeight(few, extent);
}

}  // namespace program
