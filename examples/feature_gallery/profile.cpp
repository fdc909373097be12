#include "profile.h"

namespace examples {

void drawTitle(Canvas& canvas, double x, const std::string& title, const std::string& subtitle) {
  constexpr double kTitleText = 19.0;
  constexpr double kSubtitleText = 13.0;
  canvas.text(title, {x, 24.0}, kTitleText, ink::kText, Anchor::left, true);
  canvas.text(subtitle, {x, 49.0}, kSubtitleText, ink::kFaint);
}

void drawTrace(Canvas& canvas, const Plot& plot, const Line& line, const cv::Scalar& colour) {
  std::vector<cv::Point2d> piece;
  const auto finishPiece = [&] {
    if (piece.size() == 1) {
      canvas.fillCircle(piece.front(), 1.0, colour);
    } else if (!piece.empty()) {
      canvas.polyline(piece, colour, 1.5);
    }
    piece.clear();
  };
  for (const STesk3DPosition& sample : line) {
    if (isMeasured(sample)) {
      piece.push_back(plot.at(sample.pt3D.y, sample.pt3D.z));
    } else {
      finishPiece();
    }
  }
  finishPiece();
}

void drawDots(Canvas& canvas, const Plot& plot, const Line& line, const cv::Scalar& colour) {
  for (const STesk3DPosition& sample : line) {
    const cv::Point2d p = plot.at(sample.pt3D.y, sample.pt3D.z);
    if (isMeasured(sample) && plot.place().contains(p)) {
      canvas.fillCircle(p, 1.4, colour);
    }
  }
}

}  // namespace examples
