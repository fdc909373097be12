#pragma once

#include <vector>

#include <scanline/conditioning.h>

/// The two steps of line segmentation.
namespace scanline::detail {

/// What becomes of `nPointIdx` of the samples of a line while it is cut.
enum class Stamps { kKeep, kClear };

/// Appends the runs of a line. The last run has its end as `value`, the others a label.
void cutIntoRuns(STesk3DPosition* line,
                 int count,
                 const SQO_lineSegParam& para,
                 Stamps stamps,
                 std::vector<SQO_RUN>& runs);

/// Appends the nearly straight pieces of a run.
void cutIntoPieces(const STesk3DPosition* line,
                   const SQO_RUN& run,
                   double maxDist,
                   std::vector<SQO_RUN>& pieces);

}  // namespace scanline::detail
