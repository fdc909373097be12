#pragma once

/**
 * @file
 * Arcs, tubes and raised runs of one scan line; line_features.h describes what all extractors
 * share.
 */

#include <vector>

#include <scanline/corner_param.h>
#include <scanline/export.h>
#include <scanline/feature_records.h>
#include <scanline/line_peaks.h>
#include <scanline/scan_records.h>

namespace cv {
class Mat;
}

/**
 * Finds ring arcs: rows of samples at each of which the profile turns away from the sensor, as on a
 * bead.
 *
 * Runs are cut by steps in z of `minEndingGap_z` or more, not by holes, and arms stay inside them.
 * An arc is an unbroken row of samples of a run with a turn angle below 0; a sample without arms
 * ends it. It is reported if it turns by more than `cornerTh` degrees, from the backward angle of
 * its first sample to the forward angle of its last one, and the distance of the two in the y-z
 * plane lies within @p ringArcWidth. If neither the sample before the arc nor the one after it has
 * arms, the whole run is reported instead: on a run that is one arc this adds the samples at both
 * ends, which are too close to them to have arms.
 *
 * @param[in,out] lineData      the samples of the line, empty or not; `nPointIdx` of each becomes
 *                              its index
 * @param lineIdx               index of the line
 * @param cornerPara            tuning; only `minEndingGap_z`, `scale` and `cornerTh` are read
 * @param ringArcWidth          limits of the chord in the y-z plane, both inclusive
 * @param[in,out] line_ringArcs arcs are appended; `segValue` is the turn in degrees
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_ringArcs are unchanged
 *
 * Cost: see corner_param.h.
 *
 * @code
 * SQO_cornerParam param = {0.0, 5.0, 2.0, 60.0, 0.0, 0.0};
 * std::vector<SJU_segFeature> arcs;
 * ju_getRingArcFeature(line, lineIdx, param, {8.0, 20.0}, arcs);
 * @endcode
 */
SCANLINE_API void ju_getRingArcFeature(std::vector<STesk3DPosition>& lineData,
                                       int lineIdx,
                                       SQO_cornerParam cornerPara,
                                       STeskRangeD ringArcWidth,
                                       std::vector<SJU_segFeature>& line_ringArcs);

/**
 * Finds tubes: narrow runs of continuous data with a local peak.
 *
 * 1. *Runs.* A run consists of successive measured samples, and continues across a hole whose two
 *    sides are less than `maxGap_y` apart in y. A z of NaN ends it like a hole. A z of 0.0001 does
 *    too, but counts as a sample of a run that continues across it.
 * 2. *Tubes.* A run is a tube if its ends are less than 4 * @p widthUnit apart in y and z turns
 *    from falling to rising anywhere in it. (The smallest of its minima is a peak of
 *    `qo_getLineLocalPeaks` at any `scale`.)
 * 3. *Joining.* Two successive tubes become one if the sample after the first and the sample before
 *    the second have the same label above 0. Neither the width of the result nor what lies between
 *    matters. A third tube does not join them.
 *
 * The last tube of a line is reported only if it was joined to the one before it, so a line needs
 * two tubes to report one.
 *
 * @param[in,out] lineData      the samples of the line. In each run of two samples or more
 *                              `nPointIdx` becomes the index inside the run, in its holes as well.
 * @param dataSize              number of samples; below 1 nothing is found
 * @param lineIdx               index of the line, and of its column in @p labelImage
 * @param widthUnit             a quarter of the limit of the width in y, which is strict
 * @param slopeParam            tuning; only `maxGap_y` has an effect
 * @param[in,out] line_features tubes are appended, with `segState` 0, the sample nearest in y to
 *                              the middle of both ends in `midPtIdx` and `midPt`, the distance of
 *                              the ends in y in `width`, and the smallest z in `height`. The
 *                              earliest of equal samples is taken.
 * @param labelImage            labels, one row for each sample and one column for each line; 0 and
 *                              below are no labels. It may be a view of a larger image. Only read.
 * @pre @p labelImage has the type `CV_32S`, at least @p dataSize rows and more than @p lineIdx
 *      columns. This is not checked.
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_features are unchanged
 *
 * Cost: linear in the number of samples.
 *
 * @code
 * cv::Mat labels = cv::Mat::zeros(static_cast<int>(line.size()), lineIdx + 1, CV_32S);
 * SQO_slopeParam param = {0.0, 0.0, 0.0, 5.0};
 * std::vector<SQO_featureSemiCircle> tubes;
 * qo_getLineUpperSemiCircleFeature(line.data(), labels.rows, lineIdx, 20.0, param, tubes, labels);
 * @endcode
 */
SCANLINE_API void qo_getLineUpperSemiCircleFeature(
    STesk3DPosition* lineData,
    int dataSize,
    int lineIdx,
    double widthUnit,
    SQO_slopeParam slopeParam,
    std::vector<SQO_featureSemiCircle>& line_features,
    cv::Mat& labelImage);

/**
 * Tuning of the search for glove arcs.
 */
struct SQO_gloveArcParam {
  double scale;         ///< Length of the arms in the y-z plane.
  double armLen;        ///< Length along the line of either flank of an arc.
  double minTurnAngle;  ///< Smallest turn of an arc in degrees, inclusive.
};

/**
 * Finds glove arcs: places of greatest z whose flanks turn strongly over a given length.
 *
 * A *summit* is a measured sample that has the greatest z from its backward to its forward
 * neighbour, inclusive: the first samples at least `scale` away in the y-z plane, or the ends
 * of the line. On a plateau only its first sample is a summit.
 *
 * Its turn is the greatest forward angle on the flank before it, at least 0, minus the smallest on
 * the flank after it, which includes the summit itself. A sample without both neighbours has the
 * forward angle 0. Either flank is `armLen` long, as the sum of the distances from sample to sample
 * in the y-z plane, or ends with the line; the sample at which that length is reached belongs to
 * the flank before the summit, but not to the one after it.
 *
 * @param lineData               the samples of the line; only read. With fewer than 10, measured or
 *                               not, nothing is found.
 * @param lineIdx                index of the line
 * @param gloveArcPara           tuning
 * @param[in,out] line_gloveArcs a `FEATURE_PEAK` is appended for each summit that turns by
 *                               `minTurnAngle` or more; `featureValue` is the turn in degrees
 * @throw std::bad_alloc  if memory runs out; @p line_gloveArcs is unchanged
 *
 * Cost: that of the corner search in corner_param.h, plus the number of summits times the samples
 * on their flanks: with an `armLen` beyond the line, the number of summits times that of samples.
 *
 * @code
 * SQO_gloveArcParam param = {3.0, 15.0, 60.0};
 * std::vector<SQO_basicFeature1D> arcs;
 * ju_getLineGloveArcs(line, lineIdx, param, arcs);
 * @endcode
 */
SCANLINE_API void ju_getLineGloveArcs(std::vector<STesk3DPosition>& lineData,
                                      int lineIdx,
                                      SQO_gloveArcParam gloveArcPara,
                                      std::vector<SQO_basicFeature1D>& line_gloveArcs);

/**
 * Tuning of the search for raised runs.
 */
struct SQO_raisedFeatureParam {
  double minJumpZ;  ///< Change of z that a flank exceeds, in the unit of the samples.
  double minJumpK;  ///< Magnitude of dz / dy that a flank exceeds.
  double minWidth;  ///< Smallest width of a run in y, inclusive.
  double maxWidth;  ///< Largest width of a run in y, inclusive.
};

/**
 * Finds raised runs, which begin after a steep fall of z and end before the next steep rise.
 *
 * A flank is a step from one sample that is not a hole to the next one that exceeds both `minJumpZ`
 * and `minJumpK`; equal y make it steep. What a flank does depends on what came before:
 *
 * | Flank | Last flank before it               | Effect                                        |
 * |-------|------------------------------------|-----------------------------------------------|
 * | fall  | any or none                        | a run begins at the sample after the step     |
 * | rise  | fall                               | the run ends at the sample before the step    |
 * | rise  | rise or none, another step between | a run from sample 0 to the sample before ends |
 * | rise  | rise or none, no step between      | nothing                                       |
 *
 * A run is reported if its width is within the limits. Sample 0 begins a run in the third row even
 * if it is a hole. A run without a rise after it is dropped.
 *
 * A NaN in z is no hole: the step to it is no flank, and the step from it is ignored, so a run does
 * not extend to the sample after it.
 *
 * @param[in,out] lineData            the samples of the line, empty or not; `nPointIdx` of each
 *                                    becomes its index
 * @param lineIdx                     index of the line
 * @param raisedFeaturePara           tuning
 * @param[in,out] line_raisedFeatures runs are appended; `segValue` is the width in y
 * @throw std::bad_alloc  if memory runs out; @p lineData and @p line_raisedFeatures are unchanged
 *
 * Cost: linear in the number of samples.
 *
 * @code
 * SQO_raisedFeatureParam param = {1.5, 1.0, 5.0, 40.0};
 * std::vector<SJU_segFeature> raised;
 * ju_getLineRaisedFeature(line, lineIdx, param, raised);
 * @endcode
 */
SCANLINE_API void ju_getLineRaisedFeature(std::vector<STesk3DPosition>& lineData,
                                          int lineIdx,
                                          SQO_raisedFeatureParam raisedFeaturePara,
                                          std::vector<SJU_segFeature>& line_raisedFeatures);
