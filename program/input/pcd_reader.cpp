#include <pcl/PCLPointCloud2.h>
#include <pcl/console/print.h>
#include <pcl/io/pcd_io.h>

#include <algorithm>
#include <exception>

#include "base/failure.h"
#include "input/pcd_header.h"
#include "input/raw_number.h"
#include "input/readers.h"
#include "input/scan_input.h"

namespace program {
namespace {

pcl::PCLPointCloud2 readCloud(const std::string& path) {
  // All that PCL would print is in our own messages.
  pcl::console::setVerbosityLevel(pcl::console::L_ALWAYS);
  pcl::PCLPointCloud2 cloud;
  Eigen::Vector4f origin;
  Eigen::Quaternionf orientation;
  int version = 0;
  int result = -1;
  std::string why = "PCL cannot read it";
  try {
    result = pcl::PCDReader().read(path, cloud, origin, orientation, version);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    why += std::string(": ") + error.what();
  }
  const std::uint64_t wanted =
      std::uint64_t{cloud.height} * cloud.width * std::uint64_t{cloud.point_step};
  if (result < 0 || wanted == 0 || cloud.data.size() < wanted) {
    throw Failure(ExitCode::badInput, path + ": is a damaged PCD file. " + why);
  }
  return cloud;
}

/// A field of the records: float or double.
struct Axis {
  std::size_t offset;
  bool isDouble;

  [[nodiscard]] double of(const std::uint8_t* record) const {
    const auto* raw = reinterpret_cast<const char*>(record + offset);
    return isDouble ? rawNumber<double>(raw, false) : rawNumber<float>(raw, false);
  }
};

Axis axisOf(const std::string& path, const pcl::PCLPointCloud2& cloud, const std::string& name) {
  const auto found =
      std::find_if(cloud.fields.begin(), cloud.fields.end(),
                   [&](const pcl::PCLPointField& field) { return field.name == name; });
  const bool isDouble =
      found != cloud.fields.end() && found->datatype == pcl::PCLPointField::FLOAT64;
  if (found == cloud.fields.end() ||
      found->offset + (isDouble ? sizeof(double) : sizeof(float)) > cloud.point_step) {
    throw Failure(ExitCode::badInput, path + ": is a damaged PCD file: it has no field " + name);
  }
  return {found->offset, isDouble};
}

}  // namespace

RawScan readPcd(const InputOptions& options) {
  const PcdHeader header = checkPcdHeader(options.path);
  const pcl::PCLPointCloud2 cloud = readCloud(options.path);
  const Axis x = axisOf(options.path, cloud, "x");
  const Axis y = axisOf(options.path, cloud, "y");
  const Axis z = axisOf(options.path, cloud, "z");
  RawScan raw;
  raw.format =
      std::string("organised PCD") + (header.hasViewpoint ? ", viewpoint not applied" : "");
  raw.scan.resize(cloud.height);
  forEachLine(raw.scan, [&](std::size_t l) {
    const std::uint8_t* record = &cloud.data[l * cloud.width * cloud.point_step];
    raw.scan[l].reserve(cloud.width);
    for (std::uint32_t i = 0; i < cloud.width; ++i, record += cloud.point_step) {
      raw.scan[l].push_back(
          {static_cast<int>(i), spacePoint(x.of(record), y.of(record), z.of(record))});
    }
  });
  return raw;
}

}  // namespace program
