#include "plane/plane_file.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "base/failure.h"

namespace program {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kSchemaVersion = 1;
const char* const kSchema = "scanline.plane";

/// The rotation must be one: its inverse, the transpose, brings it back to the identity.
bool isRotation(const std::vector<double>& m) {
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      const double product =
          m[3 * i] * m[3 * k] + m[3 * i + 1] * m[3 * k + 1] + m[3 * i + 2] * m[3 * k + 2];
      if (!(std::abs(product - (i == k ? 1.0 : 0.0)) < 1e-6)) {
        return false;
      }
    }
  }
  return true;
}

PlaneCandidate planeOf(const Json& json) {
  PlaneCandidate plane{};
  plane.method = json.at("method");
  plane.isGround = json.at("levels") == "y";
  plane.height = json.at("height");
  plane.tiltDegrees = json.at("tilt_deg");
  const std::vector<double> centre = json.at("centre");
  const std::vector<double> rotation = json.at("rotation");
  if (centre.size() != 3 || rotation.size() != 9 || !isRotation(rotation)) {
    throw std::invalid_argument("'centre' must hold 3 numbers, 'rotation' the 9 of a rotation");
  }
  plane.centre = {centre[0], centre[1], centre[2]};
  for (std::size_t i = 0; i < 9; ++i) {
    plane.calibration.levelMatrix[i] = rotation[i];
    plane.calibration.invLevelMatrix[i] = rotation[3 * (i % 3) + i / 3];
  }
  plane.calibration.planeHeight = plane.height;
  return plane;
}

}  // namespace

std::string planeAsJson(const PlaneCandidate& plane, const std::string& unit) {
  Json json;
  json["schema"] = kSchema;
  json["schema_version"] = kSchemaVersion;
  json["method"] = plane.method;
  json["unit"] = unit;
  json["levels"] = plane.isGround ? "y" : "z";
  json["height"] = plane.height;
  json["tilt_deg"] = plane.tiltDegrees;
  json["centre"] = {plane.centre.x, plane.centre.y, plane.centre.z};
  json["rotation"] = std::vector<double>(std::begin(plane.calibration.levelMatrix),
                                         std::end(plane.calibration.levelMatrix));
  return json.dump(2) + '\n';
}

PlaneCandidate readPlane(const std::string& path) {
  std::ifstream file(path);
  if (!file) {
    throw Failure(ExitCode::badInput,
                  path + ": is neither a method of --plane nor a file that can be read");
  }
  try {
    const Json json = Json::parse(file);
    if (json.at("schema") != kSchema || json.at("schema_version") != kSchemaVersion) {
      throw std::invalid_argument("its schema is not scanline.plane, version 1");
    }
    return planeOf(json);
  } catch (const std::exception& error) {
    throw Failure(ExitCode::badInput,
                  path + ": is not a plane as scanline calibrate saves it: " + error.what());
  }
}

}  // namespace program
