#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <iterator>
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

/// Teeth of nearly equal height at one place, hundreds in a row, between single samples far away.
/// All neighbours lie beyond a row.
Line combLine(std::mt19937& rng) {
  Line line;
  for (int i = 0; i < 500; ++i) {
    const double y = rng() % 150 == 0 ? pick(rng, {-6.0, -3.0, 3.0, 6.0}) : 0.0;
    line.push_back({i, {3.0, y, 50.0 + 0.75 * (i % 2)}});
  }
  return line;
}

/// A line with holes, jumps, corners and NaN. Long ones hardly advance, so neighbours are hundreds
/// of samples away. On some, equal turn angles differ by rounding only.
Line randomLine(std::mt19937& rng) {
  const double count = pick(rng, {0.0, 1.0, 9.0, 10.0, 20.0, 40.0, 40.0, 40.0, 40.0, 400.0});
  const double unit = count > 40.0 ? 0.03125 : 1.0;
  const double jitter = pick(rng, {0.0, 0.0, 1e-14, 1e-12});
  STesk3DPoint at = {3.0, pick(rng, {-11.5, 12.0}), 50.0};
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

/// A line with the parameters of a search.
struct Case {
  Line line;
  SQO_cornerParam param;
  double limit;  ///< Of the searches that have one more.
  std::mt19937& rng;

  [[nodiscard]] int size() const {
    return line.empty() ? -5 : static_cast<int>(line.size());
  }
};

Case randomCase(std::mt19937& rng) {
  const SQO_cornerParam param = {pick(rng, {1.0, 2.0, 5.0, 1e9}),
                                 pick(rng, {1.0, 2.0, 4.0, 1e9}),
                                 pick(rng, {0.0, 1.0, 1.0, 2.0, 3.0, 5.0, 1e9, std::nan("")}),
                                 pick(rng, {0.0, 0.0, 45.0, 90.0, -20.25, -300.0}),
                                 pick(rng, {0.0, 0.5, 30.0, 45.0, 90.0, 91.0}),
                                 pick(rng, {0.0, 30.0, 45.0, 60.0})};
  const Line line = rng() % 30 == 0 ? combLine(rng) : randomLine(rng);
  return {line, param, pick(rng, {0.0, 2.0, 5.0, 40.0, 45.0, 60.0}), rng};
}

/// Compares features, and the line after a search. Returns whether there are any features.
bool compare(const Features& found,
             const Features& expected,
             const Line& line,
             const Line& expectedLine) {
  EXPECT_EQ(text(found), text(expected));
  EXPECT_EQ(build::text(line), build::text(expectedLine));
  return !expected.empty();
}

bool compareGeneral(const Case& c) {
  Line line = c.line;
  SQO_lineFeature record = {};
  qo_getLineCornerFeature(line.data(), c.size(), kLine, c.param, &record);
  const auto expected = plain::corners(plain::profileOf(c.line), kLine, c.param);
  return compare(record.features, expected, line, c.line);
}

/// Only the samples of one label count.
bool compareMasked(const Case& c) {
  Line labelled = c.line;
  Line oneLabel = c.line;
  for (int i = 0; i < c.size(); ++i) {
    labelled[i].nPointIdx = c.rng() % 5 == 0 ? 1 : 2;
    oneLabel[i].pt3D.z = labelled[i].nPointIdx == 1 ? 0.0 : c.line[i].pt3D.z;
  }
  Line line = labelled;
  Features found;
  qo_maskData_getLineCornerFeature(line, kLine, 2, c.param, found);
  const auto expected = plain::corners(plain::profileOf(oneLabel), kLine, c.param, true);
  return compare(found, expected, line, labelled);
}

bool comparePsm(const Case& c) {
  Line low = c.line;
  for (STesk3DPosition& sample : low) {
    sample.pt3D.z = sample.pt3D.z > 51.0 ? 0.0 : sample.pt3D.z;
  }
  const auto expected = plain::corners(plain::profileOf(low), kLine, c.param);
  markEnds(plain::profileOf(low, false, INFINITY, c.param.minEndingGap_z), low);
  Line line = c.line;
  SQO_lineFeature record = {};
  ju_getLineCornerFeature_PSM(line.data(), c.size(), kLine, 51.0, c.param, &record);
  return compare(record.features, expected, line, low);
}

bool compareGround(const Case& c) {
  std::vector<int> mask(c.line.size());
  const int density = c.rng() % 2 == 0 ? 10 : 200;
  std::generate(mask.begin(), mask.end(), [&] { return static_cast<int>(c.rng() % density); });
  Line line = c.line;
  Features found;
  qo_getLineContourCornerFeature_groundMask_BQ(line, mask, kLine, c.limit, c.param, found);
  const auto profile =
      plain::profileOf(c.line, false, c.param.minEndingGap, c.param.minEndingGap_z);
  return compare(found, plain::groundCorners(profile, mask, kLine, c.limit, c.param), line, c.line);
}

bool compareReference(const Case& c) {
  const auto profile =
      plain::profileOf(c.line, false, c.param.minEndingGap, c.param.minEndingGap_z);
  const auto arms = plain::armsOf(profile, c.param.scale, true);
  std::vector<int> types(profile.size());
  for (const int i : plain::peaksOf(profile, arms, 1, false, c.param.cornerTh, 2 * c.param.scale)) {
    types[i] = plain::flatArm(arms[i], c.param);
  }
  Line marked = c.line;
  markEnds(profile, marked);
  Features expected;
  for (std::size_t i = 0; i < profile.size(); ++i) {
    int& word = marked[profile[i].sample].nPointIdx;
    int type = std::abs(profile[i].at.z - c.limit) < 10.0 ? types[i] : 0;
    if (const int ends = word >> 20; types[i] == 0 && (ends == 1 || ends == 2)) {
      const double arm = ends == 1 ? arms[i].fore : arms[i].back;
      type = std::abs(arm) < c.param.jumpCornerTh_1 ? 3 - ends : 0;
    }
    word |= types[i] << 16;
    if (type != 0) {
      expected.push_back(plain::featureAt(profile[i], kLine, type));
    }
  }
  Line line = c.line;
  Features found;
  qo_getLineCornerFeature_BQ(line.data(), c.size(), kLine, c.limit, c.param, found);
  return compare(found, expected, line, marked);
}

bool compareByArms(const Case& c) {
  const auto profile = plain::profileOf(c.line, false, INFINITY, c.param.minEndingGap_z);
  const auto arms = plain::armsOf(profile, c.param.scale);
  const auto isFlat = [&](double arm) { return std::abs(arm) < c.param.jumpCornerTh_1; };
  const auto isSteep = [&](double arm) { return std::abs(arm) > c.param.jumpCornerTh_2; };
  Features expected;
  for (const int i : plain::peaksOf(profile, arms, 1, true, c.param.cornerTh, 2 * c.param.scale)) {
    const auto [valid, back, fore, turn, backZ, foreZ] = arms[i];
    const int type = isFlat(back) && isSteep(fore)   ? FEATURE_JUMP_FALL
                     : isFlat(fore) && isSteep(back) ? FEATURE_JUMP_RISE
                                                     : FEATURE_CORNER_OTHER;
    expected.push_back(plain::featureAt(profile[i], kLine, type));
  }
  Line line = c.line;
  Features found;
  ju_getLineCorerFeature(line, kLine, c.param, found);
  return compare(found, expected, line, c.line);
}

bool compareGloveArcs(const Case& c) {
  const SQO_gloveArcParam param = {c.param.scale, c.limit, c.param.cornerTh};
  Line line = c.line;
  Features found;
  ju_getLineGloveArcs(line, kLine, param, found);
  const auto arcs = plain::gloveArcs(plain::profileOf(c.line), kLine, param);
  return compare(found, c.size() < 10 ? Features() : arcs, line, c.line);
}

TEST(CornerFamily, FollowsThePlainRules) {
  constexpr bool (*kComparisons[])(const Case&) = {compareGeneral,  compareMasked,    comparePsm,
                                                   compareGround,   compareReference, compareByArms,
                                                   compareGloveArcs};
  std::mt19937 rng;
  std::vector<int> found(std::size(kComparisons));
  for (int round = 0; round < 1500; ++round) {
    const Case c = randomCase(rng);
    for (std::size_t k = 0; k < found.size(); ++k) {
      found[k] += kComparisons[k](c) ? 1 : 0;
      ASSERT_FALSE(HasFailure()) << "search " << k << ", round " << round;
    }
  }
  EXPECT_GT(*std::min_element(found.begin(), found.end()), 50);
}

}  // namespace
