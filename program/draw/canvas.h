#pragma once

#include <functional>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

struct _cairo;  // NOLINT(bugprone-reserved-identifier): the name of cairo's type

namespace program {

struct Colour {
  double red, green, blue;  ///< From 0.0 to 1.0.
};

enum class Anchor { left, centre, right };

/// A surface to draw on, in units of a pixel of the PNG, y downwards.
class Canvas {
 public:
  explicit Canvas(_cairo* context) : context_(context) {}

  void line(cv::Point2d from, cv::Point2d to, Colour colour, double width);
  void polyline(const std::vector<cv::Point2d>& points, Colour colour, double width);
  void fillPolygon(const std::vector<cv::Point2d>& points, Colour colour);
  void fillRect(const cv::Rect2d& rect, Colour colour);
  void strokeRect(const cv::Rect2d& rect, Colour colour, double width);
  void fillCircle(cv::Point2d centre, double radius, Colour colour);

  /// Text of `size` pixels whose anchor stands at `at`, centred on it vertically.
  void text(const std::string& what,
            cv::Point2d at,
            double size,
            Colour colour,
            Anchor anchor = Anchor::left,
            bool bold = false);
  /// Text that reads upwards, centred at `at`.
  void textUpwards(const std::string& what, cv::Point2d at, double size, Colour colour);
  double textWidth(const std::string& what, double size, bool bold = false);

  /// Draws an 8-bit BGR image into `rect`, without smoothing.
  void image(const cv::Mat& picture, const cv::Rect2d& rect);

  /// Limits what follows to `rect`, until endClip().
  void beginClip(const cv::Rect2d& rect);
  void endClip();

 private:
  _cairo* context_;
};

/// A picture that can be drawn to any surface.
struct Picture {
  cv::Size size;
  std::function<void(Canvas&)> draw;
  bool isPainted = true;  ///< Holds images, whose colours are kept. Other PNG files are smaller.
};

/// Writes a picture as PNG (at twice its size) or SVG, by the extension. Returns whether it was
/// written.
bool writePicture(const Picture& picture, const std::string& path);

}  // namespace program
