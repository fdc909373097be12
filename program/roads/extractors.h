#pragma once

#include <functional>
#include <string>
#include <vector>

#include <scanline/scanline.h>
#include "base/extent.h"
#include "base/parameters.h"
#include "base/scan.h"
#include "plane/plane_choice.h"

namespace program {

/// A feature of one line, from one sample to another; a single sample is both.
struct FoundFeature {
  std::string kind;
  int type;  ///< For the colour; 0 without a type.
  int firstSample;
  int lastSample;
  STesk3DPoint from;
  STesk3DPoint to;
  double value;  ///< As the extractor defines it; NaN if it has none.
};

/// What an extractor works on beside its line.
struct LineContext {
  int lineIdx;
  const Parameters& parameters;
  const PlaneChoice& plane;
};

/// One of the library's searches for features on a line.
struct Extractor {
  const char* name;
  const char* function;  ///< Of the library.
  const char* finds;
  std::vector<const char*> parameters;  ///< Those that it reads.
  std::function<std::vector<FoundFeature>(Line& line, const LineContext& context)> find;
  const char* value = nullptr;  ///< What the value of a feature is; null if it has none.
};

/// All extractors, in the order of the library's documentation.
const std::vector<Extractor>& extractors();

/// Adds the parameters of all extractors.
void addExtractorParameters(Parameters& parameters);

/// Derives what the user has not given from the spacing and the noise of a scan.
void deriveExtractorParameters(Parameters& parameters,
                               const Extent& extent,
                               const PlaneChoice& plane);

}  // namespace program
