#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"
#include "plain_corners.h"
#include "plain_glove_arcs.h"

// Compares the corner searches with the same rules in their plainest form, on random lines. Steps,
// angles and limits come from small grids, so values exactly at a limit are frequent.

namespace {

using build::Line;
using plain::Profile;
using Features = std::vector<SQO_basicFeature1D>;

constexpr int kLine = 7;

std::string text(const Features& features) {
  Line fields;
  for (const auto& [type, at2D, at, value] : features) {
    fields.insert(fields.end(), {{type, at}, {at2D.x, {value, 1.0 * at2D.y, 0.0}}});
  }
  return build::text(fields);
}

/// Marks the first and the last sample of each stretch.
void markEnds(const Profile& profile, Line& line) {
  for (std::size_t i = 0; i < profile.size(); ++i) {
    const bool starts = i == 0 || profile[i - 1].stretch != profile[i].stretch;
    const bool ends = i + 1 == profile.size() || profile[i + 1].stretch != profile[i].stretch;
    line[profile[i].sample].nPointIdx |= (starts ? 0x100000 : 0) | (ends ? 0x200000 : 0);
  }
}

double pick(std::mt19937& rng, std::initializer_list<double> values) {
  return values.begin()[rng() % values.size()];
}

/// A line with holes, jumps, corners and NaN. Long ones hardly advance, so neighbours are hundreds
/// of samples away. On some, equal turn angles differ by rounding only.
Line randomLine(std::mt19937& rng) {
  const double count = pick(rng, {0.0, 1.0, 9.0, 10.0, 20.0, 40.0, 40.0, 40.0, 40.0, 400.0});
  const double unit = count > 40.0 ? 0.03125 : 1.0;
  const double jitter = pick(rng, {0.0, 0.0, 1e-14, 1e-12});
  STesk3DPoint at = {3.0, -12.0, 50.0};
  Line line;
  for (int i = 0; i < count; ++i) {
    at.x += pick(rng, {0.0, 0.0, 0.0, 0.75});
    at.y += unit * pick(rng, {0.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, -1.0});
    at.z += unit * pick(rng, {-8.0, -2.0, -1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 2.0, 8.0});
    at.z += jitter * pick(rng, {-1.0, 0.0, 1.0});
    const double odd = pick(rng, {0.0, 0.0001, -5.0, 0.0, 0.0, 0.0, std::nan("")});
    line.push_back(
        {i, {at.x, rng() % 60 == 0 ? std::nan("") : at.y, rng() % 12 == 0 ? odd : at.z}});
  }
  return line;
}

TEST(CornerFamily, FollowsThePlainRules) {
  std::mt19937 rng;
  std::vector<int> found(5);
  for (int round = 0; round < 1500; ++round) {
    const Line line = randomLine(rng);
    const int size = static_cast<int>(line.size());
    const SQO_cornerParam param = {pick(rng, {1.0, 2.0, 5.0, 1e9}),
                                   pick(rng, {1.0, 2.0, 4.0, 1e9}),
                                   pick(rng, {0.0, 1.0, 1.0, 2.0, 3.0, 5.0, 1e9, std::nan("")}),
                                   pick(rng, {0.0, 0.0, 45.0, 90.0}),
                                   pick(rng, {0.0, 30.0, 45.0, 90.0, 91.0}),
                                   pick(rng, {0.0, 30.0, 45.0, 60.0})};
    const double limit = pick(rng, {0.0, 2.0, 5.0, 40.0, 45.0, 60.0});
    const auto byYZ = plain::profileOf(line, false, param.minEndingGap, param.minEndingGap_z);
    Line sent = line;
    Features features;
    const auto check = [&](int kind, const auto& seen, const auto& expected, const Line& left) {
      ASSERT_EQ(seen, expected) << "kind " << kind << ", round " << round;
      ASSERT_EQ(build::text(sent), build::text(left)) << "kind " << kind << ", round " << round;
      found[kind] += expected.empty() ? 0 : 1;
      features.clear();
      sent = line;
    };

    SQO_lineFeature record = {};
    qo_getLineCornerFeature(sent.data(), size, kLine, param, &record);
    check(0, text(record.features), text(plain::corners(plain::profileOf(line), kLine, param)),
          line);
    const SQO_gloveArcParam glove = {param.scale, limit, param.cornerTh};
    const auto arcs = plain::gloveArcs(plain::profileOf(line), kLine, glove);
    ju_getLineGloveArcs(sent, kLine, glove, features);
    check(1, text(features), text(size < 10 ? Features() : arcs), line);

    std::vector<int> mask(line.size());
    std::generate(mask.begin(), mask.end(), [&] { return static_cast<int>(rng() % 10); });
    qo_getLineContourCornerFeature_groundMask_BQ(sent, mask, kLine, limit, param, features);
    check(3, text(features), text(plain::groundCorners(byYZ, mask, kLine, limit, param)), line);

    Line low = line;
    for (STesk3DPosition& sample : low) {
      sample.pt3D.z = sample.pt3D.z > 51.0 ? 0.0 : sample.pt3D.z;
    }
    const Features lowCorners = plain::corners(plain::profileOf(low), kLine, param);
    markEnds(plain::profileOf(low, false, INFINITY, param.minEndingGap_z), low);
    record.features.clear();
    ju_getLineCornerFeature_PSM(sent.data(), size, kLine, 51.0, param, &record);
    check(2, text(record.features), text(lowCorners), low);

    // Only the samples of a label count.
    Line oneLabel = line;
    for (int i = 0; i < size; ++i) {
      sent[i].nPointIdx = rng() % 5 == 0 ? 1 : 2;
      oneLabel[i].pt3D.z = sent[i].nPointIdx == 1 ? 0.0 : line[i].pt3D.z;
    }
    const Line labelled = sent;
    qo_maskData_getLineCornerFeature(sent, kLine, 2, param, features);
    const auto ofLabel = plain::corners(plain::profileOf(oneLabel), kLine, param, true);
    check(4, text(features), text(ofLabel), labelled);
  }
  EXPECT_GT(*std::min_element(found.begin(), found.end()), 50);
}

}  // namespace
