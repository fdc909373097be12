#pragma once

#include <string>
#include <vector>

#include "draw/canvas.h"
#include "roads/extractors.h"

namespace program {

/// A line and what an extractor found on it.
struct SearchedLine {
  int index;
  std::string unit;
  const Extractor& extractor;
  const Parameters& parameters;
  const PlaneChoice& plane;
  const Line& given;
  const Line& left;  ///< After the search, which may have deleted samples.
  const std::vector<FoundFeature>& features;
};

/// The profile with the features, numbered as in the table, and what the search was limited by.
Picture linePicture(const SearchedLine& searched);

}  // namespace program
