#include <algorithm>

#include "draw/plot.h"

namespace program {
namespace {

constexpr double kTitleText = 18.0;
constexpr double kText = 12.5;
constexpr double kSide = 16.0;
constexpr double kRow = 20.0;
constexpr double kSwatchWidth = 22.0;
constexpr double kAfterSwatch = 7.0;
constexpr double kBetween = 18.0;
/// Above the mean width in any usual font, so that the rows reserved are enough.
constexpr double kWidestCharacter = 8.5;

/// Calls `place(entry, at)` with the places of the entries, row by row, whose names are as wide as
/// `widthOf(name)`; returns the rows.
template <typename WidthOf, typename Place>
int layOut(const std::vector<LegendEntry>& legend, double width, WidthOf widthOf, Place place) {
  double x = kSide;
  int row = 0;
  for (const LegendEntry& entry : legend) {
    const double needed = kSwatchWidth + kAfterSwatch + widthOf(entry.name);
    if (x > kSide && x + needed > width - kSide) {
      x = kSide;
      ++row;
    }
    place(entry, cv::Point2d(x, 72.0 + kRow * row));
    x += needed + kBetween;
  }
  return legend.empty() ? 0 : row + 1;
}

void drawSwatch(Canvas& canvas, const LegendEntry& entry, cv::Point2d at) {
  const cv::Point2d middle(at.x + 0.5 * kSwatchWidth, at.y);
  switch (entry.swatch) {
    case Swatch::line:
      drawRimmedLine(canvas, {at, {at.x + kSwatchWidth, at.y}}, entry.colour);
      break;
    case Swatch::marker:
      drawMarker(canvas, middle, entry.colour);
      break;
    case Swatch::dots:
      for (const double x : {4.0, 11.0, 18.0}) {
        canvas.fillCircle({at.x + x, at.y}, 1.6, entry.colour);
      }
      break;
  }
}

bool overlaps(const cv::Rect2d& label, const std::vector<cv::Rect2d>& taken) {
  return std::any_of(taken.begin(), taken.end(),
                     [&](const cv::Rect2d& other) { return (label & other).area() > 0.0; });
}

}  // namespace

double headHeight(const std::vector<LegendEntry>& legend, double width) {
  const auto widest = [](const std::string& name) {
    return kWidestCharacter * static_cast<double>(name.size());
  };
  return 70.0 + kRow * layOut(legend, width, widest, [](const LegendEntry&, cv::Point2d) {});
}

void drawHead(Canvas& canvas,
              const std::string& title,
              const std::string& subtitle,
              const std::vector<LegendEntry>& legend,
              double width) {
  canvas.text(title, {kSide, 22.0}, kTitleText, ink::kText, Anchor::left, true);
  canvas.text(subtitle, {kSide, 46.0}, kText, ink::kFaint);
  const auto drawn = [&](const std::string& name) { return canvas.textWidth(name, kText); };
  layOut(legend, width, drawn, [&](const LegendEntry& entry, cv::Point2d at) {
    drawSwatch(canvas, entry, at);
    canvas.text(entry.name, {at.x + kSwatchWidth + kAfterSwatch, at.y}, kText, ink::kText);
  });
}

void drawLabel(Canvas& canvas,
               const std::string& text,
               cv::Point2d at,
               const cv::Rect2d& area,
               std::vector<cv::Rect2d>& taken) {
  constexpr double kHeight = 16.0;
  constexpr double kPadding = 4.0;
  constexpr double kBeside = 12.0;
  const double width = canvas.textWidth(text, kText, true) + 2.0 * kPadding;
  const auto inside = [&](cv::Point2d centre) {
    const double x = std::clamp(centre.x - 0.5 * width, area.x, area.x + area.width - width);
    const double y = std::clamp(centre.y - 0.5 * kHeight, area.y, area.y + area.height - kHeight);
    return cv::Rect2d(x, y, width, kHeight);
  };
  cv::Rect2d best = inside(at);
  constexpr double kRight[] = {0.0, 0.0, 0.0, 1.0, -1.0, 1.0, -1.0, 1.0, -1.0};
  constexpr double kDown[] = {0.0, -1.0, 1.0, 0.0, 0.0, -1.0, -1.0, 1.0, 1.0};
  for (std::size_t i = 0; i < std::size(kRight) && overlaps(best, taken); ++i) {
    for (const double far : {1.0, 2.0, 3.0}) {
      const cv::Rect2d shifted = inside({at.x + far * kRight[i] * (0.5 * width + kBeside),
                                         at.y + far * kDown[i] * (kHeight + 2.0)});
      if (!overlaps(shifted, taken)) {
        best = shifted;
        break;
      }
    }
  }
  taken.push_back(best);
  canvas.fillRect(best, {1.0, 1.0, 1.0});
  canvas.strokeRect(best, ink::kFrame, 0.8);
  canvas.text(text, {best.x + kPadding, best.y + 0.5 * kHeight}, kText, ink::kText, Anchor::left,
              true);
}

}  // namespace program
