#pragma once

/**
 * @file
 * Rigid transforms between corresponding points in space. geometry.h describes which results
 * are the same bits on every machine.
 */

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/export.h>

/**
 * Estimates the rotation and the translation that map one list of points onto another with the
 * smallest sum of squared distances.
 *
 * `pts2[i]` is close to R `pts1[i]` + T. R is always a proper rotation: for a mirror image it is
 * the best fit without a reflection.
 *
 * | Degenerate input                         | Result                                    |
 * |------------------------------------------|-------------------------------------------|
 * | fewer than 3 points, or collinear points | one of the rotations that fit             |
 * | empty lists                              | centroids and @p T NaN, @p R the identity |
 * | coordinates that are not finite          | @p R and @p T NaN                         |
 *
 * @param pts1    points to map from; their number counts
 * @param pts2    the corresponding points to map to; surplus points are not read
 * @param R       replaced by a new 3 x 3 matrix of `CV_64F`: the rotation
 * @param T       replaced by a new 3 x 1 matrix of `CV_64F`: `center2` - R `center1`
 * @param center1 set to the centroid of @p pts1
 * @param center2 set to the centroid of the points used of @p pts2
 * @pre @p pts2 holds at least as many points as @p pts1.
 * @throw std::exception  if memory runs out; @p R, @p T and the centroids are unchanged
 *
 * Cost: linear in the points.
 *
 * Method: Kabsch, "A solution for the best rotation to relate two sets of vectors" (1976), by a
 * singular value decomposition of the cross-covariance, with the correction for reflections of
 * Umeyama (1991); no scale is estimated.
 *
 * @code
 * cv::Mat R, T;
 * cv::Point3d center1, center2;
 * caculateRT(from, to, R, T, center1, center2);
 * cv::Point3d mapped;
 * pointRT(R, T, center1, center2, from.front(), mapped);  // close to to.front()
 * @endcode
 */
SCANLINE_API void caculateRT(const std::vector<cv::Point3_<double>>& pts1,
                             const std::vector<cv::Point3_<double>>& pts2,
                             cv::Mat& R,
                             cv::Mat& T,
                             cv::Point3_<double>& center1,
                             cv::Point3_<double>& center2);

/**
 * Maps a point with a result of caculateRT(): R (`pt` - `center1`) + `center2`.
 *
 * @param R       the rotation, 3 x 3; may be a view into a larger matrix
 * @param T       not read, since the centroids carry the translation
 * @param center1 centroid of the points mapped from
 * @param center2 centroid of the points mapped to
 * @param pt      the point
 * @param out     set to the mapped point; may be @p pt
 * @pre @p R is of `CV_64F` and at least 3 x 3.
 *
 * Cost: constant.
 */
SCANLINE_API void pointRT(const cv::Mat& R,
                          const cv::Mat& T,
                          const cv::Point3_<double>& center1,
                          const cv::Point3_<double>& center2,
                          const cv::Point3_<double>& pt,
                          cv::Point3_<double>& out);
