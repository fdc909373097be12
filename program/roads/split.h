#pragma once

#include <vector>

#include "base/extent.h"
#include "base/parameters.h"
#include "base/progress.h"
#include "base/scan.h"

namespace program {

/// What tunes the split of a scan into objects.
struct SplitParams {
  double minHeight;  ///< What rises less than this over the belt belongs to the belt.
  double cut;        ///< A step in height from here on divides objects.
  double minWidth;   ///< Width of the narrowest object.
  double pixel;      ///< Side of a pixel of the map.
  double waist;      ///< A waist below this share of the smaller object's width divides objects.
};

/// Something that lies on the belt, in the coordinates of the levelled scan.
struct SplitObject {
  double x, y;            ///< Centre of the smallest rectangle around the outline.
  double labelX, labelY;  ///< That centre, or where the object is widest if it does not lie on it.
  double length;  ///< Long side of that rectangle, and about half a spacing beyond either end.
  double width;   ///< Its short side, likewise.
  double angle;   ///< From the x axis to the long side, in degrees above -90 and up to 90.
  double height;  ///< Of the top over the belt, above which only 2 % of the samples lie.
  double area;    ///< Enclosed by the outline, each sample taken as a cell of the scan.
  long long samples;
  std::vector<STesk3DPoint> outline;  ///< Outermost samples in turn, each once, not closed.
};

/// The objects of a scan, and what was left out.
struct SplitResult {
  std::vector<SplitObject> objects;  ///< In the order of x.
  int tooNarrow;                     ///< Pieces that are narrower than an object.
  long long outside;                 ///< Raised samples outside of the map.
};

/// Parts of the work that splitObjects() reports.
constexpr int kSplitSteps = 5;

void addSplitParameters(Parameters& parameters);

/**
 * Derives what the user has not given from the spacing and the noise of a levelled scan.
 *
 * @param roughness  root mean square distance of the belt's samples from its plane
 * @throws Failure (usage) for values that contradict one another
 */
SplitParams splitParams(Parameters& parameters,
                        const Scan& scan,
                        const Extent& extent,
                        double roughness);

/**
 * Finds what lies on a belt or a table, and divides what touches.
 *
 * @param scan       levelled; z is a distance
 * @param beltZ      z of the belt
 * @param extent     of the scan
 */
SplitResult splitObjects(const Scan& scan,
                         double beltZ,
                         const Extent& extent,
                         const SplitParams& params,
                         Progress& progress);

}  // namespace program
