#include "profiles.h"

#include <cmath>

#include "noise.h"

namespace examples {
namespace {

constexpr double kPi = 3.14159265358979323846;

bool isWithin(const STesk3DPosition& sample, double yMin, double yMax) {
  return sample.pt3D.y >= yMin && sample.pt3D.y <= yMax;
}

/// Samples the way through the corners; `lengthOf` tells how long one straight piece counts.
template <typename LengthOf>
Line sampled(const Corners& corners, double step, LengthOf lengthOf) {
  Line line;
  double next = 0.0;
  double passed = 0.0;
  for (std::size_t k = 1; k < corners.size(); ++k) {
    const ProfilePoint& a = corners[k - 1];
    const ProfilePoint& b = corners[k];
    const double length = lengthOf(a, b);
    for (; next <= passed + length + 1e-9; next += step) {
      const double share = (next - passed) / length;
      line.push_back({0, {0.0, a.y + share * (b.y - a.y), a.z + share * (b.z - a.z)}});
    }
    passed += length;
  }
  return line;
}

}  // namespace

Line alongY(const Corners& corners, double step) {
  return sampled(corners, step,
                 [](const ProfilePoint& a, const ProfilePoint& b) { return b.y - a.y; });
}

Line alongProfile(const Corners& corners, double step) {
  return sampled(corners, step, [](const ProfilePoint& a, const ProfilePoint& b) {
    return std::hypot(b.y - a.y, b.z - a.z);
  });
}

void addArch(Line& line, double centre, double halfWidth, double height) {
  for (STesk3DPosition& sample : line) {
    const double share = (sample.pt3D.y - centre) / halfWidth;
    if (std::abs(share) < 1.0) {
      sample.pt3D.z -= height * std::sqrt(1.0 - share * share);
    }
  }
}

void addBump(Line& line, double centre, double halfWidth, double height) {
  for (STesk3DPosition& sample : line) {
    const double share = (sample.pt3D.y - centre) / halfWidth;
    if (std::abs(share) < 1.0) {
      sample.pt3D.z -= height * 0.5 * (1.0 + std::cos(kPi * share));
    }
  }
}

void blank(Line& line, double yMin, double yMax) {
  for (STesk3DPosition& sample : line) {
    if (isWithin(sample, yMin, yMax)) {
      sample.pt3D.z = 0.0;
    }
  }
}

void roughen(Line& line, double deviation) {
  constexpr std::uint64_t kSeed = 17;
  Noise noise(kSeed);
  for (STesk3DPosition& sample : line) {
    if (isMeasured(sample)) {
      sample.pt3D.z += deviation * noise.bell();
    }
  }
}

void label(Line& line, double yMin, double yMax, int label) {
  for (STesk3DPosition& sample : line) {
    if (isWithin(sample, yMin, yMax)) {
      sample.nPointIdx = label;
    }
  }
}

void numberSamples(Line& line) {
  int index = 0;
  for (STesk3DPosition& sample : line) {
    sample.nPointIdx = index++;
  }
}

}  // namespace examples
