// Computes crossings, angles, distances and foot points of lines in the x-y plane.
#include <cmath>

#include <scanline/geometry.h>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kQuarterTurn = 1.5707963267948966;

}  // namespace

STesk3DPoint computeLineCrossPt_abs(
    double a1, double b1, double c1, double a2, double b2, double c2) {
  const double x = (b1 * c2 - c1 * b2) / (a1 * b2 - b1 * a2);
  const double y = (a1 * c2 - c1 * a2) / (b1 * a2 - a1 * b2);
  return {x, y, 0.0};
}

double computeAngleDiff(double theta1, double theta2) {
  double diff = theta1 - theta2;
  if (0.0 > diff) {
    diff += 360.0;
  }
  return diff > 180.0 ? 360.0 - diff : diff;
}

void compute2ptLine(STesk3DPoint p1, STesk3DPoint p2, double* a, double* b, double* c) {
  compute2ptLine_2(p1.x, p1.y, p2.x, p2.y, a, b, c);
}

void compute2ptLine_2(double x1, double y1, double x2, double y2, double* a, double* b, double* c) {
  *a = y2 - y1;
  *b = x1 - x2;
  *c = x2 * y1 - x1 * y2;
}

void rotateLine45Deg(double a,
                     double b,
                     double /*c*/,
                     double x,
                     double y,
                     double* newA,
                     double* newB,
                     double* newC) {
  *newA = a + b;
  *newB = b - a;
  *newC = -*newA * x - *newB * y;
}

double getLineAngle(double a, double b, double /*c*/) {
  if (a == 0.0) {
    return 0.0;
  }
  if (b == 0.0) {
    return 90.0;
  }
  return (std::atan(-(a / b)) + kQuarterTurn) * 180.0 / kPi;
}

double compute2DLen(STesk3DPoint p1, STesk3DPoint p2) {
  const double dx = p1.x - p2.x;
  const double dy = p1.y - p2.y;
  return std::sqrt(dy * dy + dx * dx);
}

double computePtDistToLine(double x, double y, double a, double b, double c) {
  return std::abs(a * x + b * y + c) / std::sqrt(a * a + b * b);
}

STesk2DPointD ny_getFootPoint(double x, double y, double k, double b) {
  const double scale = k * k + 1;
  return {(x + k * y - k * b) / scale, (k * k * y + k * x + b) / scale};
}

STesk2DPointD ny_getFootPoint_abc(double x, double y, double a, double b, double c) {
  const double scale = a * a + b * b;
  return {(b * b * x - a * b * y - a * c) / scale, (a * a * y - a * b * x - b * c) / scale};
}
