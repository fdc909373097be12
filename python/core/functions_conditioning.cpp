#include "checks.h"
#include "define.h"
#include "functions.h"

namespace binding {

namespace {

using Line = std::vector<STesk3DPosition>;

void checkLines(std::vector<Line>& scanLines, SQO_outlierFilterParam /*limits*/, int* /*errCode*/) {
  require(!scanLines.empty(), "scanLines", "at least one line", "none");
}

void checkRun(SQO_RUN run, Line& lineData, double maxDist, std::vector<SQO_RUN>& /*segs*/) {
  const auto size = static_cast<std::int64_t>(lineData.size());
  require(run.start >= 0 && run.len >= 0 && std::int64_t{run.start} + run.len <= size, "run",
          "a run on the line of " + std::to_string(size) + " samples",
          std::to_string(run.len) + " samples from " + std::to_string(run.start));
  requireAbove0(maxDist, "maxDist");
}

void checkPieces(Line& /*lineData*/,
                 int /*lineIdx*/,
                 STeskRangeD /*lenRange*/,
                 SQO_lineSegParam lineSegPara,
                 std::vector<SQO_featureSemiCircle>& /*bestSegs*/,
                 std::vector<SQO_featureSemiCircle>& /*otherSegs*/) {
  requireAbove0(lineSegPara.maxDist, "lineSegPara.maxDist");
}

}  // namespace

void defineConditioning(py::module_& m) {
  SCANLINE_DEFINE(m, qo_lineDataSmoothing, In, In, Out);
  SCANLINE_DEFINE(m, qo_lineSegSmoothing, In, In, In, In, Out);
  SCANLINE_DEFINE(m, qo_lineDataRemoveOutlier, In, Count, In, Out, Out);
  SCANLINE_DEFINE(m, qo_lineDataRemoveOutlier_changeOriginData, InOut, Count, In);
  SCANLINE_DEFINE(m, ju_vectorDataRemoveOutlier_overwrite, InOut, In);
  SCANLINE_DEFINE(m, qo_lineDataRemoveOutlier_ptDistMethod, In, Count, In, Out, Out);
  SCANLINE_DEFINE_CHECKED(m, ju_noiseFilter, checkLines, InOut, In, Out);
  SCANLINE_DEFINE(m, ju_getLineDataIntervals, InOut, In, Out);
  SCANLINE_DEFINE_CHECKED(m, split, checkRun, In, In, In, Out);
  SCANLINE_DEFINE_CHECKED(m, ju_surfaceLineSegment, checkPieces, InOut, In, In, In, Out, Out);
}

}  // namespace binding
