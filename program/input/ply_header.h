#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace program {

/// A type of a number in PLY.
struct PlyType {
  char kind = 'f';  ///< 'f', 'i' or 'u'.
  std::size_t size = 4;
};

struct PlyProperty {
  std::string name;
  PlyType type;
  bool isList = false;
  PlyType countType;  ///< Of a list.
};

struct PlyElement {
  std::string name;
  std::uint64_t count = 0;
  std::vector<PlyProperty> properties;

  /// The index of a property; -1 if there is none.
  [[nodiscard]] int find(const std::string& property) const;
};

/// What the header of a PLY file of an organised scan states.
struct PlyHeader {
  bool isText = false;
  bool isBigEndian = false;
  std::vector<PlyElement> elements;
  std::uint64_t rows = 0;  ///< By "obj_info num_rows", and the columns alike.
  std::uint64_t columns = 0;
  std::uint64_t dataAt = 0;

  [[nodiscard]] const PlyElement* find(const std::string& element) const;
};

/// Reads the header of a PLY file that is an organised scan: vertices with x, y and z, and as many
/// of them, or of the cells of its range grid, as rows times columns. All counts fit into the
/// length of the file. @throws Failure (badInput)
PlyHeader readPlyHeader(const std::string& path);

}  // namespace program
