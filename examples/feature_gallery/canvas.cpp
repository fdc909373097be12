#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace examples {
namespace {

// Drawing takes coordinates in 1/16 of an inner pixel.
constexpr int kFractionBits = 4;
constexpr double kToFixed = Canvas::kOversampling * (1 << kFractionBits);

constexpr int kFont = cv::FONT_HERSHEY_SIMPLEX;
constexpr int kBoldFont = cv::FONT_HERSHEY_DUPLEX;
// Height in pixels of the fonts' capitals at scale 1.
constexpr double kCapitals = 22.0;
constexpr double kCapitalsOfSize = 0.72;

/// Keeps a coordinate where the rasteriser's integers can hold it, far outside of any picture.
double tamed(double value) {
  constexpr double kFar = 20000.0;
  return std::isfinite(value) ? std::clamp(value, -kFar, kFar) : -kFar;
}

cv::Point toFixed(cv::Point2d p) {
  // Pixel centres lie at whole numbers for the rasteriser and at halves on the canvas.
  constexpr double kHalf = 0.5 * (1 << kFractionBits);
  return {cvRound(tamed(p.x) * kToFixed - kHalf), cvRound(tamed(p.y) * kToFixed - kHalf)};
}

std::vector<cv::Point> toFixed(const std::vector<cv::Point2d>& points) {
  std::vector<cv::Point> result;
  result.reserve(points.size());
  for (const cv::Point2d& p : points) {
    result.push_back(toFixed(p));
  }
  return result;
}

int innerWidth(double width) {
  return std::max(1, cvRound(width * Canvas::kOversampling));
}

double fontScale(double size) {
  return size * kCapitalsOfSize / kCapitals * Canvas::kOversampling;
}

int fontThickness(bool bold) {
  return bold ? 2 : Canvas::kOversampling;
}

cv::Size innerTextSize(const std::string& what, double size, bool bold) {
  int baseline = 0;
  return cv::getTextSize(what, bold ? kBoldFont : kFont, fontScale(size), fontThickness(bold),
                         &baseline);
}

}  // namespace

Canvas::Canvas(int width, int height, const cv::Scalar& background)
    : image_(height * kOversampling, width * kOversampling, CV_8UC3, background) {}

void Canvas::line(cv::Point2d from, cv::Point2d to, const cv::Scalar& colour, double width) {
  cv::line(image_, toFixed(from), toFixed(to), colour, innerWidth(width), cv::LINE_AA,
           kFractionBits);
}

void Canvas::polyline(const std::vector<cv::Point2d>& points,
                      const cv::Scalar& colour,
                      double width) {
  const std::vector<std::vector<cv::Point>> lines = {toFixed(points)};
  cv::polylines(image_, lines, false, colour, innerWidth(width), cv::LINE_AA, kFractionBits);
}

void Canvas::fillPolygon(const std::vector<cv::Point2d>& points, const cv::Scalar& colour) {
  const std::vector<std::vector<cv::Point>> polygons = {toFixed(points)};
  cv::fillPoly(image_, polygons, colour, cv::LINE_AA, kFractionBits);
}

void Canvas::fillRect(const cv::Rect2d& rect, const cv::Scalar& colour) {
  const cv::Size size = innerSize(rect);
  cv::rectangle(image_,
                cv::Rect(cvRound(rect.x * kOversampling), cvRound(rect.y * kOversampling),
                         size.width, size.height),
                colour, cv::FILLED);
}

void Canvas::strokeRect(const cv::Rect2d& rect, const cv::Scalar& colour, double width) {
  const cv::Point2d topRight(rect.x + rect.width, rect.y);
  const cv::Point2d bottomLeft(rect.x, rect.y + rect.height);
  polyline({rect.tl(), topRight, rect.br(), bottomLeft, rect.tl()}, colour, width);
}

void Canvas::fillCircle(cv::Point2d centre, double radius, const cv::Scalar& colour) {
  cv::circle(image_, toFixed(centre), cvRound(radius * kToFixed), colour, cv::FILLED, cv::LINE_AA,
             kFractionBits);
}

void Canvas::text(const std::string& what,
                  cv::Point2d at,
                  double size,
                  const cv::Scalar& colour,
                  Anchor anchor,
                  bool bold) {
  const cv::Size inner = innerTextSize(what, size, bold);
  const double share = anchor == Anchor::left ? 0.0 : anchor == Anchor::centre ? 0.5 : 1.0;
  const cv::Point origin(cvRound(at.x * kOversampling - share * inner.width),
                         cvRound(at.y * kOversampling + 0.5 * inner.height));
  cv::putText(image_, what, origin, bold ? kBoldFont : kFont, fontScale(size), colour,
              fontThickness(bold), cv::LINE_AA);
}

void Canvas::textUpwards(const std::string& what,
                         cv::Point2d at,
                         double size,
                         const cv::Scalar& colour) {
  const cv::Size inner = innerTextSize(what, size, false);
  const int margin = inner.height;
  cv::Mat mask = cv::Mat::zeros(inner.height + 2 * margin, inner.width, CV_8U);
  cv::putText(mask, what, {0, inner.height + margin}, kFont, fontScale(size), cv::Scalar(255),
              fontThickness(false), cv::LINE_AA);
  cv::rotate(mask, mask, cv::ROTATE_90_COUNTERCLOCKWISE);
  const cv::Rect wanted(cvRound(at.x * kOversampling) - mask.cols / 2,
                        cvRound(at.y * kOversampling) - mask.rows / 2, mask.cols, mask.rows);
  const cv::Rect place = wanted & cv::Rect({0, 0}, image_.size());
  image_(place).setTo(colour, mask(place - wanted.tl()) > 100);
}

double Canvas::textWidth(const std::string& what, double size, bool bold) {
  return static_cast<double>(innerTextSize(what, size, bold).width) / kOversampling;
}

void Canvas::paste(const cv::Mat& picture, cv::Point2d topLeft) {
  const cv::Rect wanted(cvRound(topLeft.x * kOversampling), cvRound(topLeft.y * kOversampling),
                        picture.cols, picture.rows);
  const cv::Rect place = wanted & cv::Rect({0, 0}, image_.size());
  picture(place - wanted.tl()).copyTo(image_(place));
}

cv::Size Canvas::innerSize(const cv::Rect2d& rect) {
  return {cvRound(rect.width * kOversampling), cvRound(rect.height * kOversampling)};
}

cv::Mat Canvas::finish() const {
  cv::Mat result;
  cv::resize(image_, result, {width(), height()}, 0.0, 0.0, cv::INTER_AREA);
  return result;
}

}  // namespace examples
