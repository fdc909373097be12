#include "draw/profile_picture.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace program {
namespace {

constexpr double kWidth = 960.0;
constexpr double kPlotHeight = 330.0;
constexpr double kFooterHeight = 24.0;
constexpr double kSmallText = 12.0;
constexpr Colour kBand = {0.87, 0.93, 0.87};
constexpr Colour kBandName = {0.36, 0.48, 0.24};
constexpr Colour kLevel = {0.59, 0.35, 0.63};

using Points = std::vector<cv::Point2d>;

cv::Point2d placeOf(const Plot& plot, const PlaneChoice& plane, const STesk3DPoint& p) {
  return plot.at(p.y, plane.shown(p.z));
}

/// The measured samples of a line between its holes, on the canvas.
std::vector<Points> piecesOf(const Plot& plot, const PlaneChoice& plane, const Line& line) {
  std::vector<Points> pieces;
  bool isInPiece = false;
  for (const STesk3DPosition& sample : line) {
    if (isMeasured(sample)) {
      if (!isInPiece) {
        pieces.emplace_back();
      }
      pieces.back().push_back(placeOf(plot, plane, sample.pt3D));
    }
    isInPiece = isMeasured(sample);
  }
  return pieces;
}

void drawPieces(Canvas& canvas, const std::vector<Points>& pieces, Colour colour, double width) {
  for (const Points& piece : pieces) {
    if (piece.size() == 1) {
      canvas.fillCircle(piece.front(), 0.7 * width, colour);
    } else {
      canvas.polyline(piece, colour, width);
    }
  }
}

void drawTrace(Canvas& canvas,
               const Plot& plot,
               const PlaneChoice& plane,
               const ProfileTrace& trace) {
  const std::vector<Points> pieces = piecesOf(plot, plane, trace.line);
  if (!trace.isDots) {
    drawPieces(canvas, pieces, trace.colour, 1.5);
    return;
  }
  for (const Points& piece : pieces) {
    for (const cv::Point2d p : piece) {
      canvas.fillCircle(p, 1.5, trace.colour);
    }
  }
}

/// Keeps labels off the profile: off its samples, and off the walls between them.
void avoidTrace(std::vector<cv::Rect2d>& taken, const std::vector<Points>& pieces) {
  constexpr double kApart = 4.0;
  for (const Points& piece : pieces) {
    for (std::size_t i = 1; i < piece.size(); ++i) {
      const cv::Point2d way = piece[i] - piece[i - 1];
      const int steps = 1 + static_cast<int>(cv::norm(way) / kApart);
      for (int k = 0; k < steps; ++k) {
        const cv::Point2d p = piece[i - 1] + way * (static_cast<double>(k) / steps);
        taken.push_back({p.x - 1.0, p.y - 1.0, 2.0, 2.0});
      }
    }
  }
}

/// Draws bands, under the grid.
void drawBands(Canvas& canvas, const Plot& plot, const std::vector<ProfileBand>& bands) {
  const cv::Rect2d& place = plot.place();
  for (const ProfileBand& band : bands) {
    const double left = plot.at(band.y.min, 0.0).x;
    const double right = plot.at(band.y.max, 0.0).x;
    canvas.fillRect({left, place.y, right - left, place.height}, kBand);
  }
}

/// Writes the names of bands at their lower ends.
void drawBandNames(Canvas& canvas,
                   const Plot& plot,
                   const std::vector<ProfileBand>& bands,
                   std::vector<cv::Rect2d>& taken) {
  const double bottom = plot.place().y + plot.place().height;
  for (const ProfileBand& band : bands) {
    const double middle = plot.at(0.5 * (band.y.min + band.y.max), 0.0).x;
    const double width = canvas.textWidth(band.name, kSmallText);
    const cv::Rect2d rect(middle - 0.5 * width, bottom - 22.0, width, 16.0);
    canvas.fillRect(rect, kBand);
    canvas.text(band.name, {middle, bottom - 14.0}, kSmallText, kBandName, Anchor::centre);
    taken.push_back(rect);
  }
}

/// Draws dashed lines. Their names stand above them at the right edge.
void drawLevels(Canvas& canvas,
                const Plot& plot,
                const std::vector<ProfileLevel>& levels,
                std::vector<cv::Rect2d>& taken) {
  constexpr double kDash = 6.0;
  const cv::Rect2d& place = plot.place();
  const double right = place.x + place.width;
  for (const ProfileLevel& level : levels) {
    const double y = plot.at(0.0, level.z).y;
    for (double x = place.x; x < right - kDash; x += 2.0 * kDash) {
      canvas.line({x, y}, {x + kDash, y}, kLevel, 1.0);
    }
    canvas.text(level.name, {right - 8.0, y - 9.0}, kSmallText, kLevel, Anchor::right);
    const double width = canvas.textWidth(level.name, kSmallText);
    taken.push_back({right - 8.0 - width, y - 17.0, width, 16.0});
  }
}

void drawMarks(Canvas& canvas,
               const Plot& plot,
               const PlaneChoice& plane,
               const std::vector<ProfileMark>& marks,
               std::vector<cv::Rect2d>& taken) {
  for (const ProfileMark& mark : marks) {
    const cv::Point2d p = placeOf(plot, plane, mark.at);
    drawMarker(canvas, p, mark.colour);
    taken.push_back({p.x - 5.0, p.y - 5.0, 10.0, 10.0});
  }
  for (const ProfileMark& mark : marks) {
    if (!mark.label.empty()) {
      const cv::Point2d p = placeOf(plot, plane, mark.at);
      drawLabel(canvas, mark.label, {p.x, p.y - 16.0}, plot.place(), taken);
    }
  }
}

void drawInside(Canvas& canvas,
                const Plot& plot,
                const PlaneChoice& plane,
                const ProfileContent& content) {
  std::vector<cv::Rect2d> taken;
  drawBands(canvas, plot, content.bands);
  plot.drawGrid(canvas);
  drawBandNames(canvas, plot, content.bands, taken);
  drawLevels(canvas, plot, content.levels, taken);
  for (const ProfileTrace& trace : content.traces) {
    drawTrace(canvas, plot, plane, trace);
    avoidTrace(taken, piecesOf(plot, plane, trace.line));
  }
  for (const ProfileStretch& stretch : content.stretches) {
    drawPieces(canvas, piecesOf(plot, plane, stretch.line), stretch.colour, 4.0);
  }
  drawMarks(canvas, plot, plane, content.marks, taken);
}

/// The ranges of y and of shown z over all traces.
std::pair<STeskRangeD, STeskRangeD> rangesOf(const PlaneChoice& plane,
                                             const ProfileContent& content) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  STeskRangeD y = {kInf, -kInf};
  STeskRangeD z = {kInf, -kInf};
  for (const ProfileTrace& trace : content.traces) {
    for (const STesk3DPosition& sample : trace.line) {
      if (isMeasured(sample)) {
        const double shown = plane.shown(sample.pt3D.z);
        y = {std::min(y.min, sample.pt3D.y), std::max(y.max, sample.pt3D.y)};
        z = {std::min(z.min, shown), std::max(z.max, shown)};
      }
    }
  }
  if (y.min > y.max) {
    return {{0.0, 1.0}, {0.0, 1.0}};
  }
  // A level far off would flatten the profile.
  const STeskRangeD near = widened(z, 0.5);
  for (const ProfileLevel& level : content.levels) {
    if (level.z > near.min && level.z < near.max) {
      z = {std::min(z.min, level.z), std::max(z.max, level.z)};
    }
  }
  return {widened(y, 0.02), widened(z, 0.12)};
}

}  // namespace

Picture profilePicture(const PlaneChoice& plane, ProfileContent content) {
  for (const ProfileTrace& trace : content.traces) {
    content.legend.push_back(
        {trace.isDots ? Swatch::dots : Swatch::line, trace.colour, trace.name});
  }
  const double top = headHeight(content.legend, kWidth);
  const cv::Rect2d place(kLeftMargin, top, kWidth - kLeftMargin - kRightMargin, kPlotHeight);
  const auto [y, z] = rangesOf(plane, content);
  const bool hasPlane = plane.chosen && !plane.chosen->isGround;
  const Axis yAxis = {y.min, y.max, "y, along the line [" + content.unit + "]"};
  const Axis zAxis = hasPlane ? Axis{z.min, z.max, "height over the plane [" + content.unit + "]"}
                              : Axis{z.max, z.min, "z, distance [" + content.unit + "]"};
  const double footer = content.footer.empty() ? 0.0 : kFooterHeight;
  const double height = top + kPlotHeight + kBottomMargin + footer;
  return {{static_cast<int>(kWidth), static_cast<int>(height)},
          [=, content = std::move(content)](Canvas& canvas) {
            const Plot plot(place, yAxis, zAxis);
            canvas.beginClip(place);
            drawInside(canvas, plot, plane, content);
            canvas.endClip();
            plot.drawAxes(canvas);
            drawHead(canvas, content.title, content.subtitle, content.legend, kWidth);
            canvas.text(content.footer, {16.0, height - 18.0}, kSmallText, ink::kFaint);
          },
          false};
}

}  // namespace program
