#include "levelling.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

#include "each_line.h"
#include "plane_calibration.h"
#include "program.h"

namespace examples {
namespace {

/// A height so far above everything that no levelled distance comes out at or below 0.
double heightOfScanner(const Scan& heights) {
  double highest = 0.0;
  double farthest = 0.0;
  for (const Line& line : heights) {
    for (const STesk3DPosition& sample : line) {
      highest = std::max(highest, sample.pt3D.z);
      farthest = std::max(farthest, std::hypot(sample.pt3D.x, sample.pt3D.y));
    }
  }
  return highest + farthest + 1.0;
}

/// The same rotation for coordinates whose z runs the other way.
void turnOver(double* matrix) {
  for (const int mixed : {2, 5, 6, 7}) {
    matrix[mixed] = -matrix[mixed];
  }
}

/// Fills what is unknown (NaN) from the known values around it, in between evenly.
void fillUnknown(std::vector<double>& values) {
  std::size_t last = values.size();
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (std::isnan(values[i])) {
      continue;
    }
    const double step = last < i ? (values[i] - values[last]) / static_cast<double>(i - last) : 0.0;
    for (std::size_t k = last < i ? last + 1 : 0; k < i; ++k) {
      values[k] = values[i] - step * static_cast<double>(i - k);
    }
    last = i;
  }
  for (std::size_t k = last + 1; last < values.size() && k < values.size(); ++k) {
    values[k] = values[last];
  }
}

/// Mean x of every line and mean y of every sample index.
struct Raster {
  std::vector<double> xOfLine;
  std::vector<double> yOfIndex;
};

/// Where the samples of one line lie.
struct LinePlaces {
  double x;
  const std::vector<double>* yOfIndex;
};

Raster rasterOf(const Scan& scan) {
  const std::size_t samples = scan.front().size();
  std::vector<double> x(scan.size());
  std::vector<double> y(samples);
  std::vector<double> onLine(scan.size());
  std::vector<double> onIndex(samples);
  for (std::size_t l = 0; l < scan.size(); ++l) {
    for (std::size_t i = 0; i < samples; ++i) {
      if (isMeasured(scan[l][i])) {
        x[l] += scan[l][i].pt3D.x;
        y[i] += scan[l][i].pt3D.y;
        onLine[l] += 1.0;
        onIndex[i] += 1.0;
      }
    }
  }
  // Nothing by nothing is not a number, which marks what is unknown.
  std::transform(x.begin(), x.end(), onLine.begin(), x.begin(), std::divides<>());
  std::transform(y.begin(), y.end(), onIndex.begin(), y.begin(), std::divides<>());
  fillUnknown(x);
  fillUnknown(y);
  return {std::move(x), std::move(y)};
}

/// Measures a line from the scanner. Holes get a height and a place like their neighbours', to be
/// levelled with them: walks over the scan look at the places of holes, and a file may have left
/// them at the origin.
void turnIntoDistances(Line& line, double scannerHeight, const LinePlaces& places) {
  for (std::size_t i = 0; i < line.size(); ++i) {
    STesk3DPoint& p = line[i].pt3D;
    if (!isMeasured(line[i])) {
      p = {places.x, (*places.yOfIndex)[i], 0.0};
    }
    p.z = scannerHeight - p.z;
  }
}

void blankHoles(Line& line, const Line& raw) {
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (!isMeasured(raw[i])) {
      line[i].pt3D.z = 0.0;
    }
  }
}

}  // namespace

BeltFrame findBelt(Scan& heights) {
  // The search takes the surface of smallest z. Among heights that is the belt, whatever lies on
  // it; among distances it could be the lid of a large box.
  BeltFrame frame = {heightOfScanner(heights), qo_getPlaneCalibPara2(heights), 0.0};
  SQO_planeCalibPara& calibration = frame.calibration;
  if (!isLevelling(calibration)) {
    throw UserError(
        "no belt found: the belt must hold more than a tenth of the samples, and its heights must "
        "spread over a few units (a larger --z-scale spreads them); see also --z-is-distance if z "
        "grows away from the scanner");
  }
  const double upright = calibration.levelMatrix[8];
  frame.tiltDegrees = tiltDegrees(calibration.levelMatrix);
  turnOver(calibration.levelMatrix);
  turnOver(calibration.invLevelMatrix);
  calibration.planeHeight = upright * frame.scannerHeight - calibration.planeHeight;
  return frame;
}

Scan levelAndCut(const Scan& heights, const BeltFrame& frame, double cutHeight) {
  Scan scan = heights;
  const Raster raster = rasterOf(heights);
  // A limit of 0 would cut nothing at all.
  constexpr double kNearest = 1e-3;
  const double cut = std::max(frame.calibration.planeHeight - cutHeight, kNearest);
  forEachLine(scan, [&](std::size_t l) {
    turnIntoDistances(scan[l], frame.scannerHeight, {raster.xOfLine[l], &raster.yOfIndex});
    lineDataRT_vector(scan[l], frame.calibration.levelMatrix, cut);
    blankHoles(scan[l], heights[l]);
  });
  return scan;
}

cv::Point2d placeOnBelt(const BeltFrame& frame, cv::Point2d levelled) {
  const double* m = frame.calibration.invLevelMatrix;
  const double z = frame.calibration.planeHeight;
  return {m[0] * levelled.x + m[1] * levelled.y + m[2] * z,
          m[3] * levelled.x + m[4] * levelled.y + m[5] * z};
}

}  // namespace examples
