#include "commands/register_report.h"

#include <algorithm>
#include <utility>

#include "base/number.h"

namespace program {
namespace {

/// What is added to R b.
cv::Point3d shiftOf(const Motion& motion) {
  return {motion.T.at<double>(0), motion.T.at<double>(1), motion.T.at<double>(2)};
}

long long outliersOf(const Registration& found) {
  return std::count_if(found.residuals.begin(), found.residuals.end(),
                       [](const Residual& residual) { return residual.isOutlier; });
}

}  // namespace

std::string rmsAsText(double rms) {
  constexpr double kLeast = 1e-4;
  return rms < kLeast ? fixed(rms, 4) : significant(rms, 3);
}

Table motionTable(const Motion& motion, const std::string& unit) {
  Table table = {"transformation",
                 "Motion of B: a point goes to its product with these rows, plus the shift",
                 {{"axis", ""}, {"x", "", 8}, {"y", "", 8}, {"z", "", 8}, {"shift", unit, 4}},
                 {}};
  const cv::Point3d shift = shiftOf(motion);
  const double shifts[] = {shift.x, shift.y, shift.z};
  const char* axes[] = {"x", "y", "z"};
  for (int row = 0; row < 3; ++row) {
    table.rows.push_back({std::string(axes[row]), motion.R.at<double>(row, 0),
                          motion.R.at<double>(row, 1), motion.R.at<double>(row, 2), shifts[row]});
  }
  return table;
}

Table residualTable(const std::vector<PointPair>& pairs,
                    const Registration& found,
                    const std::string& unit) {
  Table table = {"points",
                 "Points of A, and how far those of B are from them after the motion",
                 {{"id", ""},
                  {"x", unit},
                  {"y", unit},
                  {"z", unit},
                  {"dx", unit, 4},
                  {"dy", unit, 4},
                  {"dz", unit, 4},
                  {"residual", unit, 4},
                  {"outlier", ""}},
                 {}};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const Residual& residual = found.residuals[i];
    const cv::Point3d& a = pairs[i].a;
    const cv::Point3d d = residual.moved - a;
    table.rows.push_back(
        {pairs[i].id, a.x, a.y, a.z, d.x, d.y, d.z, residual.distance, residual.isOutlier});
  }
  return table;
}

Field motionField(const Registration& found, std::size_t pairs) {
  const SQO_EulerAngles angles = found.motion.angles();
  const cv::Point3d shift = shiftOf(found.motion);
  std::vector<Cell> rotation;
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) {
      rotation.emplace_back(found.motion.R.at<double>(row, col));
    }
  }
  return {"motion",
          std::vector<Field>{field("from", std::string("B")),
                             field("to", std::string("A")),
                             {"rotation", rotation},
                             {"translation", std::vector<Cell>{shift.x, shift.y, shift.z}},
                             {"euler_deg", std::vector<Field>{field("roll", angles.roll),
                                                              field("pitch", angles.pitch),
                                                              field("yaw", angles.yaw)}},
                             field("turn_deg", found.motion.degrees()),
                             field("rms", found.rms),
                             field("pairs", static_cast<long long>(pairs)),
                             field("fitted", static_cast<long long>(found.fitted)),
                             field("outliers", outliersOf(found))}};
}

Field agreementField(const Agreement& agreement) {
  return {"agreement", std::vector<Field>{field("overlap", agreement.overlap),
                                          field("median_dz", agreement.median),
                                          field("half_within", agreement.halfOfThem),
                                          field("nine_tenths_within", agreement.mostOfThem)}};
}

std::vector<std::string> describe(const Registration& found,
                                  const Agreement& agreement,
                                  const std::string& unit) {
  const SQO_EulerAngles angles = found.motion.angles();
  std::vector<std::string> lines = {
      "Turn: " + fixed(found.motion.degrees(), 3) + " deg; roll " + fixed(angles.roll, 3) +
          ", pitch " + fixed(angles.pitch, 3) + ", yaw " + fixed(angles.yaw, 3) +
          " deg, about x first, then y, then z",
      "Residuals: rms " + rmsAsText(found.rms) + " " + unit + " over " +
          counted(found.fitted, "fitted pair") + "; outliers: " +
          std::to_string(outliersOf(found)) + " of " + counted(found.residuals.size(), "pair")};
  if (agreement.overlap > 0.0) {
    lines.push_back("Overlap: " + fixed(100.0 * agreement.overlap, 1) +
                    " % of B seen from above; there B and A differ in z by " +
                    significant(agreement.median, 3) + " " + unit + " in the median, half within " +
                    significant(agreement.halfOfThem, 3) + ", 90 % within " +
                    significant(agreement.mostOfThem, 3) + " " + unit);
  } else {
    lines.emplace_back("Overlap: none; seen from above, no sample of B lies over A");
  }
  return lines;
}

}  // namespace program
