#include "roads/split.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "roads/split_contacts.h"
#include "roads/split_map.h"
#include "roads/split_middles.h"
#include "roads/split_outlines.h"
#include "roads/split_regions.h"

namespace program {
namespace {

/// The middles of the objects, and what divide() divides them by.
struct Middles {
  std::vector<SQO_2DValueI> seeds;
  cv::Mat depths;
};

/// Looks for middles between the steps in height, which divide objects that touch. An object so
/// steep that it is all steps has its middle where it is widest.
Middles middlesOf(const ObjectMap& map, const SplitParams& params) {
  // Steps around and between objects make an object seem narrower than it is.
  constexpr double kLowest = 0.3;
  const double lowest = kLowest * params.minWidth / params.pixel;
  const cv::Mat calm = maskWithoutSteps(map, params.cut);
  const cv::Mat inside = distancesInside(calm);
  Middles middles = {findMiddles(inside, lowest, params.waist), inside - distancesOutside(calm)};
  cv::Mat steep = distancesInside(map.mask);
  const cv::Mat isSeeded = areasWithSeed(map.mask, middles.seeds);
  steep.setTo(0.0F, isSeeded);
  const std::vector<SQO_2DValueI> more = findMiddles(steep, lowest, params.waist);
  middles.seeds.insert(middles.seeds.end(), more.begin(), more.end());
  steep.copyTo(middles.depths, ~isSeeded);
  return middles;
}

/// The label of an object must not stand on another one, as in the middle of a ring.
void placeLabels(std::vector<SplitObject>& objects,
                 const std::vector<SQO_2DValueI>& seeds,
                 const cv::Mat& labels,
                 const MapGrid& grid) {
  for (std::size_t i = 0; i < objects.size(); ++i) {
    SplitObject& object = objects[i];
    const auto centre = grid.pixelOf({object.x, object.y, 0.0});
    const bool isOnObject = centre && labels.at<int>(*centre) == seeds[i].value;
    const cv::Point2d widest = grid.centreOf({seeds[i].x, seeds[i].y});
    object.labelX = isOnObject ? object.x : widest.x;
    object.labelY = isOnObject ? object.y : widest.y;
  }
}

/// Removes what is no object, and returns how many there were.
int removeNarrow(std::vector<SplitObject>& objects, double minWidth) {
  const auto narrow = std::remove_if(
      objects.begin(), objects.end(),
      [=](const SplitObject& object) { return object.outline.empty() || object.width < minWidth; });
  const auto count = static_cast<int>(objects.end() - narrow);
  objects.erase(narrow, objects.end());
  return count;
}

}  // namespace

SplitResult splitObjects(const Scan& scan,
                         double beltZ,
                         const Extent& extent,
                         const SplitParams& params,
                         Progress& progress) {
  const ObjectMap map = projectRaised(scan, beltZ, params.minHeight, gridOf(scan, params.pixel));
  progress.advance();

  Middles middles = middlesOf(map, params);
  progress.advance();

  cv::Mat labels = divide(map.mask, middles.depths, middles.seeds);
  straightenContacts(labels, static_cast<int>(middles.seeds.size()));
  progress.advance();

  const std::vector<std::vector<cv::Point>> rims =
      walkOutlines(labels, static_cast<int>(middles.seeds.size()));
  progress.advance();

  SplitResult result = {
      measureObjects(scan, beltZ, extent, params.minHeight, map.grid, labels, rims), 0,
      map.outside};
  placeLabels(result.objects, middles.seeds, labels, map.grid);
  result.tooNarrow = removeNarrow(result.objects, params.minWidth);
  std::sort(result.objects.begin(), result.objects.end(),
            [](const SplitObject& a, const SplitObject& b) {
              return std::tie(a.x, a.y) < std::tie(b.x, b.y);
            });
  progress.advance();
  return result;
}

}  // namespace program
