#pragma once

#include <vector>

#include <scanline/conditioning.h>

/// The two steps of line segmentation.
namespace scanline::detail {

/// Whether `nPointIdx` of the samples of a line is kept or set to 0 while it is cut.
enum class Stamps { kKeep, kClear };

/// Appends the runs of connected samples of a line. The `value` of the last run is its end, that of
/// the others a label.
void cutIntoRuns(STesk3DPosition* line,
                 int count,
                 const SQO_lineSegParam& para,
                 Stamps stamps,
                 std::vector<SQO_RUN>& runs);

/// Appends the nearly straight pieces of a run, in line order.
void cutIntoPieces(const STesk3DPosition* line,
                   const SQO_RUN& run,
                   double maxDist,
                   std::vector<SQO_RUN>& pieces);

}  // namespace scanline::detail
