/// The extension module `scanline._core`: the records and functions of the library.

#include <scanline/version.h>
#include "argument_images.h"
#include "functions.h"
#include "record_class.h"
#include "tree_list.h"
#include "type_text.h"

namespace binding {

namespace {

/// Puts the names and types of a record's fields on record, and whether it is plain, for the stub
/// and the tests.
template <typename Record>
void recordFields(py::module_& module) {
  py::list fields;
  std::apply(
      [&fields](const auto&... field) {
        (fields.append(
             py::make_tuple(field.name, typeText<typename std::decay_t<decltype(field)>::Type>())),
         ...);
      },
      Fields<Record>::all);
  module.attr("_records")[Fields<Record>::name] = py::make_tuple(fields, isPlain<Record>());
}

template <typename... Record>
void defineRecords(py::module_& module) {
  ((defineRecord<Record>(module), recordFields<Record>(module)), ...);
}

/// Arrays of NumPy 2 have another layout than this pybind11 knows.
void checkNumpy() {
#if PYBIND11_VERSION_HEX < 0x020C0000
  const std::string version = py::str(py::module_::import("numpy").attr("__version__"));
  if (std::stoi(version) > 1) {
    throw py::import_error(
        "scanline was built with pybind11 " + std::to_string(PYBIND11_VERSION_MAJOR) + "." +
        std::to_string(PYBIND11_VERSION_MINOR) + " and needs numpy<2, not NumPy " + version);
  }
#endif
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
  binding::checkNumpy();
  m.doc() = "The records and functions of libscanline; use the package scanline.";
  m.attr("__version__") = SCANLINE_VERSION_STRING;
  m.attr("_signatures") = pybind11::dict();
  m.attr("_records") = pybind11::dict();
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
