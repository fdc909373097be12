#include "compare.h"

#include <algorithm>
#include <tuple>

namespace examples {

std::vector<Comparison> compare(const std::vector<BeltObject>& made,
                                const std::vector<FoundObject>& found) {
  using Pair = std::tuple<double, std::size_t, std::size_t>;
  std::vector<Pair> pairs;
  for (std::size_t m = 0; m < made.size(); ++m) {
    for (std::size_t f = 0; f < found.size(); ++f) {
      const double distance = cv::norm(made[m].centre - found[f].placeOnBelt);
      if (distance < made[m].halfWidth) {
        pairs.emplace_back(distance, m, f);
      }
    }
  }
  std::sort(pairs.begin(), pairs.end());
  std::vector<Comparison> comparisons;
  comparisons.reserve(made.size());
  for (const BeltObject& truth : made) {
    comparisons.push_back({truth, std::nullopt, 0.0});
  }
  std::vector<bool> isTaken(found.size());
  for (const auto& [distance, m, f] : pairs) {
    if (!comparisons[m].found && !isTaken[f]) {
      comparisons[m].found = f;
      comparisons[m].positionError = distance;
      isTaken[f] = true;
    }
  }
  return comparisons;
}

}  // namespace examples
