#pragma once

#include <opencv2/core.hpp>
#include <vector>

namespace program {

/// The smallest rectangle of pixels around each label from 0 to `count`, one pixel wider on each
/// side; that of label 0, and of a label without pixels, is empty.
std::vector<cv::Rect> boxesOf(const cv::Mat& labels, int count);

/**
 * Straightens the lines between regions that touch: what is thin for its region and reaches along
 * another one is given to that. Where a bag bulges over a box, the flank of the bag is so steep
 * that the watershed may give strips of it to the box.
 *
 * @param labels  CV_32S, from 1 to `count`
 */
void straightenContacts(cv::Mat& labels, int count);

}  // namespace program
