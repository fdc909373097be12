#pragma once

#include <cstddef>
#include <memory>

namespace scanline::detail {

/// An array of unset elements: unlike a vector, it is not filled first.
template <typename Element>
std::unique_ptr<Element[]> newArray(std::size_t count) {
  return std::unique_ptr<Element[]>(new Element[count]);
}

}  // namespace scanline::detail
