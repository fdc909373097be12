#pragma once

/**
 * @file
 * Calibration of a scanner against a reference plane, and levelling of scan lines with the result.
 *
 * A scan of a reference plane shows the plane at some tilt. A calibration finds the rotation that
 * levels it (plane_calibration.h). From then on every line is levelled by one matrix product per
 * sample, so that the plane lies at one constant height, and what lies beyond a chosen height is
 * cut away (levelling.h).
 *
 * All matrices are rotations of column vectors about the origin of the scan coordinates, stored row
 * by row. There are no error codes: the result shows what could not be found, as documented for
 * each function.
 *
 * **The same bits on every machine.** Levelling and the rotations between directions use nothing
 * but additions, products, quotients and square roots in a fixed order, so they give the same bits
 * on every machine with IEEE 754 doubles. The exceptions are:
 *
 * - rotationMatrixToEulerZYX() and eulerToRotationMatrixZYX(): `asin`, `atan2`, `sin` and `cos` of
 *   the C library. It may choose an implementation by the processor, with or without fused
 *   operations, so the last bit may differ between machines.
 * - teskCaculateLaserPlane(), and with it all searches for a plane: the sums over the points are in
 *   a fixed order, but the inverse and the product of 3 x 3 matrices are those of OpenCV, so their
 *   last bits depend on its version and build.
 */

#include <scanline/levelling.h>
#include <scanline/plane_calibration.h>
