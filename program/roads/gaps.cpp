#include "roads/gaps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "roads/gap_floor.h"

namespace program {
namespace {

/// Adds the edges of all pairs to a list of indices.
void addEdges(Line& line, const GapParams& params, std::vector<int>& edges) {
  constexpr STeskRangeD kAnyWidth = {-1.0, std::numeric_limits<double>::infinity()};
  std::vector<SQO_basicFeatureGap> pairs;
  qo_getLineGapFeature(line, 0, params.corner, kAnyWidth, pairs);
  for (const SQO_basicFeatureGap& pair : pairs) {
    edges.push_back(pair.gapStart.nPointIdx);
    edges.push_back(pair.gapEnd.nPointIdx);
  }
}

/// Blanks what lies farther before a sample than its backward arm reaches, so that it is the first
/// edge of the line.
void blankBefore(Line& line, std::size_t edge, double scale) {
  constexpr double kArmAndMore = 1.5;
  for (std::size_t i = 0; i < edge; ++i) {
    if (std::abs(line[i].pt3D.y - line[edge].pt3D.y) > kArmAndMore * scale) {
      line[i].pt3D.z = 0.0;
    }
  }
}

/**
 * The indices of all samples at which a line turns away from the sensor.
 *
 * The library pairs each edge with the next free one, so a rib takes the edges of the gaps beside
 * it. Without limits of the width it returns all edges but for an odd last one, which is found if
 * the search begins at the second edge.
 */
std::vector<int> edgesOf(Line line, const GapParams& params) {
  std::vector<int> edges;
  addEdges(line, params, edges);
  if (edges.size() > 1) {
    blankBefore(line, static_cast<std::size_t>(edges[1]), params.corner.scale);
    addEdges(line, params, edges);
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  return edges;
}

const STesk3DPoint& pointAt(const Line& line, int index) {
  return line[static_cast<std::size_t>(index)].pt3D;
}

/// Adds all gaps that begin at edge number `i`. Edges that are deeper are part of the floor, so the
/// search ends at one that is not.
void addGapsFrom(const Line& line,
                 int lineIdx,
                 const std::vector<int>& edges,
                 std::size_t i,
                 const GapParams& params,
                 std::vector<Gap>& gaps) {
  constexpr std::size_t kMostInFloor = 32;
  const double farthest = params.width.max + 2.0 * params.corner.scale;
  const STesk3DPoint& start = pointAt(line, edges[i]);
  for (std::size_t j = i + 1; j < edges.size() && j <= i + 1 + kMostInFloor; ++j) {
    const STesk3DPoint& end = pointAt(line, edges[j]);
    if (compute2DLen(start, end) > farthest) {
      break;
    }
    if (const auto gap = gapWithFloor(line, lineIdx, edges[i], edges[j], params)) {
      gaps.push_back(*gap);
    }
    if (end.z <= start.z + params.minDepth) {
      break;
    }
  }
}

bool overlaps(const Gap& a, const Gap& b) {
  return a.edges[0].sample < b.edges[1].sample && b.edges[0].sample < a.edges[1].sample;
}

bool overlapsAny(const Gap& gap, const std::vector<Gap>& others) {
  return std::any_of(others.begin(), others.end(),
                     [&](const Gap& other) { return overlaps(gap, other); });
}

/// What decides between gaps that overlap: a narrow slot in a dish is deeper, but a hollow between
/// the stones of a wide floor is not much deeper.
double worth(const Gap& gap) {
  return gap.medianDepth * std::sqrt(gap.width);
}

/// Gaps between corners, none of which overlap.
std::vector<Gap> gapsWithFloor(const Line& line,
                               int lineIdx,
                               const GapParams& params,
                               long long& refused) {
  const std::vector<int> edges = edgesOf(line, params);
  std::vector<Gap> all;
  for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
    const std::size_t before = all.size();
    addGapsFrom(line, lineIdx, edges, i, params, all);
    refused += all.size() == before ? 1 : 0;
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const Gap& a, const Gap& b) { return worth(a) > worth(b); });
  std::vector<Gap> gaps;
  for (const Gap& gap : all) {
    if (!overlapsAny(gap, gaps)) {
      gaps.push_back(gap);
    }
  }
  return gaps;
}

/// Adds the gaps that are holes of the line, where no other gap is.
void addOpenGaps(const Line& line, int lineIdx, const GapParams& params, std::vector<Gap>& gaps) {
  const std::vector<Gap> others = gaps;
  int before = -1;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    if (!isMeasured(line[static_cast<std::size_t>(i)])) {
      continue;
    }
    const auto gap =
        before >= 0 && i > before + 1 ? openGap(line, lineIdx, before, i, params) : std::nullopt;
    before = i;
    if (gap && !overlapsAny(*gap, others)) {
      gaps.push_back(*gap);
    }
  }
}

}  // namespace

std::vector<Gap> gapsOfLine(const Line& line,
                            int lineIdx,
                            const GapParams& params,
                            long long& refused) {
  const Line clean = withoutOutliers(line, params.cleaning);
  std::vector<Gap> gaps;
  if (params.floors != GapFloors::open) {
    gaps = gapsWithFloor(clean, lineIdx, params, refused);
  }
  if (params.floors != GapFloors::measured) {
    addOpenGaps(clean, lineIdx, params, gaps);
  }
  std::sort(gaps.begin(), gaps.end(),
            [](const Gap& a, const Gap& b) { return a.edges[0].sample < b.edges[0].sample; });
  return gaps;
}

FoundGaps findGaps(const Scan& scan, const GapParams& params, Progress& progress) {
  FoundGaps found;
  found.lines.resize(scan.size());
  std::vector<long long> refused(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    found.lines[l] = gapsOfLine(scan[l], static_cast<int>(l), params, refused[l]);
    progress.advance();
  });
  for (const long long one : refused) {
    found.refused += one;
  }
  return found;
}

}  // namespace program
