#pragma once

/**
 * @file
 * The corner search: its stages, which nine extractors share, and its tuning.
 *
 * feature_records.h defines corners, arms and the turn angle. The stages are:
 *
 * 1. *Neighbours.* The backward neighbour of a sample is the first preceding sample at a distance
 *    of at least `scale` in the y-z plane, the forward neighbour the first following one. The
 *    search continues across holes. A sample that lacks a neighbour has no turn angle; the
 *    one-sided searches below take a missing arm's angle and the turn angle as 0 if the other arm
 *    exists.
 * 2. *Extrema.* A maximum is a sample where the turn angle stops growing and starts to shrink, from
 *    one sample with a turn angle to the next; a minimum is the reverse. On a plateau it is the
 *    last sample. Before the turn angle has changed once there is none. At the end of the line the
 *    last sample with a turn angle is one, whatever its sign, unless the last sample of all has a
 *    turn angle too, which occurs in one-sided searches only.
 * 3. *Selection.* An extremum with a turn angle below `cornerTh` is dropped. So is one with a
 *    greater extremum of the same kind in its window: from extremum to extremum in either
 *    direction, up to the first one farther away in y than the window. Equal extrema both stay.
 *    Both tests take maxima by their values and minima by their magnitudes.
 *
 * The searches differ in what they read, where neighbours may lie, and which extrema they keep:
 *
 * | Search    | Samples             | Neighbours                 | Extrema         | Window    |
 * |-----------|---------------------|----------------------------|-----------------|-----------|
 * | general   | measured            | anywhere                   | maxima          | 2 `scale` |
 * | masked    | measured, one label | nearer than 4 `scale`      | maxima          | 2 `scale` |
 * | PSM       | not holes           | anywhere                   | maxima          | 2 `scale` |
 * | by arms   | not holes           | in the same run            | positive maxima | 2 `scale` |
 * | by height | not holes           | in the same run, one-sided | maxima          | 2 `scale` |
 * | by ground | not holes           | in the same run, one-sided | negative minima | 2 `scale` |
 * | gaps      | not holes           | in the same run            | negative minima | `scale`   |
 * | jumps     | measured            | anywhere                   | maxima, minima  | 2 `scale` |
 * | arcs      | not holes           | in the same run            | none            | none      |
 *
 * They are, in this order, `qo_getLineCornerFeature`, `qo_maskData_getLineCornerFeature`,
 * `ju_getLineCornerFeature_PSM`, `ju_getLineCorerFeature`, `qo_getLineCornerFeature_BQ`,
 * `qo_getLineContourCornerFeature_groundMask_BQ`, `qo_getLineGapFeature`,
 * `qo_getLineJumpFeature_cornerMethod` and `ju_getRingArcFeature`.
 *
 * Degenerate input: a line or run that extends less than `scale` in the y-z plane has no corners.
 * With a `scale` of 0 or below the adjacent samples are the neighbours; with NaN there are none. A
 * sample with a NaN in y or z is no neighbour and has none. Equal y give an angle of plus or minus
 * 90 degrees.
 *
 * Cost: at most n log n in the number n of samples, whatever `scale` is, and also if y is NaN,
 * stands still or goes back and forth: samples nearer than `scale` are skipped in blocks. The
 * exception is a line whose samples keep alternating between places that lie closer than `scale` to
 * each other in a box with a longer diagonal: there it is n times the number of such samples in a
 * row. The selection is linear in the number of extrema, however many lie in one window.
 *
 * Method: the angle between two arms of fixed length at each point of a digital curve, with a
 * threshold and non-maximum suppression.
 */

/**
 * Tuning of the corner search. Lengths are in the unit of the samples, angles in degrees. The
 * meaning of a field depends on the search (see above for the names):
 *
 * | Field            | Search               | Meaning                                      |
 * |------------------|----------------------|----------------------------------------------|
 * | `minEndingGap`   | general              | segments closer than this in y are joined    |
 * |                  | by height, by ground | a step in y from this on starts a new run    |
 * |                  | jumps                | the corners of a jump are closer in y        |
 * |                  | all others           | no effect                                    |
 * | `minEndingGap_z` | general              | a step in z above this starts a new segment; |
 * |                  |                      | segments closer than this in z are joined    |
 * |                  | jumps                | z changes by more than this across a jump    |
 * |                  | masked               | not read                                     |
 * |                  | all others           | a step in z from this on starts a new run    |
 * | `scale`          | all                  | length of the arms in the y-z plane          |
 * | `cornerTh`       | by ground, gaps      | smallest magnitude of the turn angle         |
 * |                  | jumps                | smallest turn angle of a maximum, smallest   |
 * |                  |                      | magnitude of a minimum                       |
 * |                  | arcs                 | the turn of an arc exceeds this              |
 * |                  | all others           | smallest turn angle                          |
 * | `jumpCornerTh_1` | general, masked, PSM | the angle of a steep arm exceeds this        |
 * |                  | gaps, arcs           | not read                                     |
 * |                  | all others           | a flat arm's angle is below, in magnitude    |
 * | `jumpCornerTh_2` | general, masked, PSM | how far the other arm may go against a jump  |
 * |                  | by arms, jumps       | a steep arm's angle is above, in magnitude   |
 * |                  | all others           | not read                                     |
 */
struct SQO_cornerParam {
  double minEndingGap;    ///< Limit in y: joins segments, cuts runs, or limits the width of a jump.
  double minEndingGap_z;  ///< Limit in z: cuts segments or runs, or is the least height of a jump.
  double scale;           ///< Length of the arms in the y-z plane.
  double cornerTh;        ///< Smallest turn angle of a corner, or smallest turn of an arc.
  double jumpCornerTh_1;  ///< Steep arm (general, masked, PSM) or flat arm (others).
  double jumpCornerTh_2;  ///< Arm against a jump (general, masked, PSM) or steep arm (others).
};
