#include <algorithm>
#include <cstddef>
#include <vector>

#include <scanline/watershed.h>
#include "heightmap/flood_order.h"
#include "heightmap/padded_plane.h"
#include "heightmap/watershed_minima.h"

namespace {

using scanline::detail::PaddedPlane;
using scanline::detail::Place;

/// What an unlabelled pixel becomes: the label of its only labelled neighbour, a watershed pixel if
/// it has more, or what it was.
int flooded(const int* pixel, std::ptrdiff_t stride) {
  int count = 0;
  int label = 0;
  scanline::detail::lookAround(pixel, stride, [&](int marker) {
    count += marker > 0 ? 1 : 0;
    label = marker > 0 ? marker : label;
  });
  if (count == 0) {
    return *pixel;
  }
  return count == 1 ? label : scanline::detail::kWatershed;
}

void flood(const std::vector<Place>& order, PaddedPlane& labels) {
  for (std::size_t i = 0; i < order.size(); ++i) {
    if (order.size() - i > scanline::detail::kFetchAhead) {
      labels.prefetchAround(order[i + scanline::detail::kFetchAhead]);
    }
    int* pixel = labels.at(order[i]);
    if (*pixel <= 0) {
      *pixel = flooded(pixel, labels.stride());
    }
  }
}

}  // namespace

void watershed(SJU_waterShedImage& image) {
  // Within a square each pixel's crossed partner lies inside.
  const int side = std::min(image.width, image.height);
  if (side < 1) {
    return;
  }
  PaddedPlane labels(image.height, image.width);
  for (int r = 0; r < image.height; ++r) {
    std::copy_n(image.markers[r].data(), image.width, labels.row(r));
  }
  scanline::detail::ju_findWatershedMinima(image.gray, image.height, image.width, labels);
  flood(scanline::detail::floodOrder(image.gray, side, labels), labels);
  for (int r = 0; r < image.height; ++r) {
    std::copy_n(labels.row(r), image.width, image.markers[r].data());
  }
}
