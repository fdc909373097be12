#pragma once

#include <vector>

#include "roads/extractors.h"

// The calls of the library for each extractor.
namespace program {

std::vector<FoundFeature> findCorners(Line& line, const LineContext& context);
std::vector<FoundFeature> findMaskedCorners(Line& line, const LineContext& context);
std::vector<FoundFeature> findCornersBelow(Line& line, const LineContext& context);
std::vector<FoundFeature> findRunCorners(Line& line, const LineContext& context);
std::vector<FoundFeature> findCornersAtHeight(Line& line, const LineContext& context);
std::vector<FoundFeature> findContourCorners(Line& line, const LineContext& context);
std::vector<FoundFeature> findGaps(Line& line, const LineContext& context);
std::vector<FoundFeature> findCornerJumps(Line& line, const LineContext& context);
std::vector<FoundFeature> findDownJumps(Line& line, const LineContext& context);
std::vector<FoundFeature> findPeaks(Line& line, const LineContext& context);
std::vector<FoundFeature> findDents(Line& line, const LineContext& context);
std::vector<FoundFeature> findShapes(Line& line, const LineContext& context);
std::vector<FoundFeature> findRightAngles(Line& line, const LineContext& context);
std::vector<FoundFeature> findRingArcs(Line& line, const LineContext& context);
std::vector<FoundFeature> findTubes(Line& line, const LineContext& context);
std::vector<FoundFeature> findGloveArcs(Line& line, const LineContext& context);
std::vector<FoundFeature> findRaised(Line& line, const LineContext& context);

}  // namespace program
