#include "argument_lines.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <utility>

#include "argument_lists.h"

namespace binding {

namespace {

/// The row of a block that starts at a sample and has `stride` bytes from each to the next.
SampleRow rowOf(Block block, const Name& name, bool isWritten) {
  SampleRow row;
  row.size = static_cast<int>(block.shape[0]);
  row.data = reinterpret_cast<STesk3DPosition*>(block.data);
  if (row.size > 1 && block.strides[0] != static_cast<py::ssize_t>(sizeof(STesk3DPosition))) {
    if (isWritten) {
      failValue(name, "consecutive samples, since they are changed", "a view with other strides");
    }
    const std::string text = name.full() + " is a view with strides and was copied";
    const auto category = py::module_::import("scanline._core").attr("CopyWarning");
    if (PyErr_WarnEx(category.ptr(), text.c_str(), 1) != 0) {
      throw py::error_already_set();
    }
    copyFrom(Row{block.data, block.shape[0], block.strides[0]}, row.copy);
    row.data = row.copy.data();
  }
  row.block = std::move(block);
  return row;
}

/// Line `i` of a two-dimensional block.
Block lineOf(const Block& scan, py::ssize_t i) {
  Block line;
  line.owner = scan.owner;
  line.data = scan.data + i * scan.strides[0];
  line.shape[0] = scan.shape[1];
  line.strides[0] = scan.strides[1];
  return line;
}

[[noreturn]] void failShared(const Name& name) {
  failValue(name, "lines with memory of their own, since they are changed",
            "lines that share memory");
}

/// Refuses a list that holds memory of one array twice.
void checkNoOverlap(const std::vector<Block>& rows, std::size_t itemSize, const Name& name) {
  struct Range {
    const char* first;
    const char* end;
  };
  std::vector<Range> ranges;
  for (const Block& row : rows) {
    if (row.shape[0] > 0) {
      const char* first = row.data;
      const char* last = first + (row.shape[0] - 1) * row.strides[0];
      if (std::less<>()(last, first)) {
        std::swap(first, last);
      }
      ranges.push_back({first, last + itemSize});
    }
  }
  const auto before = [](const Range& a, const Range& b) {
    return std::less<>()(a.first, b.first);
  };
  std::sort(ranges.begin(), ranges.end(), before);
  const auto overlap = [](const Range& a, const Range& b) { return std::less<>()(b.first, a.end); };
  if (std::adjacent_find(ranges.begin(), ranges.end(), overlap) != ranges.end()) {
    failShared(name);
  }
}

/// Refuses an array whose steps may lead from different places to the same memory.
void checkNoOverlap(const Block& scan, py::ssize_t itemSize, const Name& name) {
  const auto reaches = [itemSize](py::ssize_t stride, py::ssize_t count, py::ssize_t otherStride) {
    return std::abs(otherStride) < std::abs(stride) * (count - 1) + itemSize;
  };
  if (scan.shape[0] > 1 && scan.shape[1] > 1 &&
      reaches(scan.strides[1], scan.shape[1], scan.strides[0]) &&
      reaches(scan.strides[0], scan.shape[0], scan.strides[1])) {
    failShared(name);
  }
}

void checkLineCount(std::size_t count, const Name& name) {
  if (count > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    failValue(name, "at most 2147483647 lines", std::to_string(count));
  }
}

}  // namespace

SampleRow sampleRow(const Source& source, bool isWritten) {
  return rowOf(checkedBlock(source.value, source.name, wanted<STesk3DPosition>(1, isWritten)),
               source.name, isWritten);
}

std::vector<Block> rowBlocks(const Source& source, const Wanted& wantedRow) {
  std::vector<Block> rows;
  if (py::isinstance<py::array>(source.value)) {
    Wanted wantedScan = wantedRow;
    wantedScan.dimensions = 2;
    const Block scan = checkedBlock(source.value, source.name, wantedScan);
    if (wantedRow.isWritten) {
      checkNoOverlap(scan, wantedRow.dtype.itemsize(), source.name);
    }
    for (py::ssize_t i = 0; i < scan.shape[0]; ++i) {
      rows.push_back(lineOf(scan, i));
    }
    return rows;
  }
  if (PyList_Check(source.value.ptr()) == 0 && PyTuple_Check(source.value.ptr()) == 0) {
    failKind(source.name, "a two-dimensional array or a list of lines", source.value);
  }
  for (const py::handle line : py::tuple(py::reinterpret_borrow<py::object>(source.value))) {
    const Name place{nullptr, &source.name, static_cast<py::ssize_t>(rows.size())};
    rows.push_back(checkedBlock(line, place, wantedRow));
  }
  checkLineCount(rows.size(), source.name);
  if (wantedRow.isWritten) {
    checkNoOverlap(rows, static_cast<std::size_t>(wantedRow.dtype.itemsize()), source.name);
  }
  return rows;
}

Argument<In, STesk3DLaserLine*>::Argument(const Source& source) {
  std::vector<Block> blocks = rowBlocks(source, wanted<STesk3DPosition>(1, false));
  rows.reserve(blocks.size());
  for (Block& block : blocks) {
    rows.push_back(rowOf(std::move(block), source.name, false));
    lines.push_back({rows.back().data, rows.back().size, 0});
  }
  lines.push_back({nullptr, -1, 0});  // the end, for checks of functions without a count
}

Argument<OneLine, STeskXYZRGBDLaserLine*>::Argument(const Source& source)
    : block(checkedBlock(source.value, source.name, wanted<STeskXYZRGBDPoint>(1, true))),
      line{reinterpret_cast<STeskXYZRGBDPoint*>(block.data), static_cast<int>(block.shape[0])} {
  if (line.nPointCnt > 1 &&
      block.strides[0] != static_cast<py::ssize_t>(sizeof(STeskXYZRGBDPoint))) {
    failValue(source.name, "consecutive points, since they are changed",
              "a view with other strides");
  }
}

}  // namespace binding
