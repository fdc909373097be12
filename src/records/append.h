#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include <scanline/feature_records.h>

/// The last step of functions with lists as outputs. A failing allocation leaves the caller's lists
/// unchanged.
namespace scanline::detail {

/// Appends `found` to a list. If memory runs out the list is unchanged.
template <typename Record>
void append(const std::vector<Record>& found, std::vector<Record>& list) {
  list.insert(list.end(), found.begin(), found.end());
}

/// Reserves room for `count` more records. The list still grows geometrically.
template <typename Record>
void makeRoom(std::size_t count, std::vector<Record>& list) {
  if (list.capacity() - list.size() < count) {
    list.reserve(list.size() + std::max(list.size(), count));
  }
}

/// Appends to both lists of a record. If memory runs out both are unchanged.
inline void append(const std::vector<SQO_basicFeature1D>& features,
                   const std::vector<SQO_basicFeature1D>& endings,
                   SQO_lineFeature& record) {
  makeRoom(features.size(), record.features);
  append(endings, record.endings);
  append(features, record.features);
}

}  // namespace scanline::detail
