#include "exhibit.h"

#include <algorithm>

#include "marks.h"
#include "text_table.h"

namespace examples {
namespace {

/// A number without zeros at its end.
std::string brief(double value) {
  std::string text = significant(value, 3);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    text.erase(text.find_last_not_of('.') + 1);
  }
  return text;
}

}  // namespace

std::vector<Mark> pointMarks(const std::vector<SQO_basicFeature1D>& features) {
  std::vector<Mark> marks;
  marks.reserve(features.size());
  for (const SQO_basicFeature1D& f : features) {
    marks.push_back(
        {MarkKind::point, f.featureType, f.jumpPos, f.jumpPos, nameOfType(f.featureType)});
  }
  return marks;
}

std::vector<Mark> valueMarks(const std::vector<SQO_basicFeature1D>& features, const char* what) {
  std::vector<Mark> marks = pointMarks(features);
  for (std::size_t i = 0; i < marks.size(); ++i) {
    marks[i].label += std::string(", ") + what + " " + fixed(features[i].featureValue, 0);
  }
  return marks;
}

std::vector<Mark> lineMarks(const SQO_lineFeature& features) {
  std::vector<Mark> marks = pointMarks(features.features);
  for (const SQO_basicFeature1D& end : features.endings) {
    marks.push_back({MarkKind::segmentEnd, end.featureType, end.jumpPos, end.jumpPos, ""});
  }
  return marks;
}

std::vector<Mark> stretchMarks(const std::vector<SJU_segFeature>& stretches, const char* what) {
  std::vector<Mark> marks;
  marks.reserve(stretches.size());
  for (const SJU_segFeature& s : stretches) {
    marks.push_back(
        {MarkKind::stretch, 0, s.startPt, s.endPt, std::string(what) + " " + fixed(s.segValue, 1)});
  }
  return marks;
}

std::string describe(std::initializer_list<std::pair<const char*, double>> parameters) {
  std::string text;
  for (const auto& [name, value] : parameters) {
    text += (text.empty() ? "" : ", ") + std::string(name) + " " + brief(value);
  }
  return text;
}

bool holdsFeature(const std::vector<Mark>& marks) {
  return std::any_of(marks.begin(), marks.end(),
                     [](const Mark& mark) { return mark.kind != MarkKind::segmentEnd; });
}

}  // namespace examples
