#include <algorithm>
#include <iterator>

#include "bound_call.h"

namespace calls {

namespace {

std::vector<Row> recordsAndGeometry() {
  const auto ragged = [](Scene& s, auto& arguments) {
    for (std::size_t l = 1; l < std::get<0>(arguments).value.size(); ++l) {
      auto& lines = std::get<0>(arguments).value;
      lines[l].resize(std::min(lines[l].size(), lines[l - 1].size() - s.whole(0, 1)));
    }
  };
  return {
      row(NAMED(qo_getScanDataROI)),
      row(NAMED(qo_getScanDataROI_vector)),
      row(NAMED(ju_getPointCloudROI)),
      row(NAMED(ju_getPointCloudPara), ragged),
      row(NAMED(computeLineCrossPt_abs)),
      row(NAMED(compute2ptLine)),
      row(NAMED(compute2ptLine_2)),
      row(NAMED(rotateLine45Deg)),
      row(NAMED(computeAngleDiff), at<0>(0.0, 22.5, 180.0, 360.0), at<1>(0.0, 10.25, 200.5, 359.0)),
      row(NAMED(getLineAngle), at<0>(0.0, -2.0, 3.25, 7.5), at<1>(0.0, -1.0, 1.5, 2.0)),
      row(NAMED(compute2DLen)),
      row(NAMED(computePtDistToLine)),
      row(NAMED(ny_getFootPoint)),
      row(NAMED(ny_getFootPoint_abc)),
      row(NAMED(drawLine), at<0>(-7, 0, 3), at<1>(2, 5, -9), at<3>(2, -4, 12)).keep({0, 1, 2, 3}),
      row(NAMED(lineFitting)),
      row(NAMED(lineFitting_abc)),
      row(NAMED(fitCircleByLeastSquare)),
      row(NAMED(leastSquareParabolaFitEigen)),
      row(NAMED(fitLine3DLeastSquares)),
      row(NAMED(computeMeanZ)),
      row(NAMED(caculateRT)),
      row(NAMED(pointRT), by<0>([](Scene& s) {
            return makeImage(3, 3, CV_64F, [&s] { return s.random.grid(-1.0, 1.0); });
          })),
  };
}

std::vector<Row> calibration() {
  const auto plane = [](Scene& s) { return build::planeScan(s.random, s.columns, s.rows); };
  const auto planeLines = [=](Scene& s) { return makePointerScan(plane(s)); };
  const auto ground = [](Scene& s) { return build::groundScan(s.random, s.columns, s.rows); };
  return {
      row(NAMED(adjustPlaneToXYPlane), at<0>(0.0, 0.25, 1e-4, 3.5), at<1>(0.0, -0.5, 1e-4, 2.0),
          at<2>(-1.0, -1.0, 1.0, 0.0, 1e-8)),
      row(NAMED(ju_computeRTMatrix)),
      row(NAMED(lineDataRT)).atLeast(1),
      row(NAMED(lineDataRT_vector)),
      row(NAMED(HCamera_lineDataRT_vector)),
      row(NAMED(lineDataRT_RGBD)),
      row(NAMED(rotationMatrixToEulerZYX)),
      row(NAMED(eulerToRotationMatrixZYX)),
      row(NAMED(qo_getPlaneCalibPara), by<0>(planeLines)),
      row(NAMED(qo_getPlaneCalibPara2), by<0>(plane)),
      row(NAMED(qo_getPlaneCalibPara2_ROI), by<0>(plane)),
      row(NAMED(qo_getPlaneCalibPara_ROIs), by<0>(planeLines)),
      row(NAMED(qo_getHolePlaneCalibPara), by<0>(plane)).mayLose({0}),
      row(NAMED(qo_HCameraVScan_getGroundCalibPara), by<0>(ground)).mayLose({0}),
      row(NAMED(teskCaculateLaserPlane)),
  };
}

std::vector<Row> conditioning() {
  const auto anyRun = [](Scene& s, auto& arguments) {
    const int start = s.whole(0, s.size / 4);
    std::get<0>(arguments).value = {start, s.whole(0, s.size - start), 7};
  };
  return {
      row(NAMED(qo_lineDataSmoothing), at<1>(-3, 1, 2, 3, 5, 8, 40)),
      row(NAMED(qo_lineSegSmoothing), at<1>(1.0, 1.25, 3.0), at<2>(0.25, 1.0, 4.0, 90.0),
          at<3>(-2, 2, 3, 6, 11)),
      row(NAMED(qo_lineDataRemoveOutlier)),
      row(NAMED(qo_lineDataRemoveOutlier_changeOriginData)),
      row(NAMED(ju_vectorDataRemoveOutlier_overwrite)),
      row(NAMED(qo_lineDataRemoveOutlier_ptDistMethod)),
      row(NAMED(ju_noiseFilter)).atLeast(1),
      row(NAMED(ju_getLineDataIntervals)),
      row(NAMED(split), at<2>(0.25, 0.5, 1.0, 2.0), anyRun).keep({0, 2}),
      row(NAMED(ju_surfaceLineSegment)).keep({3}),
  };
}

std::vector<Row> features() {
  const auto stamps = [](Scene& s, auto& arguments) {
    for (STesk3DPosition& sample : std::get<0>(arguments).value) {
      sample.nPointIdx = s(2, 2, 3, 16);
    }
  };
  const auto labels = [](Scene& s) {
    return makeImage(s.size, 10, CV_32S, [&s] { return s.whole(-1, 2); });
  };
  return {
      row(NAMED(qo_getLineCornerFeature)),
      row(NAMED(qo_maskData_getLineCornerFeature), at<2>(2), stamps),
      row(NAMED(qo_getLineCornerFeature_BQ), at<3>(30.0, 40.0, 50.0)),
      row(NAMED(qo_getLineContourCornerFeature_groundMask_BQ), at<3>(1.0, 2.5, 6.0)).keepInts({0}),
      row(NAMED(ju_getLineCornerFeature_PSM), at<3>(40.0, 50.0, 90.0)),
      row(NAMED(ju_getLineCorerFeature)),
      row(NAMED(qo_getLineGapFeature)),
      row(NAMED(qo_getLineJumpFeature_cornerMethod)),
      row(NAMED(qo_getLineDownJumps), at<3>(0.25, 1.0, 3.0)).mayLose({0, 4}),
      row(NAMED(qo_getLineLVFeature)),
      row(NAMED(qo_getLineRigthAngleFeature)),
      row(NAMED(qo_getLineLocalPeaks), at<3>(0.5, 1.0, 2.0, 5.0)),
      row(NAMED(qo_getFlatLineLocalPeaks_vector), at<2>(1.0, 2.0, 3.0), at<3>(0.75, 1.0, 3.0),
          at<4>(2.0, 4.0, 8.0), stamps),
      row(NAMED(qo_getLineUpperSemiCircleFeature), at<3>(1.0, 2.0, 4.0), by<6>(labels))
          .keepInts({2}),
      row(NAMED(ju_getRingArcFeature)),
      row(NAMED(ju_getLineGloveArcs)),
      row(NAMED(ju_getLineRaisedFeature)),
  };
}

std::vector<Row> trees() {
  const auto crossed = [](Scene& /*s*/, auto& arguments) {
    auto& positions = std::get<0>(arguments).value;
    for (SQO_2DValueI& at : positions) {
      if (!std::get<2>(arguments).value) {
        std::swap(at.x, at.y);
      }
    }
    const auto before = [](const auto& a, const auto& b) { return a.x < b.x; };
    std::stable_sort(positions.begin(), positions.end(), before);
  };
  return {
      row(NAMED(qo_getFeatureGrowingTrees)).mayLose({1}),
      row(NAMED(qo_lineFeaturesGrowing)).mayLose({3}),
      row(NAMED(qo_cornerFeaturesGrowing)).mayLose({1}),
      row(NAMED(qo_peakFeatureGrowing)).mayLose({1}),
      row(NAMED(ju_getFeatureGrowingTrees_noTypeMatch)).mayLose({1, 2}),
      row(NAMED(qo_getEndingGrowingTrees), crossed).mayLose({4}).keepInts({0}),
      row(NAMED(qo_getEndingGrowingTrees_angleCheck), at<6>(1.0, 2.0, 4.0), crossed)
          .mayLose({4})
          .keepInts({0, 4}),
      row(NAMED(qo_lineGapsGrowing)).mayLose({3}),
      row(NAMED(qo_getFeatureGrowingTrees_semiCircle), at<2>(4, 5, 6, 9)).mayLose({0, 3, 4, 5}),
      row(NAMED(ju_getSegFeatureGrowingTrees)).mayLose({1}),
      row(NAMED(qo_LVFeatureGrowing)).mayLose({0, 1, 4, 5}),
  };
}

const auto image = [](int type, auto... choices) {
  return
      [=](Scene& s) { return makeImage(s.rows, s.columns, type, [&] { return s(choices...); }); };
};
const auto projected = [](Scene& s, auto& arguments) {
  auto& [scan, xRange, yRange, scale, zLimit, edge, link, mask, back] = arguments;
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan.value);
  xRange.value = {box.xRange.min - s.whole(0, 2) * 0.5, box.xRange.max};
  yRange.value = {box.yRange.min - s.whole(0, 2) * 0.5, box.yRange.max};
  const auto pixels = [&, e = edge.value, k = scale.value](const STeskRangeD& range) {
    return static_cast<int>((range.max - range.min) / k) + 2 * e + 2;
  };
  const int rows = pixels(yRange.value);
  const int columns = pixels(xRange.value);
  mask.value = makeImage(rows, columns, CV_32F, [&] { return s.random.chance(5) ? 1.0 : 0.0; });
  back.value = makeImage(rows, columns, CV_32SC2, [] { return -1; });
};
const auto flags = [](Scene& s, auto& arguments) {
  for (auto& line : std::get<0>(arguments).value.scan) {
    for (STesk3DPosition& sample : line) {
      const int mark = s.random.chance(20) ? 256 : 0;
      const int across = s(0, 0, 0, 1, 2, 4, 6) * 16;
      sample.nPointIdx = s(0, 0, 0, 1, 2, 3, 4, 5, 7) + across + mark;
    }
  }
};
const auto seeds = [](Scene& s) {
  std::vector<SQO_2DValueI> list(static_cast<std::size_t>(s.whole(1, 3)));
  for (SQO_2DValueI& seed : list) {
    seed = {s.whole(0, s.columns - 1), s.whole(0, s.columns - 1), 5, 6.5, 7};
  }
  return list;
};

std::vector<Row> clustersAndMaps() {
  return {
      row(NAMED(qo_pointClustering), at<1>(1.0, 1.5, 3.0)),
      row(NAMED(ju_gridPointClustering), at<2>(0, 1, 2)).mayLose({0, 5, 6}).keep({5}),
      row(NAMED(ju_gridPointClustering_labelling)).mayLose({0, 3, 4}).keep({3}),
      row(NAMED(QO_TwoPassLabel), by<0>(image(CV_8U, 0, 1, 1)), at<3>(4, 8)).keep({0, 2}),
      row(NAMED(pointClout2DProjection), at<3>(0.5, 1.0, 2.0), at<4>(0.0, 40.0), at<5>(0, 2),
          at<6>(1.0, 2.5, 5.0), projected)
          .keep({0, 1, 2, 3, 5}),
      row(NAMED(qo_distanceTrans), by<0>(image(CV_32F, 0.0, 1e6, 1e6, 1e6, 1e6, 2.5)),
          at<2>(0, 1, 2)),
      row(NAMED(qo_getLocalPeaks)).keep({3}),
      row(NAMED(qo_getLocalPeaks_distTransform)).keep({2}),
      row(NAMED(qo_peakXYScan), by<2>(image(CV_32SC4, 0, 1, 1, 2, 3)), flags).atLeast(1).keep({3}),
      row(NAMED(qo_getContourPts), at<1>(0, 1, 2, 3)),
      row(NAMED(qo_getPairingContourPts), by<2>([](Scene& s) {
            return std::vector<SQO_conotourPair>(static_cast<std::size_t>(s.whole(0, 2)));
          }),
          at<3>(STeskRangeD{-1.0, 9.5}, STeskRangeD{1.0, 8.0})),
      row(NAMED(qo_contourPostProc), at<1>(4), at<2>(0.5, 2.0, 6.0)).keep({0, 1}),
      row(NAMED(watershed)).keep({0}),
      row(NAMED(ju_seedWatershed), by<1>(seeds), at<2>(5)).atLeast(4).keep({0, 1, 2}),
  };
}

}  // namespace

const std::vector<Row>& table() {
  static const std::vector<Row> rows = [] {
    std::vector<Row> all;
    for (auto room :
         {recordsAndGeometry, calibration, conditioning, features, trees, clustersAndMaps}) {
      std::vector<Row> some = room();
      std::move(some.begin(), some.end(), std::back_inserter(all));
    }
    return all;
  }();
  return rows;
}

}  // namespace calls
