// Times the calls of bench_calls.py in C++: plain_calls SCAN_FILE LINES SAMPLES. Prints the name of
// each and the shortest time in microseconds.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <vector>

#include <scanline/scanline.h>

namespace {

using Line = std::vector<STesk3DPosition>;
using Scan = std::vector<Line>;

constexpr SQO_outlierFilterParam kOutlier = {1.0, 5.0};
constexpr SQO_cornerParam kCorner = {2.0, 5.0, 1.6, 45.0, 60.0, 30.0};
constexpr SQO_treeGrowParam kGrow = {2.0, 5.0, 5, 4.0, 20.0, 20.0};
constexpr double kLevel[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr int kSmoothWindow = 5;

double secondsOf(clockid_t clock) {
  timespec time = {};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <typename Call>
void time(const char* name, int repeats, clockid_t clock, const Call& call) {
  double best = 1e9;
  for (int i = 0; i < repeats; ++i) {
    const double start = secondsOf(clock);
    call();
    best = std::min(best, secondsOf(clock) - start);
  }
  std::printf("%s %.3f\n", name, 1e6 * best);
}

Scan readScan(const char* file, int lines, int samples) {
  std::ifstream in(file, std::ios::binary);
  Scan scan(static_cast<std::size_t>(lines), Line(static_cast<std::size_t>(samples)));
  for (Line& line : scan) {
    in.read(reinterpret_cast<char*>(line.data()),
            static_cast<std::streamsize>(line.size() * sizeof(STesk3DPosition)));
  }
  return in ? scan : Scan();
}

void timeLine(const Line& raw) {
  Line line = raw;
  const int size = static_cast<int>(line.size());
  STesk3DLaserLine view = {line.data(), size, 0};
  time("lineDataRT", 3000, CLOCK_MONOTONIC, [&] { lineDataRT(&view, kLevel, 0.0); });
  time("qo_lineDataRemoveOutlier_changeOriginData", 3000, CLOCK_MONOTONIC,
       [&] { qo_lineDataRemoveOutlier_changeOriginData(line.data(), size, kOutlier); });
  time("qo_getLineDownJumps", 3000, CLOCK_MONOTONIC, [&] {
    std::vector<SQO_basicFeature1D> jumps;
    qo_getLineDownJumps(line.data(), size, 0, 2.0, jumps);
  });
  time("lineDataRT_vector", 3000, CLOCK_MONOTONIC, [&] { lineDataRT_vector(line, kLevel, 0.0); });
  time("ju_vectorDataRemoveOutlier_overwrite", 3000, CLOCK_MONOTONIC,
       [&] { ju_vectorDataRemoveOutlier_overwrite(line, kOutlier); });
  time("qo_lineDataSmoothing", 3000, CLOCK_MONOTONIC, [&] {
    Line smooth;
    qo_lineDataSmoothing(line, kSmoothWindow, smooth);
  });
}

/// A scan from raw lines to trees.
void timeRoad(const Scan& scan) {
  time("road", 15, CLOCK_THREAD_CPUTIME_ID, [&] {
    std::vector<SQO_featureTree> trees;
    Line line;
    Line smooth;
    for (std::size_t l = 0; l < scan.size(); ++l) {
      line = scan[l];
      STesk3DLaserLine view = {line.data(), static_cast<int>(line.size()), 0};
      lineDataRT(&view, kLevel, 0.0);
      qo_lineDataRemoveOutlier_changeOriginData(line.data(), view.nPositionCnt, kOutlier);
      qo_lineDataSmoothing(line, kSmoothWindow, smooth);
      SQO_lineFeature found = {};
      qo_getLineCornerFeature(smooth.data(), view.nPositionCnt, static_cast<int>(l), kCorner,
                              &found);
      qo_lineFeaturesGrowing(static_cast<int>(l), l + 1 == scan.size(), found.features, trees,
                             kGrow);
    }
  });
}

}  // namespace

int main(int argc, char** argv) {
  const Scan scan = argc == 4 ? readScan(argv[1], std::atoi(argv[2]), std::atoi(argv[3])) : Scan();
  if (scan.empty()) {
    std::fprintf(stderr, "plain_calls: no scan; see bench_calls.py\n");
    return 1;
  }
  timeLine(scan[0]);
  timeRoad(scan);
  return 0;
}
