#pragma once

#include <optional>
#include <vector>

#include "pipeline.h"
#include "scene.h"

namespace examples {

/// An object of a made scene, and what was found of it.
struct Comparison {
  BeltObject truth;
  std::optional<std::size_t> found;  ///< Index of the object found at its place.
  double positionError;              ///< Distance of the two centres.
};

/// Matches what was made with what was found, nearest pairs first.
std::vector<Comparison> compare(const std::vector<BeltObject>& made,
                                const std::vector<FoundObject>& found);

}  // namespace examples
