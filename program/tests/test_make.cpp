#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <opencv2/core/utility.hpp>
#include <string>

#include "make/made_scan.h"
#include "make/profile_shapes.h"

namespace program {
namespace {

constexpr int kObjects = 5;

const SceneKind& kindNamed(const std::string& name) {
  for (const SceneKind& kind : sceneKinds()) {
    if (kind.name == name) {
      return kind;
    }
  }
  throw std::logic_error("no kind " + name);
}

MadeScan made(const SceneKind& kind, std::uint64_t seed, double noise) {
  Progress progress("", 1, true);
  return kind.make({seed, noise, kObjects, "box"}, progress);
}

/// The kind with its own noise; made once for all tests.
const MadeScan& made(const std::string& name) {
  static std::map<std::string, MadeScan> all;
  const auto found = all.find(name);
  if (found != all.end()) {
    return found->second;
  }
  const SceneKind& kind = kindNamed(name);
  return all.emplace(name, made(kind, 1, kind.defaultNoise)).first->second;
}

bool areEqual(const Scan& a, const Scan& b) {
  for (std::size_t l = 0; l < a.size(); ++l) {
    for (std::size_t i = 0; i < a[l].size(); ++i) {
      if (a[l][i].pt3D.z != b[l][i].pt3D.z) {
        return false;
      }
    }
  }
  return a.size() == b.size();
}

/// The measured sample nearest to a place.
STesk3DPoint sampleAt(const Scan& scan, double x, double y) {
  STesk3DPoint best = {1e9, 1e9, 0.0};
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      const STesk3DPoint& p = sample.pt3D;
      if (isMeasured(sample) && std::hypot(p.x - x, p.y - y) < std::hypot(best.x - x, best.y - y)) {
        best = p;
      }
    }
  }
  return best;
}

double heightOver(const MadeScan& made, const STesk3DPoint& p) {
  return (made.plane.at(p.x, p.y) - p.z) /
         std::sqrt(1.0 + made.plane.a * made.plane.a + made.plane.b * made.plane.b);
}

TEST(Make, ScansAreReadAsDistancesWithLinesInTheOrderOfX) {
  for (const SceneKind& kind : sceneKinds()) {
    SCOPED_TRACE(kind.name);
    const MadeScan& scan = made(kind.name);
    long long measured = 0;
    long long samples = 0;
    double x = -1.0;
    for (const Line& line : scan.scan) {
      ASSERT_EQ(line.size(), scan.scan.front().size());
      EXPECT_GT(line.front().pt3D.x, x);
      x = line.front().pt3D.x;
      for (const STesk3DPosition& sample : line) {
        ASSERT_GE(sample.pt3D.z, 0.0);
        measured += isMeasured(sample) ? 1 : 0;
        ++samples;
      }
    }
    EXPECT_LT(measured, samples) << "a sensor loses samples";
    EXPECT_GT(measured, samples * 9 / 10);
  }
}

TEST(Make, TheSeedAloneDecidesWhateverTheThreads) {
  for (const SceneKind& kind : sceneKinds()) {
    SCOPED_TRACE(kind.name);
    const int before = cv::getNumThreads();
    cv::setNumThreads(1);
    const MadeScan again = made(kind, 1, kind.defaultNoise);
    cv::setNumThreads(before);
    EXPECT_TRUE(areEqual(again.scan, made(kind.name).scan));
    if (kind.name != std::string("bench")) {  // which takes long
      EXPECT_FALSE(areEqual(made(kind, 8, kind.defaultNoise).scan, again.scan));
    }
  }
}

TEST(Make, MostSamplesOfAPlateLieOnItsPlaneWithTheNoiseAskedFor) {
  for (const char* name : {"part", "plate", "hole", "rods"}) {
    SCOPED_TRACE(name);
    constexpr double kNoise = 0.2;
    const MadeScan scan = made(kindNamed(name), 3, kNoise);
    double sum = 0.0;
    long long near = 0;
    for (const Line& line : scan.scan) {
      for (const STesk3DPosition& sample : line) {
        const double d = sample.pt3D.z - scan.plane.at(sample.pt3D.x, sample.pt3D.y);
        if (isMeasured(sample) && std::abs(d) < 4.0 * kNoise) {
          sum += d * d;
          ++near;
        }
      }
    }
    EXPECT_NEAR(std::sqrt(sum / static_cast<double>(near)), kNoise, 0.1 * kNoise);
  }
}

TEST(Make, ObjectsStandWhereTheTruthHasThem) {
  for (const char* name : {"bench", "part", "belt", "plate", "hole"}) {
    const MadeScan& scan = made(name);
    EXPECT_FALSE(scan.objects.empty());
    for (const TrueObject& object : scan.objects) {
      if (object.kind == "box" && std::string(name) == "bench" && object.x < 100.0) {
        continue;  // its step stands on its middle
      }
      // The foot is that of the plane; a tilted object leans over its foot.
      const double lean = object.height / std::sqrt(1.0 + scan.plane.a * scan.plane.a);
      const STesk3DPoint top =
          sampleAt(scan.scan, object.x - scan.plane.a * lean, object.y - scan.plane.b * lean);
      EXPECT_NEAR(heightOver(scan, top), object.height, 2.5)
          << name << ": " << object.kind << " at " << object.x << ", " << object.y;
    }
  }
}

TEST(Make, GapsAreDeepAtTheirCentreLinesAndNotBesideThem) {
  const MadeScan& part = made("part");
  ASSERT_EQ(part.gaps.size(), 2U);
  for (const TrueGap& gap : part.gaps) {
    const double x = 50.0;
    const double y = gap.centre(x);
    EXPECT_LT(heightOver(part, sampleAt(part.scan, x, y)), -1.0) << gap.name;
    EXPECT_NEAR(heightOver(part, sampleAt(part.scan, x, y + 0.6 * gap.width)), 0.0, 0.1);
    EXPECT_NEAR(heightOver(part, sampleAt(part.scan, x, y - 0.6 * gap.width)), 0.0, 0.1);
  }
}

TEST(Make, SamplesOfARodHaveItsRadiusFromItsAxis) {
  const MadeScan& rods = made("rods");
  for (const TrueRod& rod : rods.rods) {
    const cv::Point3d from(rod.from.x, rod.from.y, rod.from.z);
    cv::Point3d axis = cv::Point3d(rod.to.x, rod.to.y, rod.to.z) - from;
    const double length = cv::norm(axis);
    axis /= length;
    const cv::Point3d middle = from + 0.5 * length * axis;
    for (const double across : {-0.6, 0.0, 0.6}) {
      const STesk3DPoint p = sampleAt(rods.scan, middle.x, middle.y + across * rod.radius);
      const cv::Point3d d = cv::Point3d(p.x, p.y, p.z) - from;
      EXPECT_NEAR(cv::norm(d - d.dot(axis) * axis), rod.radius, 0.15) << rod.radius;
    }
  }
}

TEST(Make, TiltIsTheAngleToTheLevelThatThePlaneIsTurnedTo) {
  EXPECT_NEAR(tiltDegrees(made("bench")), 2.95, 0.01);
  EXPECT_NEAR(tiltDegrees(made("part")), 1.80, 0.01);
  EXPECT_NEAR(tiltDegrees(made("shelf")), 15.29, 0.01);
}

TEST(Make, LinesOfAProfileAreItsTruthWithNoise) {
  constexpr double kNoise = 0.01;
  for (const ProfileShape& shape : profileShapes()) {
    SCOPED_TRACE(shape.name);
    Progress progress("", 1, true);
    const MadeScan scan = makeProfile({1, kNoise, 0, shape.name}, progress);
    long long holes = 0;
    for (const Line& line : scan.scan) {
      for (std::size_t i = 0; i < line.size(); ++i) {
        ASSERT_NEAR(line[i].pt3D.z, scan.profile[i].pt3D.z, 4.0 * kNoise);
        ASSERT_EQ(line[i].nPointIdx, static_cast<int>(i));
        holes += isMeasured(line[i]) ? 0 : 1;
      }
    }
    EXPECT_EQ(holes > 0, !shape.holes.empty() || shape.farthest < 1000.0);
    EXPECT_NEAR(scan.profile.back().pt3D.y, shape.corners.back().y, shape.step);
  }
}

TEST(Make, RoundPlacesOfAProfileStandOverItsCorners) {
  Progress progress("", 1, true);
  const MadeScan beads = makeProfile({1, 0.0, 0, "beads"}, progress);
  EXPECT_DOUBLE_EQ(sampleAt(beads.scan, 10.0, 38.0).z, 100.0 - 12.0);
  EXPECT_DOUBLE_EQ(sampleAt(beads.scan, 10.0, 84.0).z, 100.0 - 4.0);
  EXPECT_DOUBLE_EQ(sampleAt(beads.scan, 10.0, 60.0).z, 100.0);
  const MadeScan bowls = makeProfile({1, 0.0, 0, "bowls"}, progress);
  EXPECT_DOUBLE_EQ(sampleAt(bowls.scan, 10.0, 34.0).z, 90.0 + 26.0);
  EXPECT_DOUBLE_EQ(sampleAt(bowls.scan, 10.0, 26.0).z, 90.0 + 13.0) << "half way down";
}

TEST(Make, TheBeltCarriesAsManyObjectsAsAskedFor) {
  EXPECT_EQ(made("belt").objects.size(), static_cast<std::size_t>(kObjects));
}

}  // namespace
}  // namespace program
