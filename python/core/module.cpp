/// The extension module `scanline._core`: the records and functions of the library.

#include <scanline/version.h>
#include "arguments.h"
#include "functions.h"

namespace binding {

namespace {

template <typename... Record>
void defineRecords(py::module_& module) {
  (defineRecord<Record>(module), ...);
}

template <typename... Tree>
void defineTreeLists(py::module_& module) {
  (defineTreeList<Tree>(module), ...);
}

void defineAllRecords(py::module_& m) {
  defineRecords<STesk3DPoint, STesk2DPoint, STesk2DPointD, STesk3DPosition, STeskXYZRGBDPoint,
                STeskRangeD, STesk3DRangeD, STeskRect, SQO_2DValueI, SQO_intPair, SQO_RUN,
                SJU_pointCloudPara, SQO_planeCalibPara, SQO_EulerAngles>(m);
  defineRecords<SQO_basicFeature1D, SQO_lineFeature, SQO_featureTree, SQO_basicFeatureGap,
                SQO_gapFeatureTree, SJU_segFeature, SJU_segFeatureTree, SQO_featureSemiCircle,
                SQO_semiCircleFeatureTree>(m);
  defineRecords<SQO_treeGrowParam, SQO_bagParam, SQO_cornerParam, SQO_slopeParam, SQO_VFeatureParam,
                SQO_lineRightAngleParam, SQO_gloveArcParam, SQO_raisedFeatureParam,
                SQO_lineSegParam, SQO_outlierFilterParam, SQO_localPkParam>(m);
  defineRecords<SQO_featureClusteringInfo, SQO_Region, SQO_contourPtInfo, SQO_lineConotours,
                SQO_conotourPair>(m);
  defineTreeLists<SQO_featureTree, SQO_gapFeatureTree, SJU_segFeatureTree,
                  SQO_semiCircleFeatureTree>(m);
  defineWatershedImage(m);
}

}  // namespace

}  // namespace binding

PYBIND11_MODULE(_core, m) {
  pybind11::options options;
  options.disable_function_signatures();
  m.doc() = "The records and functions of libscanline; use the package scanline.";
  m.attr("__version__") = SCANLINE_VERSION_STRING;
  m.attr("_signatures") = pybind11::dict();
  m.attr("CopyWarning") = pybind11::reinterpret_borrow<pybind11::object>(PyErr_NewExceptionWithDoc(
      "scanline.CopyWarning", "An array was copied because its strides do not suit the call.",
      PyExc_UserWarning, nullptr));
  binding::defineAllRecords(m);
  binding::defineGeometry(m);
  binding::defineConditioning(m);
  binding::defineFeatures(m);
  binding::defineTrees(m);
  binding::defineMaps(m);
}
