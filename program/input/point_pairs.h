#pragma once

#include <opencv2/core/types.hpp>
#include <string>
#include <vector>

#include "base/messages.h"

namespace program {

/// A place on an object, in the coordinates of two scans.
struct PointPair {
  std::string id;
  cv::Point3d a;
  cv::Point3d b;
};

/// Reads pairs from text with six numbers a line, x1, y1, z1 of the first scan and x2, y2, z2 of
/// the second. A header is allowed, as are commas, semicolons, tabs and blanks between the numbers.
/// The ids are the numbers of the pairs, from 1. @throws Failure (badInput)
std::vector<PointPair> readPairs(const std::string& path);

/// Reads the marks of two scans, each line id, x, y, z, and pairs those of the same id. Warns of
/// marks that only one scan has. @throws Failure (badInput)
std::vector<PointPair> readMarks(const std::string& pathA,
                                 const std::string& pathB,
                                 Messages& messages);

}  // namespace program
