#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

namespace examples {

/// A colour from red, green and blue.
inline cv::Scalar rgb(int red, int green, int blue) {
  return {static_cast<double>(blue), static_cast<double>(green), static_cast<double>(red)};
}

enum class Anchor { left, centre, right };

/**
 * A picture to draw on in pixels of its final size.
 *
 * It is kept at twice the size and brought down at the end, so that everything comes out smooth.
 */
class Canvas {
 public:
  static constexpr int kOversampling = 2;

  Canvas(int width, int height, const cv::Scalar& background);

  [[nodiscard]] int width() const {
    return image_.cols / kOversampling;
  }
  [[nodiscard]] int height() const {
    return image_.rows / kOversampling;
  }

  void line(cv::Point2d from, cv::Point2d to, const cv::Scalar& colour, double width);
  void polyline(const std::vector<cv::Point2d>& points, const cv::Scalar& colour, double width);
  void fillPolygon(const std::vector<cv::Point2d>& points, const cv::Scalar& colour);
  void fillRect(const cv::Rect2d& rect, const cv::Scalar& colour);
  void strokeRect(const cv::Rect2d& rect, const cv::Scalar& colour, double width);
  void fillCircle(cv::Point2d centre, double radius, const cv::Scalar& colour);

  /// Text of `size` pixels height whose anchor stands at `at`, centred on it vertically.
  void text(const std::string& what,
            cv::Point2d at,
            double size,
            const cv::Scalar& colour,
            Anchor anchor = Anchor::left,
            bool bold = false);
  /// Text that reads upwards, centred at `at`.
  void textUpwards(const std::string& what, cv::Point2d at, double size, const cv::Scalar& colour);
  static double textWidth(const std::string& what, double size, bool bold = false);

  /// Puts a picture of the canvas's inner resolution onto it; see innerSize().
  void paste(const cv::Mat& picture, cv::Point2d topLeft);
  /// Size in inner pixels of a picture that covers `rect`.
  static cv::Size innerSize(const cv::Rect2d& rect);

  /// The picture in its final size.
  [[nodiscard]] cv::Mat finish() const;

 private:
  cv::Mat image_;
};

}  // namespace examples
