#include "report.h"

#include <cstdio>
#include <utility>

#include "text_table.h"

namespace examples {
namespace {

void addColumns(TextTable& table, const std::vector<std::string>& headers) {
  for (const std::string& header : headers) {
    table.addColumn(header, Align::right);
  }
}

std::vector<std::string> calibrationRow(const Calibration& c) {
  const std::string turn = c.trueTurnDegrees ? fixed(*c.trueTurnDegrees, 2) : "-";
  if (!c.residual) {
    return {c.method, c.scene, "none found", turn, "-", "-", "-", "-", "-", "-", "-"};
  }
  return {c.method,
          c.scene,
          fixed(c.turnDegrees, 2),
          turn,
          fixed(c.record.planeHeight, 2),
          fixed(100.0 * c.residual->share, 1) + " %",
          fixed(c.residual->mean, 4),
          fixed(c.residual->max, 4),
          fixed(c.angles.roll, 2),
          fixed(c.angles.pitch, 2),
          fixed(c.angles.yaw, 2)};
}

std::vector<std::string> motionRow(const char* name, const Motion& motion) {
  return {name,
          fixed(motion.angles.roll, 3),
          fixed(motion.angles.pitch, 3),
          fixed(motion.angles.yaw, 3),
          fixed(motion.shift.x, 3),
          fixed(motion.shift.y, 3),
          fixed(motion.shift.z, 3)};
}

}  // namespace

void printCalibrations(const std::vector<Calibration>& calibrations, const std::string& unit) {
  std::printf("Calibration (lengths in %s, angles in degrees)\n", unit.c_str());
  TextTable table;
  table.addColumn("method", Align::left);
  table.addColumn("scan", Align::left);
  addColumns(table, {"tilt", "true tilt", "height", "on plane", "mean residual", "max residual",
                     "roll", "pitch", "yaw"});
  for (const Calibration& calibration : calibrations) {
    table.addRow(calibrationRow(calibration));
  }
  table.print();
  std::printf(
      "  tilt: what the levelling turns by; the ground is turned to a constant y, a plane to z.\n"
      "  residual: distance of the plane's levelled samples from their mean height.\n");
}

void printRegistration(const Registration& registration, const std::string& unit) {
  std::printf("\nRegistration of two scans by %s pairs of points\n",
              grouped(registration.points).c_str());
  TextTable table;
  table.addColumn("", Align::left);
  addColumns(table, {"roll", "pitch", "yaw", "shift x", "shift y", "shift z"});
  table.addRow(motionRow("made", registration.truth));
  table.addRow(motionRow("found", registration.found));
  table.print();
  std::printf("  residual: mean %s, max %s %s\n", fixed(registration.meanResidual, 4).c_str(),
              fixed(registration.maxResidual, 4).c_str(), unit.c_str());
}

}  // namespace examples
