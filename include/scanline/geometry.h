#pragma once

/**
 * @file
 * Formulas on lines in the plane, least-squares fits and rigid transforms.
 *
 * Nothing checks for degenerate input unless documented otherwise: a division by zero gives the
 * infinity or the NaN of floating-point arithmetic. Where a formula would divide by zero in exact
 * arithmetic, rounding often leaves a tiny divisor instead, and the results are then finite but
 * meaningless. So a finite result does not prove that the input was sound; test the input.
 *
 * **The same bits on every machine.** Sums run in the order of the points and expressions are
 * evaluated as they are written, without contraction to fused operations. With IEEE 754 doubles the
 * results are therefore the same to the last bit wherever nothing but these operations and square
 * roots are involved. The exceptions are:
 *
 * - getLineAngle(): the `atan` of the C library. It may choose an implementation by the processor,
 *   with or without fused operations, so the last bit may differ between machines.
 * - leastSquareParabolaFitEigen() and fitLine3DLeastSquares(), with its `center`: Eigen orders the
 *   sums by the width of the vector instructions that the library was compiled for, and uses fused
 *   operations if they were enabled. Results also depend on the version of Eigen.
 * - `R` and `T` of caculateRT(): the version of Eigen, and fused operations if they were enabled.
 *
 * So one build of the library gives the same bits on all processors that run it, except for
 * getLineAngle().
 */

#include <scanline/fits.h>
#include <scanline/line_formulas.h>
#include <scanline/rigid_transform.h>
