#include "draw/height_raster.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

namespace program {
namespace {

const cv::Vec3b kHoleColour(28, 22, 22);

/// Heights and how many samples they are a mean of, pixel by pixel.
struct Raster {
  cv::Mat sum;
  cv::Mat count;
};

/// Pixels from `first` to before `last` that a length around `centre` covers; at least one.
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

Raster rasterise(const Scan& scan,
                 const std::function<double(double)>& shown,
                 const MapArea& area,
                 cv::Size size) {
  Raster raster = {cv::Mat::zeros(size, CV_32F), cv::Mat::zeros(size, CV_32F)};
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMeasured(sample)) {
        continue;
      }
      const auto z = static_cast<float>(shown(sample.pt3D.z));
      const PixelSpan cols = pixelsOf(sample.pt3D.x, area.lineSpacing, area.x, size.width);
      const PixelSpan rows = pixelsOf(sample.pt3D.y, area.sampleSpacing, area.y, size.height);
      for (int row = rows.first; row < rows.last; ++row) {
        // Rows of a picture run downwards, y upwards.
        auto* sum = raster.sum.ptr<float>(size.height - 1 - row);
        auto* count = raster.count.ptr<float>(size.height - 1 - row);
        for (int col = cols.first; col < cols.last; ++col) {
          sum[col] += z;
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

/// The smooth heights without single outliers, whose slopes would speckle the shade.
cv::Mat despeckled(const cv::Mat& height, const cv::Mat& covered, const cv::Mat& smooth) {
  constexpr int kSide = 5;
  cv::Mat filled = height.clone();
  smooth.copyTo(filled, ~covered);
  cv::medianBlur(filled, filled, kSide);
  return smoothed(filled, covered);
}

/// Fills holes that are too small to be seen, such as single missing samples.
void closeSpecks(cv::Mat& height, cv::Mat& covered, const cv::Mat& smooth) {
  cv::Mat closed;
  cv::morphologyEx(covered, closed, cv::MORPH_CLOSE, cv::Mat::ones(3, 3, CV_8U));
  smooth.copyTo(height, closed & ~covered);
  covered = closed;
}

/// Removes noise that is too small to be distinguished, and leaves edges alone.
void calm(cv::Mat& height, const cv::Mat& smooth, const STeskRangeD& colours) {
  constexpr double kShare = 0.01;
  cv::Mat difference;
  cv::absdiff(height, smooth, difference);
  smooth.copyTo(height, difference < kShare * (colours.max - colours.min));
}

/// Light from the top left. Flat ground and its noise keep a brightness of 1.
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

cv::Mat coloursOf(const cv::Mat& height, const STeskRangeD& range) {
  const double scale = 255.0 / (range.max - range.min);
  cv::Mat levels;
  height.convertTo(levels, CV_8U, scale, -range.min * scale);
  cv::Mat colours;
  cv::applyColorMap(levels, colours, cv::COLORMAP_VIRIDIS);
  return colours;
}

}  // namespace

cv::Mat paintHeights(const Scan& scan,
                     const std::function<double(double)>& shown,
                     const MapArea& area,
                     cv::Size size) {
  const Raster raster = rasterise(scan, shown, area, size);
  cv::Mat covered = raster.count > 0.0;
  cv::Mat height;
  cv::divide(raster.sum, cv::max(raster.count, 1.0), height);
  const cv::Mat smooth = despeckled(height, covered, smoothed(height, covered));
  closeSpecks(height, covered, smooth);
  calm(height, smooth, area.colours);
  cv::Mat picture = coloursOf(height, area.colours);
  applyShade(picture, shadeOf(smooth, (area.x.max - area.x.min) / size.width));
  picture.setTo(kHoleColour, ~covered);
  return picture;
}

cv::Mat colourRamp(int rows) {
  cv::Mat ramp(rows, 1, CV_32F);
  for (int row = 0; row < rows; ++row) {
    ramp.at<float>(row) = 1.0F - (static_cast<float>(row) + 0.5F) / static_cast<float>(rows);
  }
  return coloursOf(ramp, {0.0, 1.0});
}

}  // namespace program
