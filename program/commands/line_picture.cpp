#include "commands/line_picture.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "draw/profile_picture.h"
#include "roads/feature_types.h"

namespace program {
namespace {

/// The colour of features without a type.
constexpr Colour kUntyped = {1.0, 0.63, 0.24};

bool isRead(const Extractor& extractor, const std::string& parameter) {
  return std::find(extractor.parameters.begin(), extractor.parameters.end(), parameter) !=
         extractor.parameters.end();
}

/// The number of a feature; with its value, unless there are too many to read.
std::string labelOf(const SearchedLine& searched, std::size_t i) {
  constexpr std::size_t kFew = 10;
  const std::string number = std::to_string(i + 1);
  if (searched.extractor.value == nullptr || searched.features.size() > kFew) {
    return number;
  }
  const std::string what = searched.extractor.value;
  return number + ": " + what + " " + significant(searched.features[i].value, 3) + " " +
         (what == "turn" ? "deg" : searched.unit);
}

void addFeature(ProfileContent& content, const SearchedLine& searched, std::size_t i) {
  const FoundFeature& f = searched.features[i];
  const Colour colour = f.type == 0 ? kUntyped : colourOfType(f.type);
  const auto first = searched.given.begin() + f.firstSample;
  const auto last = searched.given.begin() + f.lastSample;
  if (first < last) {
    content.stretches.push_back({Line(first, last + 1), colour});
    content.marks.push_back({f.to, colour, ""});
  }
  content.marks.push_back({f.from, colour, labelOf(searched, i)});
  const bool isKnown = std::any_of(content.legend.begin(), content.legend.end(),
                                   [&](const LegendEntry& entry) { return entry.name == f.kind; });
  if (!isKnown) {
    content.legend.push_back({Swatch::marker, colour, f.kind});
  }
}

/// The line, and in grey what the search deleted from it.
std::vector<ProfileTrace> tracesOf(const SearchedLine& searched) {
  const auto count = [](const Line& line) {
    return std::count_if(line.begin(), line.end(), isMeasured);
  };
  if (count(searched.left) >= count(searched.given)) {
    return {{searched.given, ink::kTrace, false, "line"}};
  }
  return {{searched.given, ink::kRaw, false, "deleted by the search"},
          {searched.left, ink::kTrace, false, "line"}};
}

std::vector<ProfileLevel> levelsOf(const SearchedLine& searched) {
  // The search of corners at a height takes them within this distance.
  constexpr double kNear = 10.0;
  if (!isRead(searched.extractor, "limit.z")) {
    return {};
  }
  const double z = searched.parameters.get("limit.z");
  if (searched.extractor.name == std::string("corners-at")) {
    return {{z - kNear, "limit-z - 10"}, {z + kNear, "limit-z + 10"}};
  }
  return {{z, "limit-z"}};
}

std::vector<ProfileBand> bandsOf(const SearchedLine& searched) {
  const Parameters& p = searched.parameters;
  const bool isMasked = isRead(searched.extractor, "mask.y-min") &&
                        (p.isGiven("mask.y-min") || p.isGiven("mask.y-max"));
  if (!isMasked) {
    return {};
  }
  return {{{p.get("mask.y-min"), p.get("mask.y-max")}, "samples that are used"}};
}

/// A number in few characters: whole if that is short.
std::string brief(double value) {
  const std::string whole = exact(value);
  return whole.size() <= 5 ? whole : significant(value, 3);
}

/// The parameters of the search as options.
std::string optionsOf(const SearchedLine& searched) {
  std::string text;
  for (const char* name : searched.extractor.parameters) {
    std::string option = name;
    std::replace(option.begin(), option.end(), '.', '-');
    text += (text.empty() ? "--" : "  --") + option + " " + brief(searched.parameters.get(name));
  }
  return text;
}

}  // namespace

Picture linePicture(const SearchedLine& searched) {
  ProfileContent content;
  content.title = "Line " + std::to_string(searched.index) + ": " + searched.extractor.name;
  content.subtitle =
      std::string(searched.extractor.finds) + " (" + searched.extractor.function + ")";
  content.unit = searched.unit;
  content.traces = tracesOf(searched);
  content.levels = levelsOf(searched);
  content.bands = bandsOf(searched);
  content.footer = optionsOf(searched);
  for (std::size_t i = 0; i < searched.features.size(); ++i) {
    addFeature(content, searched, i);
  }
  return profilePicture(searched.plane, std::move(content));
}

}  // namespace program
