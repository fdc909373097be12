#include "height_map.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "text_table.h"

namespace examples {
namespace {

/// Heights and how many samples they are a mean of, pixel by pixel.
struct Raster {
  cv::Mat sum;
  cv::Mat count;
};

/// Pixels from `first` to before `last` that a stretch around `centre` covers; at least one.
struct PixelSpan {
  int first;
  int last;
};

PixelSpan pixelsOf(double centre, double step, const STeskRangeD& range, int pixels) {
  const double perUnit = pixels / (range.max - range.min);
  const double middle = (centre - range.min) * perUnit;
  // A little overlap closes the seams that levelling and slopes open between samples.
  constexpr double kOverlap = 1.3;
  const double half = 0.5 * kOverlap * step * perUnit;
  const int first = static_cast<int>(std::clamp(std::round(middle - half), 0.0, pixels - 1.0));
  const int last = static_cast<int>(std::clamp(std::round(middle + half), 0.0, pixels * 1.0));
  return {first, std::max(last, first + 1)};
}

Raster rasterise(const Scan& scan, const HeightMapView& view, cv::Size size) {
  Raster raster = {cv::Mat::zeros(size, CV_32F), cv::Mat::zeros(size, CV_32F)};
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMeasured(sample)) {
        continue;
      }
      const PixelSpan cols = pixelsOf(sample.pt3D.x, view.lineStep, view.x, size.width);
      const PixelSpan rows = pixelsOf(sample.pt3D.y, view.ptStep, view.y, size.height);
      for (int row = rows.first; row < rows.last; ++row) {
        // Rows of a picture run downwards, y upwards.
        auto* sum = raster.sum.ptr<float>(size.height - 1 - row);
        auto* count = raster.count.ptr<float>(size.height - 1 - row);
        for (int col = cols.first; col < cols.last; ++col) {
          sum[col] += static_cast<float>(sample.pt3D.z);
          count[col] += 1.0F;
        }
      }
    }
  }
  return raster;
}

/// The heights without their noise: a mean of the covered pixels around each pixel.
cv::Mat smoothed(const cv::Mat& height, const cv::Mat& covered) {
  constexpr double kTiny = 1e-6;
  cv::Mat weight;
  covered.convertTo(weight, CV_32F, 1.0 / 255.0);
  cv::Mat smooth = height.mul(weight);
  cv::GaussianBlur(smooth, smooth, {9, 9}, 0.0);
  cv::GaussianBlur(weight, weight, {9, 9}, 0.0);
  cv::divide(smooth, weight + kTiny, smooth);
  return smooth;
}

/// Fills holes that are too small to be seen, such as single samples that dropped out.
void closeSpecks(cv::Mat& height, cv::Mat& covered, const cv::Mat& smooth) {
  cv::Mat closed;
  cv::morphologyEx(covered, closed, cv::MORPH_CLOSE, cv::Mat::ones(3, 3, CV_8U));
  smooth.copyTo(height, closed & ~covered);
  covered = closed;
}

/// Takes noise off the heights that is too small to be told apart, and leaves edges alone.
void calm(cv::Mat& height, const cv::Mat& smooth, const STeskRangeD& z) {
  constexpr double kShare = 0.01;
  cv::Mat difference;
  cv::absdiff(height, smooth, difference);
  smooth.copyTo(height, difference < kShare * (z.max - z.min));
}

/// Light that falls in from the top left; flat ground and its noise keep a brightness of 1.
cv::Mat shadeOf(const cv::Mat& smooth, double unitsPerPixel) {
  cv::Mat slopeX;
  cv::Mat slopeY;
  cv::Sobel(smooth, slopeX, CV_32F, 1, 0, 3, 1.0 / 8.0 / unitsPerPixel);
  cv::Sobel(smooth, slopeY, CV_32F, 0, 1, 3, 1.0 / 8.0 / unitsPerPixel);
  cv::Mat shade = slopeX + slopeY;
  shade.forEach<float>([](float& value, const int*) {
    constexpr float kFlat = 0.12F;
    const float beyond = std::max(std::abs(value) - kFlat, 0.0F);
    const float light = std::tanh(0.8F * beyond);
    value = 1.0F + (value > 0.0F ? 0.35F : -0.45F) * light;
  });
  return shade;
}

void applyShade(cv::Mat& picture, const cv::Mat& shade) {
  picture.forEach<cv::Vec3b>([&](cv::Vec3b& pixel, const int* at) {
    const float light = shade.at<float>(at[0], at[1]);
    for (int c = 0; c < 3; ++c) {
      const auto value = static_cast<float>(pixel[c]);
      const float lit = light > 1.0F ? value + (light - 1.0F) * (255.0F - value) : light * value;
      pixel[c] = cv::saturate_cast<uchar>(lit);
    }
  });
}

cv::Mat coloursOf(const cv::Mat& height, const STeskRangeD& z) {
  const double scale = 255.0 / (z.max - z.min);
  cv::Mat levels;
  height.convertTo(levels, CV_8U, scale, -z.min * scale);
  cv::Mat colours;
  cv::applyColorMap(levels, colours, cv::COLORMAP_VIRIDIS);
  return colours;
}

/// The heights without the lowest and the highest half percent, which are often strays.
STeskRangeD coreOf(std::vector<double>& heights) {
  if (heights.empty()) {
    return {0.0, 1.0};
  }
  const std::size_t cut = heights.size() / 200;
  const auto low = heights.begin() + static_cast<std::ptrdiff_t>(cut);
  const auto high = heights.end() - 1 - static_cast<std::ptrdiff_t>(cut);
  std::nth_element(heights.begin(), low, heights.end());
  const double min = *low;
  std::nth_element(heights.begin(), high, heights.end());
  return {min, *high};
}

}  // namespace

HeightMapView viewOf(const Scan& scan, double lineStep, double ptStep) {
  HeightMapView view = {{0.0, 1.0}, {0.0, 1.0}, {0.0, 1.0}, lineStep, ptStep};
  std::vector<double> heights;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        fold(view.x, sample.pt3D.x, heights.empty());
        fold(view.y, sample.pt3D.y, heights.empty());
        heights.push_back(sample.pt3D.z);
      }
    }
  }
  view.x = widened({view.x.min - 0.5 * lineStep, view.x.max + 0.5 * lineStep}, 0.0);
  view.y = widened({view.y.min - 0.5 * ptStep, view.y.max + 0.5 * ptStep}, 0.0);
  view.z = widened(coreOf(heights), 0.03);
  return view;
}

cv::Size2d mapSize(const STeskRangeD& x, const STeskRangeD& y, cv::Size2d largest) {
  constexpr double kMinSide = 160.0;
  const double wide = x.max - x.min;
  const double high = y.max - y.min;
  const double scale = std::min(largest.width / wide, largest.height / high);
  return {std::max(std::round(scale * wide), kMinSide),
          std::max(std::round(scale * high), kMinSide)};
}

cv::Mat paintHeightMap(const Scan& scan, const HeightMapView& view, cv::Size size) {
  const Raster raster = rasterise(scan, view, size);
  cv::Mat covered = raster.count > 0.0;
  cv::Mat height;
  cv::divide(raster.sum, cv::max(raster.count, 1.0), height);
  const cv::Mat smooth = smoothed(height, covered);
  closeSpecks(height, covered, smooth);
  calm(height, smooth, view.z);
  cv::Mat picture = coloursOf(height, view.z);
  applyShade(picture, shadeOf(smooth, (view.x.max - view.x.min) / size.width));
  picture.setTo(holeColour(), ~covered);
  return picture;
}

void markLine(Canvas& canvas, const Plot& plot, const Line& line) {
  constexpr double kDash = 5.0;
  const auto first = std::find_if(line.begin(), line.end(), isMeasured);
  if (first == line.end()) {
    return;
  }
  const double x = plot.at(first->pt3D.x, 0.0).x;
  const cv::Rect2d& place = plot.place();
  for (double y = place.y + kDash; y < place.y + place.height - kDash; y += 2.0 * kDash) {
    canvas.line({x, y}, {x, y + kDash}, rgb(235, 235, 240), 1.0);
  }
}

void drawColourBar(Canvas& canvas,
                   const cv::Rect2d& place,
                   const STeskRangeD& z,
                   const std::string& label) {
  const cv::Size size = Canvas::innerSize(place);
  cv::Mat ramp(size, CV_32F);
  for (int row = 0; row < size.height; ++row) {
    const double share = 1.0 - (row + 0.5) / size.height;
    ramp.row(row).setTo(z.min + share * (z.max - z.min));
  }
  canvas.paste(coloursOf(ramp, z), place.tl());
  canvas.strokeRect(place, ink::kFrame, 1.0);
  const Plot bar(place, {0.0, 1.0, ""}, {z.min, z.max, ""});
  const std::vector<double> ticks = roundTicks(z.min, z.max, static_cast<int>(place.height / 50));
  for (const double tick : ticks) {
    const cv::Point2d p = bar.at(1.0, tick);
    canvas.line(p, {p.x + 4.0, p.y}, ink::kFrame, 1.0);
    canvas.text(fixed(tick, tickDecimals(ticks)), {p.x + 8.0, p.y}, 13.0, ink::kText);
  }
  canvas.text(label, {place.x + 0.5 * place.width, place.y - 14.0}, 13.0, ink::kText,
              Anchor::centre);
}

cv::Scalar holeColour() {
  return rgb(22, 22, 28);
}

}  // namespace examples
