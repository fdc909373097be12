#pragma once

/**
 * @file
 * Extractors of features on one scan line. docs/features.md helps to choose one.
 *
 * What all of them share:
 *
 * - They see a line as a profile in the y-z plane. x is copied into the features and otherwise used
 *   only for the width of a gap and for the distance of a corner to the ground.
 * - Features are appended to the output lists, which are never cleared, as a rule in line order.
 *   Only `qo_getLineLVFeature` also looks at what a list held before, to merge close jumps.
 * - `lineIdx` is copied into the features for the growers of trees.h. Nothing else depends on it,
 *   except that it selects a column of a label image.
 * - Which samples take part is decided by z alone. Steps are measured from one of them to the next;
 *   other samples are skipped unless documented otherwise:
 *
 * | Samples that take part         | z = 0.0001 | z = NaN | Extractors                         |
 * |--------------------------------|------------|---------|------------------------------------|
 * | measured: `z > 0.0001`         | no         | no      | general, masked, jumps by corners, |
 * |                                |            |         | dents, tubes, glove arcs           |
 * | not holes: not `z <= 0.0001`   | no         | yes     | other searches of corner_param.h,  |
 * |                                |            |         | raised runs                        |
 * | valid: not `z < 0.0001`        | yes        | yes     | down jumps, local peaks, L and V   |
 * | corners: valid; arms: measured | corners    | no      | right angles                       |
 *
 * @pre Pointers refer to `dataSize` samples (anything if `dataSize` is below 1) or to one record.
 *      Lists passed to one call are different objects, and none is part of another.
 *
 * If memory runs out a function throws `std::bad_alloc` and leaves its arguments as documented with
 * it. Nothing else is thrown. Functions keep no state: calls may run at the same time on different
 * lines and lists, and on one line if both only read it.
 */

#include <scanline/line_corners.h>
#include <scanline/line_peaks.h>
#include <scanline/line_shapes.h>
