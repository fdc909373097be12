#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <scanline/feature_records.h>
#include "scan_types.h"

namespace examples {

/// How a mark is drawn: at a point, as a stretch of the profile, as a span between two points, or
/// as a triangle at the end of a data segment.
enum class MarkKind { point, stretch, span, segmentEnd };

/// Something found on a line. A point and a segment end stand at `from`.
struct Mark {
  MarkKind kind;
  int featureType;  ///< Tells the colour; 0 without a type.
  STesk3DPoint from;
  STesk3DPoint to;
  std::string label;
};

/// A named range of y: samples of one label, say.
struct Band {
  STeskRangeD y;
  std::string name;
};

/// A named height: a limit or a reference.
struct Guide {
  double z;
  std::string name;
};

/// What an extractor found on a line, and what it was told.
struct Findings {
  std::string parameters;
  std::vector<Mark> marks;
  std::vector<Band> bands;
  std::vector<Guide> guides;
};

/// One picture of the gallery: an extractor, and a profile that shows what it finds.
struct Exhibit {
  const char* name;   ///< Name of the extractor's function.
  const char* shows;  ///< What is to be seen, in a sentence.
  Line (*profile)();
  Findings (*find)(Line& line);  ///< May change the line just as the extractor does.
};

std::vector<Exhibit> cornerExhibits();
std::vector<Exhibit> shapeExhibits();
std::vector<Exhibit> peakExhibits();

/// Features as point marks, named after their types.
std::vector<Mark> pointMarks(const std::vector<SQO_basicFeature1D>& features);
/// Features as point marks, named after `what` and their values.
std::vector<Mark> valueMarks(const std::vector<SQO_basicFeature1D>& features, const char* what);
/// Features and ends of segments.
std::vector<Mark> lineMarks(const SQO_lineFeature& features);
/// Stretches, named after `what` and their values.
std::vector<Mark> stretchMarks(const std::vector<SJU_segFeature>& stretches, const char* what);

/// Names and values of parameters in one line.
std::string describe(std::initializer_list<std::pair<const char*, double>> parameters);

/// Whether there is more than ends of data segments.
bool holdsFeature(const std::vector<Mark>& marks);

inline int sizeOf(const Line& line) {
  return static_cast<int>(line.size());
}

}  // namespace examples
