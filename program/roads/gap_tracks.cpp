#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "roads/gaps.h"

namespace program {
namespace {

STesk3DPoint middleOf(const Gap& gap) {
  const STesk3DPoint& a = gap.edges[0].at;
  const STesk3DPoint& b = gap.edges[1].at;
  return {0.5 * (a.x + b.x), 0.5 * (a.y + b.y), 0.5 * (a.z + b.z)};
}

SQO_basicFeatureGap recordOf(const Gap& gap) {
  return {gap.line,
          {0, 0, 0},
          {gap.edges[0].sample, gap.edges[0].at},
          {gap.edges[1].sample, gap.edges[1].at},
          {0, 0, 0, 0}};
}

/// The gap that a node of a tree was made of.
const Gap& gapOf(const SQO_basicFeatureGap& node, const FoundGaps& found) {
  const std::vector<Gap>& line = found.lines[static_cast<std::size_t>(node.lineIdx)];
  return *std::find_if(line.begin(), line.end(), [&](const Gap& gap) {
    return gap.edges[0].sample == node.gapStart.nPointIdx &&
           gap.edges[1].sample == node.gapEnd.nPointIdx;
  });
}

void measureWidth(GapTrack& track) {
  const auto count = static_cast<double>(track.gaps.size());
  track.width = {track.gaps.front().width, track.gaps.front().width};
  for (std::size_t i = 0; i < track.gaps.size(); ++i) {
    const double width = track.gaps[i].width;
    const double slope = track.centreLine.slopeAt(track.centres[i].x);
    track.width = {std::min(track.width.min, width), std::max(track.width.max, width)};
    track.meanWidth += width / count;
    track.widthAcross += width / std::sqrt(1.0 + slope * slope) / count;
  }
}

void measureDepth(GapTrack& track) {
  double sum = 0.0;
  double floors = 0.0;
  for (const Gap& gap : track.gaps) {
    if (!gap.isOpen) {
      sum += gap.depth;
      floors += 1.0;
    }
  }
  track.meanDepth = floors > 0.0 ? sum / floors : std::nan("");
  track.openShare = 1.0 - floors / static_cast<double>(track.gaps.size());
}

void findInterruptions(GapTrack& track) {
  for (std::size_t i = 1; i < track.gaps.size(); ++i) {
    const int before = track.gaps[i - 1].line;
    const int after = track.gaps[i].line;
    if (after > before + 1) {
      track.interruptions.push_back(
          {before + 1, after - 1, compute2DLen(track.centres[i - 1], track.centres[i])});
    }
  }
}

GapTrack measured(const SQO_gapFeatureTree& tree, const FoundGaps& found) {
  GapTrack track{};
  for (const SQO_basicFeatureGap& node : tree.treeNodes) {
    track.gaps.push_back(gapOf(node, found));
    track.centres.push_back(middleOf(track.gaps.back()));
  }
  const int lines = track.gaps.back().line - track.gaps.front().line + 1;
  track.coverage = static_cast<double>(track.gaps.size()) / static_cast<double>(lines);
  track.length = compute2DLen(track.centres.front(), track.centres.back());
  track.centreLine = fitCentreLine(track.centres);
  measureWidth(track);
  measureDepth(track);
  findInterruptions(track);
  return track;
}

}  // namespace

std::vector<GapTrack> followGaps(const FoundGaps& found, const GapParams& params) {
  std::vector<SQO_gapFeatureTree> trees;
  for (std::size_t l = 0; l < found.lines.size(); ++l) {
    std::vector<SQO_basicFeatureGap> gaps;
    std::transform(found.lines[l].begin(), found.lines[l].end(), std::back_inserter(gaps),
                   recordOf);
    const bool isLast = l + 1 == found.lines.size();
    qo_lineGapsGrowing(static_cast<int>(l), isLast, gaps, trees, params.grow);
  }
  std::vector<GapTrack> tracks;
  tracks.reserve(trees.size());
  for (const SQO_gapFeatureTree& tree : trees) {
    GapTrack track = measured(tree, found);
    if (track.coverage >= params.minCoverage) {
      tracks.push_back(std::move(track));
    }
  }
  std::stable_sort(tracks.begin(), tracks.end(),
                   [](const GapTrack& a, const GapTrack& b) { return a.length > b.length; });
  return tracks;
}

}  // namespace program
