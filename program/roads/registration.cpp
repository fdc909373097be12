#include "roads/registration.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <scanline/calibration.h>
#include <scanline/geometry.h>
#include "base/extent.h"
#include "base/noise.h"

namespace program {
namespace {

constexpr std::size_t kFewestPairs = 3;
/// Fewer pairs agree with any of several motions as well.
constexpr std::size_t kFewestForConsensus = 5;

Motion motionOf(const std::vector<PointPair>& pairs) {
  std::vector<cv::Point3d> a;
  std::vector<cv::Point3d> b;
  for (const PointPair& pair : pairs) {
    a.push_back(pair.a);
    b.push_back(pair.b);
  }
  Motion motion;
  caculateRT(b, a, motion.R, motion.T, motion.centreB, motion.centreA);
  return motion;
}

cv::Point3d meanOf(const std::vector<cv::Point3d>& points) {
  cv::Point3d sum;
  for (const cv::Point3d& p : points) {
    sum += p;
  }
  return sum / static_cast<double>(points.size());
}

/// Root mean square distances from the mean along the three main directions, the largest first.
cv::Vec3d spreadsOf(const std::vector<cv::Point3d>& points) {
  const cv::Point3d mean = meanOf(points);
  cv::Matx33d moments = cv::Matx33d::zeros();
  for (const cv::Point3d& p : points) {
    const cv::Vec3d d(p.x - mean.x, p.y - mean.y, p.z - mean.z);
    moments += d * d.t() * (1.0 / static_cast<double>(points.size()));
  }
  cv::Vec3d values;
  cv::eigen(moments, values);
  return {std::sqrt(std::max(values[0], 0.0)), std::sqrt(std::max(values[1], 0.0)),
          std::sqrt(std::max(values[2], 0.0))};
}

std::vector<cv::Point3d> pointsOf(const std::vector<PointPair>& pairs,
                                  cv::Point3d PointPair::*side) {
  std::vector<cv::Point3d> points;
  for (const PointPair& pair : pairs) {
    points.push_back(pair.*side);
  }
  return points;
}

/// Whether points lie on a line so nearly that the turn about it is not determined.
bool areOnALine(const std::vector<cv::Point3d>& points) {
  constexpr double kShare = 1e-3;
  const cv::Vec3d spreads = spreadsOf(points);
  return !(spreads[1] > kShare * spreads[0]);
}

std::vector<double> distancesFrom(const Motion& motion, const std::vector<PointPair>& pairs) {
  std::vector<double> distances;
  for (const PointPair& pair : pairs) {
    distances.push_back(cv::norm(motion.apply(pair.b) - pair.a));
  }
  return distances;
}

/// Three pairs for each trial: all triples of few pairs, random ones of many.
std::vector<std::vector<PointPair>> triplesOf(const std::vector<PointPair>& pairs) {
  constexpr std::size_t kMostForAll = 20;
  constexpr int kTrials = 1500;
  std::vector<std::vector<PointPair>> triples;
  const std::size_t n = pairs.size();
  if (n <= kMostForAll) {
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = i + 1; j < n; ++j) {
        for (std::size_t k = j + 1; k < n; ++k) {
          triples.push_back({pairs[i], pairs[j], pairs[k]});
        }
      }
    }
    return triples;
  }
  Noise random(1);
  const auto any = [&] {
    return pairs[static_cast<std::size_t>(random.unit() * static_cast<double>(n))];
  };
  for (int trial = 0; trial < kTrials; ++trial) {
    triples.push_back({any(), any(), any()});
  }
  return triples;
}

struct Consensus {
  Motion motion;
  double median;  ///< Of the distances of all pairs.
};

Consensus consensusOf(const std::vector<PointPair>& pairs) {
  Consensus best = {{}, std::numeric_limits<double>::infinity()};
  for (const std::vector<PointPair>& triple : triplesOf(pairs)) {
    if (!whyNoMotion(triple).empty()) {
      continue;
    }
    const Motion motion = motionOf(triple);
    std::vector<double> distances = distancesFrom(motion, pairs);
    const double median = quantile(distances, 0.5);
    if (median < best.median) {
      best = {motion, median};
    }
  }
  return best;
}

/// The pairs near the consensus, with which it is refined.
std::vector<PointPair> agreeing(const std::vector<PointPair>& pairs, double limit) {
  const Consensus consensus = consensusOf(pairs);
  std::vector<PointPair> near;
  if (std::isfinite(consensus.median)) {
    const std::vector<double> distances = distancesFrom(consensus.motion, pairs);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
      if (distances[i] <= limit) {
        near.push_back(pairs[i]);
      }
    }
  }
  return near;
}

double rmsOf(const std::vector<double>& distances) {
  double sum = 0.0;
  for (const double distance : distances) {
    sum += distance * distance;
  }
  return std::sqrt(sum / static_cast<double>(distances.size()));
}

}  // namespace

cv::Point3d Motion::apply(const cv::Point3d& b) const {
  cv::Point3d moved;
  pointRT(R, T, centreB, centreA, b, moved);
  return moved;
}

SQO_EulerAngles Motion::angles() const {
  double r[3][3];
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) {
      r[row][col] = R.at<double>(row, col);
    }
  }
  return rotationMatrixToEulerZYX(r);
}

double Motion::degrees() const {
  constexpr double kDegrees = 180.0 / 3.141592653589793;
  // The sine is exact for small angles, where the cosine is not.
  const double x = R.at<double>(2, 1) - R.at<double>(1, 2);
  const double y = R.at<double>(0, 2) - R.at<double>(2, 0);
  const double z = R.at<double>(1, 0) - R.at<double>(0, 1);
  return kDegrees * std::atan2(std::sqrt(x * x + y * y + z * z), cv::trace(R)[0] - 1.0);
}

std::string whyNoMotion(const std::vector<PointPair>& pairs) {
  if (pairs.size() < kFewestPairs) {
    return "there are " + std::to_string(pairs.size()) +
           " pairs of points. A motion needs at least 3 that are not on a line";
  }
  const bool isLineA = areOnALine(pointsOf(pairs, &PointPair::a));
  if (isLineA || areOnALine(pointsOf(pairs, &PointPair::b))) {
    return std::string("the points of ") + (isLineA ? "A" : "B") +
           " lie on a line, or are one point, so the turn about it is not determined. Add a point "
           "beside it";
  }
  return {};
}

double consensusSpread(const std::vector<PointPair>& pairs) {
  if (pairs.size() < kFewestForConsensus) {
    return 0.0;
  }
  // A robust deviation from the median distance of points in space, corrected for few of them.
  constexpr double kOfMedian = 1.4826;
  const double few = 1.0 + 5.0 / static_cast<double>(pairs.size() - 3);
  return kOfMedian * few * consensusOf(pairs).median;
}

Registration registerPairs(const std::vector<PointPair>& pairs, double limit, bool keepsOutliers) {
  const std::vector<PointPair> near =
      pairs.size() < kFewestForConsensus ? pairs : agreeing(pairs, limit);
  const bool isAgreed = whyNoMotion(near).empty();
  const Motion agreed = motionOf(isAgreed ? near : pairs);
  const std::vector<double> fromAgreed = distancesFrom(agreed, pairs);
  Registration found{};
  found.motion = keepsOutliers ? motionOf(pairs) : agreed;
  std::vector<double> fitted;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const cv::Point3d moved = found.motion.apply(pairs[i].b);
    const bool isOutlier = isAgreed && near.size() < pairs.size() && fromAgreed[i] > limit;
    found.residuals.push_back({moved, cv::norm(moved - pairs[i].a), isOutlier});
    if (keepsOutliers || !isOutlier) {
      fitted.push_back(found.residuals.back().distance);
    }
  }
  found.fitted = fitted.size();
  found.rms = rmsOf(fitted);
  return found;
}

bool isMirrored(const std::vector<PointPair>& pairs, const Registration& found, double limit) {
  constexpr double kFarBetter = 0.2;
  std::vector<PointPair> mirrored = pairs;
  for (PointPair& pair : mirrored) {
    pair.b.x = -pair.b.x;
  }
  const double rms = rmsOf(distancesFrom(motionOf(mirrored), mirrored));
  return found.rms > limit && rms < kFarBetter * found.rms;
}

double scaleBetween(const std::vector<PointPair>& pairs) {
  return cv::norm(spreadsOf(pointsOf(pairs, &PointPair::a))) /
         cv::norm(spreadsOf(pointsOf(pairs, &PointPair::b)));
}

}  // namespace program
