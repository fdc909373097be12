#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"
#include "plain_corners.h"

// The corner family against its rules in their plainest form, on random lines. Steps, angles and
// limits come from small grids, so values stand exactly at their limits all the time.

namespace {

using build::Line;
using plain::Bend;
using plain::Bends;
using plain::Place;
using plain::Places;
using Features = std::vector<SQO_basicFeature1D>;

constexpr int kLine = 7;

std::string text(const Features& features) {
  std::ostringstream out;
  for (const auto& [type, at2D, at, value] : features) {
    out << std::hexfloat << type << ' ' << at2D.x << ' ' << at2D.y << ' ' << at.x << ' ' << at.y
        << ' ' << at.z << ' ' << value << '\n';
  }
  return out.str();
}

SQO_basicFeature1D featureAt(const Place& place, int type, double value = 0.0) {
  return {type, {kLine, place.sample}, place.at, value};
}

/// 1 if the backward arm is steep and the forward one flat, 2 the other way round, or 0.
int armsOf(const Bend& bend, const SQO_cornerParam& param) {
  const double back = std::abs(bend.back);
  const double fore = std::abs(bend.fore);
  if (back < param.jumpCornerTh_1 && fore > param.jumpCornerTh_2) {
    return 2;
  }
  return fore < param.jumpCornerTh_1 && back > param.jumpCornerTh_2 ? 1 : 0;
}

Features armCorners(const Places& places, const SQO_cornerParam& param) {
  const Bends bends = bendsOf(places, param.scale);
  Features features;
  for (const int i : peaksOf(places, bends, 1, true, param.cornerTh, 2.0 * param.scale)) {
    const int arms = armsOf(bends[i], param);
    features.push_back(featureAt(places[i], arms == 0 ? FEATURE_CORNER_OTHER : arms));
  }
  return features;
}

/// Marks the first and the last sample of each stretch.
void markEnds(const Places& places, Line& line) {
  for (std::size_t i = 0; i < places.size(); ++i) {
    const bool starts = i == 0 || places[i - 1].stretch != places[i].stretch;
    const bool ends = i + 1 == places.size() || places[i + 1].stretch != places[i].stretch;
    line[places[i].sample].nPointIdx |= (starts ? 0x100000 : 0) | (ends ? 0x200000 : 0);
  }
}

/// Adds the marks of the corners to those of the ends.
Features referenceCorners(const Places& places,
                          double refZ,
                          const SQO_cornerParam& param,
                          Line& line) {
  const Bends bends = bendsOf(places, param.scale, true);
  std::vector<int> types(places.size());
  for (const int i : peaksOf(places, bends, 1, false, param.cornerTh, 2.0 * param.scale)) {
    types[i] = plain::flatArm(bends[i], param);
  }
  Features features;
  for (std::size_t i = 0; i < places.size(); ++i) {
    int& word = line[places[i].sample].nPointIdx;
    const int ends = word >> 20;
    int type = types[i];
    word |= type << 16;
    if (type != 0) {
      type = std::abs(places[i].at.z - refZ) < 10.0 ? type : 0;
    } else if (ends == 1 || ends == 2) {
      const double arm = ends == 1 ? bends[i].fore : bends[i].back;
      type = std::abs(arm) < param.jumpCornerTh_1 ? 3 - ends : 0;
    }
    if (type != 0) {
      features.push_back(featureAt(places[i], type));
    }
  }
  return features;
}

/// The gaps as pairs of features.
Features gapRims(const Places& places, STeskRangeD range, const SQO_cornerParam& param) {
  const auto rims =
      peaksOf(places, bendsOf(places, param.scale), -1, true, param.cornerTh, param.scale);
  Features pairs;
  for (std::size_t k = 1; k < rims.size(); ++k) {
    const double width = plain::widthBetween(places[rims[k - 1]], places[rims[k]]);
    if (width > range.min && width < range.max) {
      pairs.push_back(featureAt(places[rims[k - 1]], 0));
      pairs.push_back(featureAt(places[rims[k]], 0));
      ++k;  // it opens no gap
    }
  }
  return pairs;
}

Features stepJumps(const Places& places, const SQO_cornerParam& param) {
  const Bends bends = bendsOf(places, param.scale);
  std::vector<int> kinds(places.size());  // the arms of a maximum, those of a minimum negative
  for (const int sign : {1, -1}) {
    for (const int i : peaksOf(places, bends, sign, false, param.cornerTh, 2.0 * param.scale)) {
      kinds[i] = sign * armsOf(bends[i], param);
    }
  }
  Features jumps;
  int a = -1;
  for (int b = 0; b < static_cast<int>(places.size()); ++b) {
    if (kinds[b] == 0) {
      continue;
    }
    if (a >= 0 && std::abs(places[a].at.y - places[b].at.y) < param.minEndingGap &&
        std::abs(bends[b].foreZ - bends[a].backZ) > param.minEndingGap_z) {
      if (kinds[a] == 2 && kinds[b] == -1) {
        jumps.push_back(featureAt(places[a], FEATURE_JUMP_FALL, bends[a].backZ));
      } else if (kinds[a] == -2 && kinds[b] == 1) {
        jumps.push_back(featureAt(places[b], FEATURE_JUMP_RISE, bends[b].foreZ));
      }
    }
    a = b;
  }
  return jumps;
}

double pick(std::mt19937& rng, std::initializer_list<double> values) {
  return values.begin()[rng() % values.size()];
}

/// A line with holes, jumps, turns and values that are not numbers. Long ones hardly advance, so
/// that neighbours are hundreds of samples away.
Line randomLine(std::mt19937& rng) {
  const double count =
      pick(rng, {0.0, 1.0, 2.0, 9.0, 20.0, 20.0, 40.0, 40.0, rng() % 2 == 0 ? 40.0 : 400.0});
  const double unit = count > 40.0 ? 0.03125 : 1.0;
  STesk3DPoint at = {3.0, -12.0, 50.0};
  Line line;
  for (int i = 0; i < count; ++i) {
    at.x += pick(rng, {0.0, 0.0, 0.0, 0.75});
    at.y += unit * pick(rng, {0.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, -1.0});
    at.z += unit * pick(rng, {-8.0, -2.0, -1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 2.0, 8.0});
    const double odd = pick(rng, {0.0, 0.0001, -5.0, 0.0, 0.0, 0.0, std::nan("")});
    const double y = rng() % 60 == 0 ? std::nan("") : at.y;
    line.push_back({i, {at.x, y, rng() % 12 == 0 ? odd : at.z}});
  }
  return line;
}

TEST(CornerFamily, FollowsThePlainRules) {
  std::mt19937 rng;
  std::vector<std::size_t> found(8);
  for (int round = 0; round < 3000; ++round) {
    const Line line = randomLine(rng);
    const int size = static_cast<int>(line.size());
    const SQO_cornerParam param = {pick(rng, {1.0, 2.0, 5.0, 1e9}),
                                   pick(rng, {1.0, 2.0, 4.0, 1e9}),
                                   pick(rng, {0.0, 1.0, 1.0, 2.0, 3.0, 5.0, 1e9, std::nan("")}),
                                   pick(rng, {0.0, 0.0, 45.0, 90.0}),
                                   pick(rng, {0.0, 30.0, 45.0, 90.0, 91.0}),
                                   pick(rng, {0.0, 30.0, 45.0, 60.0})};
    const double limit = pick(rng, {0.0, 2.0, 5.0, 40.0, 45.0, 60.0});
    const Places joined = plain::placesOf(line);
    const Places byZ = plain::placesOf(line, false, INFINITY, param.minEndingGap_z);
    const Places byYZ = plain::placesOf(line, false, param.minEndingGap, param.minEndingGap_z);
    Line sent = line;
    Features features;
    const auto check = [&](int kind, const Features& expected, const Line& left) {
      ASSERT_EQ(text(features), text(expected)) << "kind " << kind << ", round " << round;
      ASSERT_EQ(build::text(sent), build::text(left)) << "kind " << kind << ", round " << round;
      found[kind] += expected.size();
      features.clear();
      sent = line;
    };

    SQO_lineFeature record = {};
    qo_getLineCornerFeature(sent.data(), size, kLine, param, &record);
    features = record.features;
    check(0, plain::corners(joined, kLine, param), line);
    qo_getLineJumpFeature_cornerMethod(sent.data(), size, kLine, param, features);
    check(1, stepJumps(joined, param), line);

    Line marked = line;
    markEnds(byYZ, marked);
    const Features near = referenceCorners(byYZ, limit, param, marked);
    qo_getLineCornerFeature_BQ(sent.data(), size, kLine, limit, param, features);
    check(2, near, marked);
    std::vector<int> mask(line.size());
    std::generate(mask.begin(), mask.end(), [&] { return static_cast<int>(rng() % 10); });
    qo_getLineContourCornerFeature_groundMask_BQ(sent, mask, kLine, limit, param, features);
    check(3, plain::groundCorners(byYZ, mask, kLine, limit, param), line);

    Line blanked = line;
    for (STesk3DPosition& sample : blanked) {
      sample.pt3D.z = sample.pt3D.z > 51.0 ? 0.0 : sample.pt3D.z;
    }
    const Features low = plain::corners(plain::placesOf(blanked), kLine, param);
    markEnds(plain::placesOf(blanked, false, INFINITY, param.minEndingGap_z), blanked);
    ju_getLineCornerFeature_PSM(sent.data(), size, kLine, 51.0, param, &record);
    features.assign(record.features.end() - static_cast<int>(low.size()), record.features.end());
    check(7, low, blanked);

    // The other ones read labels, or renew the stamps.
    Line oneLabel = line;
    for (int i = 0; i < size; ++i) {
      sent[i].nPointIdx = static_cast<int>(rng() % 5);
      oneLabel[i].pt3D.z = sent[i].nPointIdx == 0 ? 0.0 : line[i].pt3D.z;
      sent[i].nPointIdx = sent[i].nPointIdx == 0 ? 1 : 2;
    }
    const Line labelled = sent;
    qo_maskData_getLineCornerFeature(sent, kLine, 2, param, features);
    check(4, plain::corners(plain::placesOf(oneLabel), kLine, param, true), labelled);
    sent = labelled;
    ju_getLineCorerFeature(sent, kLine, param, features);
    check(5, armCorners(byZ, param), line);
    sent = labelled;
    std::vector<SQO_basicFeatureGap> gaps;
    qo_getLineGapFeature(sent, kLine, param, {1.0, limit}, gaps);
    for (const SQO_basicFeatureGap& gap : gaps) {
      features.push_back({0, {gap.lineIdx, gap.gapStart.nPointIdx}, gap.gapStart.pt3D, 0.0});
      features.push_back({0, {gap.lineIdx, gap.gapEnd.nPointIdx}, gap.gapEnd.pt3D, 0.0});
    }
    check(6, gapRims(byZ, {1.0, limit}, param), line);
  }
  for (auto n : found)
  EXPECT_GT(*std::min_element(found.begin(), found.end()), 100U);
}

}  // namespace
