#include "roads/gaps.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

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

/**
 * The indices of all samples at which a line turns away from the sensor.
 *
 * The library pairs each edge with the next free one, so a rib takes the edges of the gaps beside
 * it. Without limits of the width it returns all edges but for an odd last one, which is found if
 * the first edge is taken away.
 */
std::vector<int> edgesOf(Line line, const GapParams& params) {
  std::vector<int> edges;
  addEdges(line, params, edges);
  if (!edges.empty()) {
    for (int i = 0; i < edges.front(); ++i) {
      line[static_cast<std::size_t>(i)].pt3D.z = 0.0;
    }
    addEdges(line, params, edges);
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  return edges;
}

const STesk3DPoint& pointAt(const Line& line, int index) {
  return line[static_cast<std::size_t>(index)].pt3D;
}

/// The first edge after edge number `i` with which it makes a gap. Edges in between are part of the
/// floor, so the search ends at one that is not deeper.
std::optional<std::pair<Gap, std::size_t>> gapFrom(const Line& line,
                                                   int lineIdx,
                                                   const std::vector<int>& edges,
                                                   std::size_t i,
                                                   const GapParams& params) {
  constexpr std::size_t kMostInFloor = 16;
  const double farthest = params.width.max + 2.0 * params.corner.scale;
  const STesk3DPoint& start = pointAt(line, edges[i]);
  for (std::size_t j = i + 1; j < edges.size() && j <= i + 1 + kMostInFloor; ++j) {
    const STesk3DPoint& end = pointAt(line, edges[j]);
    if (compute2DLen(start, end) > farthest) {
      break;
    }
    if (const auto gap = gapWithFloor(line, lineIdx, edges[i], edges[j], params)) {
      return std::pair(*gap, j);
    }
    if (end.z <= start.z + params.minDepth) {
      break;
    }
  }
  return std::nullopt;
}

/// Gaps between corners. Of one inside another, the inner one.
std::vector<Gap> gapsWithFloor(const Line& line,
                               int lineIdx,
                               const GapParams& params,
                               long long& refused) {
  const std::vector<int> edges = edgesOf(line, params);
  std::vector<Gap> gaps;
  std::size_t endOfLast = 0;
  for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
    const auto found = gapFrom(line, lineIdx, edges, i, params);
    if (!found) {
      ++refused;
      continue;
    }
    const bool isInLast = i < endOfLast;
    if (isInLast && found->second > endOfLast) {
      continue;
    }
    if (isInLast) {
      gaps.pop_back();
    }
    gaps.push_back(found->first);
    endOfLast = found->second;
  }
  return gaps;
}

bool overlaps(const Gap& a, const Gap& b) {
  return a.edges[0].sample < b.edges[1].sample && b.edges[0].sample < a.edges[1].sample;
}

/// Adds the gaps that are holes of the line, where no other gap is.
void addOpenGaps(const Line& line, int lineIdx, const GapParams& params, std::vector<Gap>& gaps) {
  const std::vector<Gap> others = gaps;
  int before = -1;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    if (!isMeasured(line[static_cast<std::size_t>(i)])) {
      continue;
    }
    const auto gap = before >= 0 && i > before + 1 ? openGap(line, lineIdx, before, i, params)
                                                   : std::nullopt;
    before = i;
    if (gap && std::none_of(others.begin(), others.end(),
                            [&](const Gap& other) { return overlaps(*gap, other); })) {
      gaps.push_back(*gap);
    }
  }
}

}  // namespace

std::vector<Gap> gapsOfLine(const Line& line, int lineIdx, const GapParams& params, long long& refused) {
  const Line clean = withoutOutliers(line, params.cleaning);
  std::vector<Gap> gaps;
  if (params.floors != GapFloors::open) {
    gaps = gapsWithFloor(clean, lineIdx, params, refused);
  }
  if (params.floors != GapFloors::measured) {
    addOpenGaps(clean, lineIdx, params, gaps);
    std::sort(gaps.begin(), gaps.end(), [](const Gap& a, const Gap& b) {
      return a.edges[0].sample < b.edges[0].sample;
    });
  }
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
