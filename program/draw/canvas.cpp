#include "draw/canvas.h"

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

namespace program {
namespace {

/// Pixels of a PNG per unit of the canvas.
constexpr double kResolution = 2.0;
constexpr double kFullCircle = 6.283185307179586;
constexpr const char* kFont = "sans-serif";

void setColour(cairo_t* context, Colour colour) {
  cairo_set_source_rgb(context, colour.red, colour.green, colour.blue);
}

void setFont(cairo_t* context, double size, bool bold) {
  cairo_select_font_face(context, kFont, CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(context, size);
}

/// Half of the height of capitals: what centres a text on its anchor.
double halfHeight(cairo_t* context) {
  cairo_text_extents_t extents;
  cairo_text_extents(context, "H", &extents);
  return 0.5 * extents.height;
}

/// Coordinates far outside of the picture, or not finite, would upset the rasteriser.
double tamed(double value) {
  constexpr double kFar = 20000.0;
  return std::isfinite(value) ? std::clamp(value, -kFar, kFar) : -kFar;
}

void addPath(cairo_t* context, const std::vector<cv::Point2d>& points) {
  cairo_new_path(context);
  for (const cv::Point2d& p : points) {
    cairo_line_to(context, tamed(p.x), tamed(p.y));
  }
}

/// Draws to a surface and takes it down; returns its state at the end.
bool drawTo(cairo_surface_t* surface, const Picture& picture, double scale) {
  cairo_t* context = cairo_create(surface);
  cairo_scale(context, scale, scale);
  Canvas canvas(context);
  canvas.fillRect(
      {0.0, 0.0, static_cast<double>(picture.size.width), static_cast<double>(picture.size.height)},
      {1.0, 1.0, 1.0});
  picture.draw(canvas);
  const bool isDrawn = cairo_status(context) == CAIRO_STATUS_SUCCESS;
  cairo_destroy(context);
  return isDrawn;
}

bool writeSvg(const Picture& picture, const std::string& path) {
  cairo_surface_t* surface =
      cairo_svg_surface_create(path.c_str(), picture.size.width, picture.size.height);
  cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
  const bool isDrawn = drawTo(surface, picture, 1.0);
  cairo_surface_finish(surface);
  const bool isWritten = cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS;
  cairo_surface_destroy(surface);
  return isDrawn && isWritten;
}

/// Rounds the shades of smoothed edges to few, which a PNG compresses well.
void roundShades(cairo_surface_t* surface) {
  constexpr int kStep = 15;  // 255 is a multiple of it.
  cairo_surface_flush(surface);
  const std::ptrdiff_t size = std::ptrdiff_t{cairo_image_surface_get_stride(surface)} *
                              cairo_image_surface_get_height(surface);
  unsigned char* data = cairo_image_surface_get_data(surface);
  std::transform(data, data + size, data, [](unsigned char shade) {
    return static_cast<unsigned char>((shade + kStep / 2) / kStep * kStep);
  });
  cairo_surface_mark_dirty(surface);
}

bool writePng(const Picture& picture, const std::string& path) {
  cairo_surface_t* surface = cairo_image_surface_create(
      CAIRO_FORMAT_RGB24, static_cast<int>(kResolution * picture.size.width),
      static_cast<int>(kResolution * picture.size.height));
  const bool isDrawn = drawTo(surface, picture, kResolution);
  if (!picture.isPainted) {
    roundShades(surface);
  }
  const bool isWritten = cairo_surface_write_to_png(surface, path.c_str()) == CAIRO_STATUS_SUCCESS;
  cairo_surface_destroy(surface);
  return isDrawn && isWritten;
}

}  // namespace

void Canvas::line(cv::Point2d from, cv::Point2d to, Colour colour, double width) {
  polyline({from, to}, colour, width);
}

void Canvas::polyline(const std::vector<cv::Point2d>& points, Colour colour, double width) {
  addPath(context_, points);
  setColour(context_, colour);
  cairo_set_line_width(context_, width);
  cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(context_, CAIRO_LINE_CAP_ROUND);
  cairo_stroke(context_);
}

void Canvas::fillPolygon(const std::vector<cv::Point2d>& points, Colour colour) {
  addPath(context_, points);
  setColour(context_, colour);
  cairo_fill(context_);
}

void Canvas::fillRect(const cv::Rect2d& rect, Colour colour) {
  setColour(context_, colour);
  cairo_rectangle(context_, rect.x, rect.y, rect.width, rect.height);
  cairo_fill(context_);
}

void Canvas::strokeRect(const cv::Rect2d& rect, Colour colour, double width) {
  setColour(context_, colour);
  cairo_set_line_width(context_, width);
  cairo_rectangle(context_, rect.x, rect.y, rect.width, rect.height);
  cairo_stroke(context_);
}

void Canvas::fillCircle(cv::Point2d centre, double radius, Colour colour) {
  setColour(context_, colour);
  cairo_new_path(context_);
  cairo_arc(context_, tamed(centre.x), tamed(centre.y), radius, 0.0, kFullCircle);
  cairo_fill(context_);
}

void Canvas::text(
    const std::string& what, cv::Point2d at, double size, Colour colour, Anchor anchor, bool bold) {
  const double width = anchor == Anchor::left ? 0.0 : textWidth(what, size, bold);
  const double left = at.x - (anchor == Anchor::centre ? 0.5 * width : width);
  setFont(context_, size, bold);
  setColour(context_, colour);
  cairo_move_to(context_, left, at.y + halfHeight(context_));
  cairo_show_text(context_, what.c_str());
}

void Canvas::textUpwards(const std::string& what, cv::Point2d at, double size, Colour colour) {
  cairo_save(context_);
  cairo_translate(context_, at.x, at.y);
  cairo_rotate(context_, -0.25 * kFullCircle);
  text(what, {0.0, 0.0}, size, colour, Anchor::centre);
  cairo_restore(context_);
}

double Canvas::textWidth(const std::string& what, double size, bool bold) {
  cairo_text_extents_t extents;
  setFont(context_, size, bold);
  cairo_text_extents(context_, what.c_str(), &extents);
  return extents.x_advance;
}

void Canvas::image(const cv::Mat& picture, const cv::Rect2d& rect) {
  cairo_surface_t* surface =
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, picture.cols, picture.rows);
  cairo_surface_flush(surface);
  for (int row = 0; row < picture.rows; ++row) {
    unsigned char* to = cairo_image_surface_get_data(surface) +
                        static_cast<std::ptrdiff_t>(row) * cairo_image_surface_get_stride(surface);
    for (int col = 0; col < picture.cols; ++col) {
      const auto& pixel = picture.at<cv::Vec3b>(row, col);
      const std::uint32_t rgb = static_cast<std::uint32_t>(pixel[2]) << 16U |
                                static_cast<std::uint32_t>(pixel[1]) << 8U | pixel[0];
      std::copy_n(reinterpret_cast<const unsigned char*>(&rgb), sizeof rgb, to + 4 * col);
    }
  }
  cairo_surface_mark_dirty(surface);
  cairo_save(context_);
  cairo_translate(context_, rect.x, rect.y);
  cairo_scale(context_, rect.width / picture.cols, rect.height / picture.rows);
  cairo_set_source_surface(context_, surface, 0.0, 0.0);
  cairo_pattern_set_filter(cairo_get_source(context_), CAIRO_FILTER_NEAREST);
  cairo_paint(context_);
  cairo_restore(context_);
  cairo_surface_destroy(surface);
}

void Canvas::beginClip(const cv::Rect2d& rect) {
  cairo_save(context_);
  cairo_rectangle(context_, rect.x, rect.y, rect.width, rect.height);
  cairo_clip(context_);
}

void Canvas::endClip() {
  cairo_restore(context_);
}

bool writePicture(const Picture& picture, const std::string& path) {
  return std::filesystem::path(path).extension() == ".svg" ? writeSvg(picture, path)
                                                           : writePng(picture, path);
}

}  // namespace program
