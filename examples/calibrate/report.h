#pragma once

#include <string>
#include <vector>

#include "methods.h"
#include "registration.h"

namespace examples {

void printCalibrations(const std::vector<Calibration>& calibrations, const std::string& unit);

void printRegistration(const Registration& registration, const std::string& unit);

}  // namespace examples
