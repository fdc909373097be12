#include <cmath>
#include <limits>

#include "checks.h"
#include "define.h"
#include "flood.h"
#include "functions.h"

namespace binding {

namespace {

using Grid = std::vector<std::vector<SQO_featureClusteringInfo>>;
using GridPoints = std::vector<std::vector<STesk3DPoint>>;
using Cells = std::vector<STesk2DPoint>;
using Walks = std::vector<SQO_lineConotours>;
using Scan = std::vector<std::vector<STesk3DPosition>>;

std::string textOf(double x, double y) {
  return std::to_string(x) + ", " + std::to_string(y);
}

/// That the columns of a grid are as long as its first, and that the seeds lie on it.
void checkGrid(const Grid& grid, const Cells& seeds) {
  const std::size_t rows = grid.empty() ? 0 : grid[0].size();
  for (const auto& column : grid) {
    require(column.size() == rows, "featureInfo", "columns of the same length",
            std::to_string(column.size()) + " cells beside " + std::to_string(rows));
  }
  for (const STesk2DPoint& seed : seeds) {
    require(seed.x >= 0 && seed.y >= 0 && static_cast<std::size_t>(seed.x) < grid.size() &&
                static_cast<std::size_t>(seed.y) < rows,
            "clusterQueue", "cells of the grid", textOf(seed.x, seed.y));
  }
}

void checkPointGrid(Grid& featureInfo,
                    GridPoints& feature3D,
                    int /*clusterCheckWin*/,
                    SQO_treeGrowParam /*growParam*/,
                    int /*clusterID*/,
                    Cells& clusterQueue,
                    STesk3DRangeD& /*clusterRoi*/) {
  checkGrid(featureInfo, clusterQueue);
  require(lineSizes(feature3D) == lineSizes(featureInfo), "feature3D",
          "an array of the shape of featureInfo", "another shape");
}

void checkLabelGrid(Grid& featureInfo,
                    GridPoints& /*feature3D*/,
                    int /*clusterID*/,
                    Cells& clusterQueue,
                    STeskRect& /*clusterRoi*/) {
  checkGrid(featureInfo, clusterQueue);
}

void checkBlock(const SQO_localPkParam& blockSize) {
  require(blockSize.blockWidth >= 2, "blockSize.blockWidth", "2 or more",
          std::to_string(blockSize.blockWidth));
  require(blockSize.blockHeight >= 2, "blockSize.blockHeight", "2 or more",
          std::to_string(blockSize.blockHeight));
}

void checkScanBlock(STesk3DLaserLine* scanLines,
                    int lineNum,
                    std::vector<SQO_2DValueI>& /*peaks*/,
                    SQO_localPkParam blockSize) {
  checkBlock(blockSize);
  requireNoShorterLine(lineSizes(scanLines, lineNum), "scanLines");
}

void checkMapBlock(cv::Mat& /*distMap*/,
                   std::vector<SQO_2DValueI>& /*peaks*/,
                   SQO_localPkParam blockSize) {
  checkBlock(blockSize);
}

void checkPeak(STesk3DLaserLine* scanLines,
               int lineNum,
               cv::Mat& edgeMap,
               SQO_2DValueI peak,
               SQO_treeGrowParam /*growParam*/,
               SQO_bagParam /*bagParam*/,
               bool /*useMark*/,
               Walks& /*lowYContours*/,
               Walks& /*highYContours*/,
               Walks& /*lowXContours*/,
               Walks& /*highXContours*/,
               int* /*maxEdgeLowY*/,
               int* /*maxEdgeHighY*/,
               int* /*maxEdgeLowX*/,
               int* /*maxEdgeHighX*/) {
  require(lineNum > 0, "scanLines", "at least one line", "none");
  requireNoShorterLine(lineSizes(scanLines, lineNum), "scanLines");
  const int samples = scanLines[0].nPositionCnt;
  require(peak.x >= 0 && peak.x < lineNum && peak.y >= 0 && peak.y < samples, "peak",
          "a position on the scan of " + std::to_string(lineNum) + " lines of " +
              std::to_string(samples) + " samples",
          textOf(peak.x, peak.y));
  require(edgeMap.rows >= samples && edgeMap.cols >= lineNum, "edgeMap",
          "a row for each sample index and a column for each line",
          std::to_string(edgeMap.rows) + " x " + std::to_string(edgeMap.cols));
}

void checkEdges(std::vector<SQO_contourPtInfo>& contourPts,
                int maxEdgeId,
                double /*distTol*/,
                std::vector<SQO_2DValueI>& /*outPts*/,
                int /*tag*/,
                int* /*sideVerdict*/) {
  for (const SQO_contourPtInfo& point : contourPts) {
    require(point.edgeId >= 0 && point.edgeId <= maxEdgeId, "contourPts",
            "labels from 0 to maxEdgeId, " + std::to_string(maxEdgeId),
            std::to_string(point.edgeId));
    require(point.scanDist >= 0.0, "contourPts", "no scanDist below 0 or NaN",
            std::to_string(point.scanDist));
  }
}

/// Whether position `at` falls on one of `count` pixels, as pointClout2DProjection() scales it.
bool isInside(double at, double scale, int edge, int count) {
  constexpr double kLimit = std::numeric_limits<int>::max();
  const double pixel = std::trunc(at) / scale + edge;
  return std::abs(at) < kLimit && pixel > -1.0 && pixel < count;
}

void checkProjection(Scan& scanLines,
                     STeskRangeD xRange,
                     STeskRangeD yRange,
                     double scale,
                     double zLimit,
                     int edge,
                     double /*maxLinkDist*/,
                     cv::Mat& projectionMask,
                     cv::Mat& backIndexing) {
  requireNoShorterLine(lineSizes(scanLines), "scanLines");
  requireAbove0(scale, "scale");
  require(projectionMask.size() == backIndexing.size(), "backIndexing",
          "an image of the size of projectionMask", "another size");
  require(projectionMask.dataend <= backIndexing.datastart ||
              backIndexing.dataend <= projectionMask.datastart || backIndexing.empty(),
          "backIndexing", "an image with memory of its own", "one that shares that of the mask");
  for (const std::vector<STesk3DPosition>& line : scanLines) {
    for (const STesk3DPosition& sample : line) {
      const STesk3DPoint& at = sample.pt3D;
      const bool isSkipped = 0.0001 > at.z || (zLimit > 0.0 && at.z > zLimit);
      require(isSkipped || (isInside(at.x - xRange.min, scale, edge, projectionMask.cols) &&
                            isInside(at.y - yRange.min, scale, edge, projectionMask.rows)),
              "scanLines", "samples inside the images", textOf(at.x, at.y));
    }
  }
}

void checkSquare(SJU_waterShedImage& image) {
  require(image.width == image.height, "image",
          "a square image, since rows and columns are crossed",
          std::to_string(image.height) + " x " + std::to_string(image.width));
}

void checkFlood(SJU_waterShedImage& image,
                std::vector<SQO_2DValueI>& seeds,
                int maxLevel,
                int startLabel) {
  for (const std::vector<int>& row : image.gray) {
    for (const int gray : row) {
      require(gray >= 0, "image.gray", "no value below 0", std::to_string(gray));
    }
  }
  for (const SQO_2DValueI& seed : seeds) {
    require(seed.x >= 0 && seed.x < image.width && seed.y >= 0 && seed.y < image.height, "seeds",
            "positions inside the image", textOf(seed.x, seed.y));
  }
  const auto last = std::int64_t{startLabel} + static_cast<std::int64_t>(seeds.size());
  require(last <= std::numeric_limits<int>::max(), "startLabel",
          "labels in the range of a 32-bit integer", std::to_string(last));
  require(maxLevel >= -1, "maxLevel", "-1 or more", std::to_string(maxLevel));
  const STesk2DPoint unreached = unreachedPixel(image, seeds, maxLevel, startLabel);
  require(unreached.x < 0, "image.gray",
          "an image of which the flood reaches every pixel up to maxLevel",
          "one where it never reaches row " + std::to_string(unreached.y) + ", column " +
              std::to_string(unreached.x) + "; raise such pixels above maxLevel");
}

}  // namespace

void defineMaps(py::module_& m) {
  SCANLINE_DEFINE(m, qo_pointClustering, In, In, Out);
  SCANLINE_DEFINE_CHECKED(m, ju_gridPointClustering, checkPointGrid, InOut, In, In, In, In, Changed,
                          InOut);
  SCANLINE_DEFINE_CHECKED(m, ju_gridPointClustering_labelling, checkLabelGrid, InOut, In, In,
                          Changed, InOut);
  SCANLINE_DEFINE(m, QO_TwoPassLabel, BinaryImage, Out, Out, In);

  SCANLINE_DEFINE_CHECKED(m, pointClout2DProjection, checkProjection, In, In, In, In, In, In, In,
                          ChangedImage<CV_32F>, ChangedImage<CV_32SC2>);
  SCANLINE_DEFINE(m, qo_distanceTrans, Image<CV_32F>, Out, In);
  SCANLINE_DEFINE_CHECKED(m, qo_getLocalPeaks, checkScanBlock, In, Count, Out, In);
  SCANLINE_DEFINE_CHECKED(m, qo_getLocalPeaks_distTransform, checkMapBlock, Image<CV_32F>, Out, In);
  SCANLINE_DEFINE_CHECKED(m, qo_peakXYScan, checkPeak, In, Count, Image<CV_32SC4>, In, In, In, In,
                          Out, Out, Out, Out, Out, Out, Out, Out);
  SCANLINE_DEFINE(m, qo_getContourPts, In, In, Out, Out);
  SCANLINE_DEFINE(m, qo_getPairingContourPts, In, In, Out, In, In, Out, Out);
  SCANLINE_DEFINE_CHECKED(m, qo_contourPostProc, checkEdges, In, In, In, Out, In, Out);
  SCANLINE_DEFINE_CHECKED(m, watershed, checkSquare, InOut);
  SCANLINE_DEFINE_CHECKED(m, ju_seedWatershed, checkFlood, InOut, InOut, In, In);
}

}  // namespace binding
