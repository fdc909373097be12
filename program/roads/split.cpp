#include "roads/split.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "roads/split_map.h"
#include "roads/split_middles.h"
#include "roads/split_outlines.h"
#include "roads/split_regions.h"

namespace program {

SplitResult splitObjects(const Scan& scan,
                         double beltZ,
                         const Extent& extent,
                         const SplitParams& params,
                         Progress& progress) {
  const ObjectMap map = projectRaised(scan, beltZ, params.minHeight, gridOf(scan, params.pixel));
  progress.advance();

  // Steps around and between objects make an object seem narrower than it is.
  constexpr double kLowest = 0.3;
  const cv::Mat calm = maskWithoutSteps(map, params.cut);
  const cv::Mat inside = distancesInside(calm);
  std::vector<SQO_2DValueI> middles =
      findMiddles(inside, kLowest * params.minWidth / params.pixel, params.waist);
  progress.advance();

  cv::Mat labels = divide(map.mask, inside - distancesOutside(calm), middles);
  progress.advance();

  const std::vector<std::vector<cv::Point>> rims =
      walkOutlines(labels, static_cast<int>(middles.size()));
  progress.advance();

  SplitResult result = {
      measureObjects(scan, beltZ, extent, params.minHeight, map.grid, labels, rims), 0,
      map.outside};
  const auto narrow =
      std::remove_if(result.objects.begin(), result.objects.end(), [&](const SplitObject& object) {
        // The edge of an object may lie up to a spacing beyond its outermost samples.
        return object.outline.empty() || object.width + params.pixel < params.minWidth;
      });
  result.tooNarrow = static_cast<int>(result.objects.end() - narrow);
  result.objects.erase(narrow, result.objects.end());
  std::sort(result.objects.begin(), result.objects.end(),
            [](const SplitObject& a, const SplitObject& b) {
              return std::tie(a.x, a.y) < std::tie(b.x, b.y);
            });
  progress.advance();
  return result;
}

}  // namespace program
