#pragma once

#include <string>

#include "draw/canvas.h"

namespace program {

/// The name of a feature type in tables and legends. Unlike the library's, it follows the drawn
/// height: a rise leads towards the sensor.
std::string nameOfType(int featureType);

/// The colour of a feature type, the same in all pictures.
Colour colourOfType(int featureType);

}  // namespace program
