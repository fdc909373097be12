#include "gap_track.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numeric>
#include <opencv2/core/types.hpp>

#include <scanline/geometry.h>
#include "vectors.h"

namespace examples {
namespace {

STesk3DPoint rotated(const double* m, const STesk3DPoint& p) {
  return {m[0] * p.x + m[1] * p.y + m[2] * p.z, m[3] * p.x + m[4] * p.y + m[5] * p.z,
          m[6] * p.x + m[7] * p.y + m[8] * p.z};
}

STesk3DPoint centreOf(const SQO_basicFeatureGap& gap) {
  const STesk3DPoint& a = gap.gapStart.pt3D;
  const STesk3DPoint& b = gap.gapEnd.pt3D;
  return {0.5 * (a.x + b.x), 0.5 * (a.y + b.y), 0.5 * (a.z + b.z)};
}

/// The deviation that single distances of points add up to.
template <typename Distance>
Deviation deviationOf(const std::vector<STesk3DPoint>& points, Distance distance) {
  double sum = 0.0;
  double max = 0.0;
  for (const STesk3DPoint& p : points) {
    const double d = distance(p);
    sum += d * d;
    max = std::max(max, std::abs(d));
  }
  return {std::sqrt(sum / static_cast<double>(points.size())), max};
}

void measureWidth(GapTrack& track) {
  std::vector<double> widths;
  for (const SQO_basicFeatureGap& gap : track.gaps) {
    widths.push_back(compute2DLen(gap.gapStart.pt3D, gap.gapEnd.pt3D));
  }
  const auto [min, max] = std::minmax_element(widths.begin(), widths.end());
  track.width = {*min, *max};
  track.meanWidth =
      std::accumulate(widths.begin(), widths.end(), 0.0) / static_cast<double>(widths.size());
}

void findInterruptions(GapTrack& track) {
  for (std::size_t i = 1; i < track.gaps.size(); ++i) {
    const int before = track.gaps[i - 1].lineIdx;
    const int behind = track.gaps[i].lineIdx;
    if (behind > before + 1) {
      track.interruptions.push_back(
          {before + 1, behind - 1, compute2DLen(track.centres[i - 1], track.centres[i])});
    }
  }
}

LineFit fitLine(const std::vector<STesk3DPoint>& points) {
  LineFit fit{};
  // Only a single point has no line, and a tree of one gap is never long enough to be kept.
  if (!fitLine3DLeastSquares(points, fit.centre, fit.direction)) {
    return fit;
  }
  // A fitted line has no front end, so its direction may come out either way round.
  if (fit.direction.x < 0.0) {
    fit.direction = minus({0.0, 0.0, 0.0}, fit.direction);
  }
  fit.deviation = deviationOf(points, [&](const STesk3DPoint& p) {
    const STesk3DPoint d = minus(p, fit.centre);
    const double along = dot(d, fit.direction);
    return std::sqrt(std::max(dot(d, d) - along * along, 0.0));
  });
  return fit;
}

std::optional<ParabolaFit> fitParabola(const std::vector<STesk3DPoint>& points) {
  std::vector<cv::Point2d> flat;
  flat.reserve(points.size());
  for (const STesk3DPoint& p : points) {
    flat.emplace_back(p.x, p.y);
  }
  ParabolaFit fit{};
  double mse = 0.0;
  if (!leastSquareParabolaFitEigen(flat, fit.a, fit.b, fit.c, mse, fit.deviation.max)) {
    return std::nullopt;
  }
  fit.deviation.rms = std::sqrt(mse);
  return fit;
}

}  // namespace

GapTrack measureTrack(const SQO_gapFeatureTree& tree) {
  GapTrack track{};
  track.gaps = tree.treeNodes;
  std::transform(track.gaps.begin(), track.gaps.end(), std::back_inserter(track.centres), centreOf);
  track.length = compute2DLen(track.centres.front(), track.centres.back());
  measureWidth(track);
  findInterruptions(track);
  track.line = fitLine(track.centres);
  track.parabola = fitParabola(track.centres);
  return track;
}

std::optional<TruthMatch> matchTruth(const GapTrack& track,
                                     const std::vector<TrueGap>& truth,
                                     const double* toRaw) {
  constexpr double kCloseBy = 1.0;
  std::optional<TruthMatch> best;
  for (const TrueGap& gap : truth) {
    const Deviation deviation = deviationOf(track.centres, [&](const STesk3DPoint& p) {
      const STesk3DPoint raw = rotated(toRaw, p);
      return raw.y - gap.centre(raw.x);
    });
    if (deviation.rms < (best ? best->deviation.rms : kCloseBy)) {
      best = TruthMatch{gap.name, gap.width, deviation};
    }
  }
  return best;
}

bool isBent(const GapTrack& track) {
  constexpr double kMuchBetter = 2.0;
  // Below this share of the length both fits are as good as exact.
  constexpr double kExact = 1e-6;
  const double off = track.line.deviation.rms;
  return track.parabola && off > kExact * track.length &&
         off > kMuchBetter * track.parabola->deviation.rms;
}

}  // namespace examples
