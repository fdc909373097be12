#include "draw/profile_picture.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace program {
namespace {

constexpr double kWidth = 960.0;
constexpr double kPlotHeight = 330.0;

void drawTrace(Canvas& canvas,
               const Plot& plot,
               const PlaneChoice& plane,
               const ProfileTrace& trace) {
  std::vector<cv::Point2d> piece;
  const auto finishPiece = [&] {
    if (piece.size() == 1) {
      canvas.fillCircle(piece.front(), 1.0, trace.colour);
    } else if (!piece.empty()) {
      canvas.polyline(piece, trace.colour, 1.5);
    }
    piece.clear();
  };
  for (const STesk3DPosition& sample : trace.line) {
    if (!isMeasured(sample)) {
      finishPiece();
      continue;
    }
    const cv::Point2d p = plot.at(sample.pt3D.y, plane.shown(sample.pt3D.z));
    if (trace.isDots) {
      canvas.fillCircle(p, 1.5, trace.colour);
    } else {
      piece.push_back(p);
    }
  }
  finishPiece();
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
  return {{static_cast<int>(kWidth), static_cast<int>(top + kPlotHeight + kBottomMargin)},
          [=, content = std::move(content)](Canvas& canvas) {
            const Plot plot(place, yAxis, zAxis);
            plot.drawGrid(canvas);
            canvas.beginClip(place);
            for (const ProfileTrace& trace : content.traces) {
              drawTrace(canvas, plot, plane, trace);
            }
            std::vector<cv::Rect2d> taken;
            for (const ProfileMark& mark : content.marks) {
              const cv::Point2d p = plot.at(mark.at.y, plane.shown(mark.at.z));
              drawMarker(canvas, p, mark.colour);
              taken.push_back({p.x - 5.0, p.y - 5.0, 10.0, 10.0});
            }
            for (const ProfileMark& mark : content.marks) {
              if (!mark.label.empty()) {
                const cv::Point2d p = plot.at(mark.at.y, plane.shown(mark.at.z));
                drawLabel(canvas, mark.label, {p.x, p.y - 16.0}, place, taken);
              }
            }
            canvas.endClip();
            plot.drawAxes(canvas);
            drawHead(canvas, content.title, content.subtitle, content.legend, kWidth);
          }};
}

}  // namespace program
