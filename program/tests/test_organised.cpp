#include <cmath>
#include <vector>

#include "support.h"

namespace program {
namespace {

class Organised : public FolderTest {};

std::string npy(const std::string& dictionary, const std::string& values) {
  const std::string text = dictionary + "\n";
  return std::string("\x93NUMPY\x01\x00", 8) + bytesOf(static_cast<std::uint16_t>(text.size())) +
         text + values;
}

std::string npyOf(const std::string& type, const std::string& shape, const std::string& values) {
  return npy("{'descr': '" + type + "', 'fortran_order': False, 'shape': (" + shape + "), }",
             values);
}

template <typename Value>
std::string listOf(const std::vector<double>& values, bool isReversed = false) {
  std::string bytes;
  for (const double value : values) {
    bytes += bytesOf(static_cast<Value>(value), isReversed);
  }
  return bytes;
}

TEST_F(Organised, ReadsNpyOfAllTypes) {
  const std::vector<double> z = {5, 0, 7, 8};
  const std::string range = "[0,0,5 -][1,0,7 1,1,8]";
  const std::string contents[] = {
      npyOf("<f4", "2, 2", listOf<float>(z)),
      npyOf(">f4", "2, 2", listOf<float>(z, true)),
      npyOf("<f8", "2, 2", listOf<double>(z)),
      npyOf(">f8", "2, 2", listOf<double>(z, true)),
      npyOf("<u2", "2, 2", listOf<std::uint16_t>(z)),
      npyOf(">i2", "2, 2", listOf<std::int16_t>(z, true)),
  };
  for (const std::string& content : contents) {
    EXPECT_EQ(textOf(load(optionsFor(write("a.npy", content))).scan), range)
        << content.substr(10, 60);
  }
  const std::string points = npyOf("<f8", "1, 2, 3", listOf<double>({0, 0, 5, 0, 1, 6}));
  EXPECT_EQ(textOf(load(optionsFor(write("a.npy", points))).scan), "[0,0,5 0,1,6]");
}

TEST_F(Organised, RefusesNpy) {
  struct Bad {
    std::string content;
    const char* message;
  };
  const std::string four = listOf<float>({5, 6, 7, 8});
  const Bad table[] = {
      {"not numpy", "is no NPY file"},
      {std::string("\x93NUMPY\x01\x00\xFF\xFF", 10), "cut short in its header"},
      {std::string("\x93NUMPY\x02\x00\xFF\xFF\xFF\xFF", 12), "cut short in its header"},
      {npy("{'descr': '<f4'}", four), "header cannot be read"},
      {npy("{'descr': '<f4', 'shape': (2, 2)} + evil()", four), "header cannot be read"},
      {npy(std::string(9000, '('), four), "header cannot be read"},
      {npyOf("|O", "2, 2", four), "type '|O', not of floats"},
      {npyOf("<i8", "2, 2", four), "type '<i8', not of floats"},
      {npy("{'descr': [('x', '<f4')], 'fortran_order': False, 'shape': (2, 2), }", four),
       "not of floats"},
      {npy("{'descr': '<f4', 'fortran_order': True, 'shape': (2, 2), }", four),
       "ascontiguousarray"},
      {npyOf("<f4", "4,", four), "its array has the shape (4), not"},
      {npyOf("<f4", "2, 2, 4", four), "has the shape (2, 2, 4), not"},
      {npyOf("<f4", "2, 3", four), "does not match the shape (2, 3)"},
      {npyOf("<f4", "2, 2", four + "x"), "does not match the shape"},
      {npyOf("<f4", "0, 0", ""), "does not match the shape"},
      {npyOf("<f4", "4294967296, 4294967297", four), "does not match the shape"},
      {npyOf("<f4", "99999999999999999999, 1", four), "header cannot be read"},
      {npyOf("<f4", "2, 2", listOf<float>({0, std::nan(""), 1e30, 0})), "holds no measurement"},
  };
  for (const Bad& bad : table) {
    SCOPED_TRACE(bad.message);
    expectPart(failureOf(optionsFor(write("a.npy", bad.content))), bad.message);
  }
}

const std::string kXyz = "property float x\nproperty float y\nproperty float z\n";
const std::string kSize = "obj_info num_cols 2\nobj_info num_rows 2\n";

std::string ply(const std::string& format, const std::string& rest) {
  return "ply\nformat " + format + " 1.0\ncomment made by hand\n" + rest;
}

TEST_F(Organised, ReadsPly) {
  const std::string vertices = "element vertex 3\n" + kXyz;
  const std::string grid = "element range_grid 4\nproperty list uchar int vertex_indices\n";
  const std::vector<double> points = {0, 0, 5, 0, 1, 6, 1, 1, 7};
  // The second vertex is in the last cell: the order in the file is not that of the grid.
  const std::string expected = "[0,0,5 1,1,7][- 0,1,6]";
  const std::string header = kSize + vertices + grid + "end_header\n";
  EXPECT_EQ(
      textOf(load(optionsFor(write("a.ply",
                                   ply("ascii", header + "0 0 5\n0 1 6\n1 1 7\n1 0\n1 2\n0\n1 1"))))
                 .scan),
      expected);
  for (const bool isBigEndian : {false, true}) {
    const auto cell = [&](std::int32_t index) {
      return std::string(1, '\1') + bytesOf(index, isBigEndian);
    };
    const std::string content =
        ply(isBigEndian ? "binary_big_endian" : "binary_little_endian",
            header + listOf<float>(points, isBigEndian) + cell(0) + cell(2) + '\0' + cell(1));
    EXPECT_EQ(textOf(load(optionsFor(write("a.ply", content))).scan), expected);
  }
  const std::string doubles =
      "element camera 1\nproperty uchar a\nelement vertex 4\nproperty double z\nproperty uchar "
      "red\n"
      "property double x\nproperty double y\nelement face 0\nproperty list uchar int "
      "v\nend_header\n";
  EXPECT_EQ(
      textOf(load(optionsFor(write(
                      "a.ply", ply("ascii", kSize + doubles +
                                                "7\n5 0 0 0\r\n6 0 0 1\nnan 1 0 0\n8 1 1 1\n"))))
                 .scan),
      "[0,0,5 0,1,6][- 1,1,8]");
}

TEST_F(Organised, RefusesPly) {
  struct Bad {
    std::string content;
    const char* message;
  };
  const std::string vertices = kSize + "element vertex 4\n" + kXyz;
  const std::string grid =
      vertices + "element range_grid 4\nproperty list uchar int vertex_indices\nend_header\n";
  const std::string points = "0 0 5\n0 1 6\n1 0 7\n1 1 8\n";
  const Bad table[] = {
      {"plywood", "is no PLY file"},
      {ply("ascii", kSize), "header has no end"},
      {ply("utf8", "end_header\n"), "its header holds 'utf8'"},
      {ply("ascii", "element vertex 4\nproperty quad x\nend_header\n"), "its header holds 'quad'"},
      {ply("ascii", "element vertex -4\nend_header\n"), "its header holds '-4'"},
      {ply("ascii", kSize + "element vertex 4\nproperty float x\nend_header\n" + points),
       "no vertices with x, y and z"},
      {ply("ascii", "element vertex 4\n" + kXyz + "end_header\n" + points), "is not organised"},
      {ply("ascii", vertices + "obj_info num_cols 3\nend_header\n" + points),
       "4 vertices, 'obj_info' states 2 rows"},
      {ply("ascii", vertices + "end_header\n0 0 5\n0 1 6\n1 0 7\n"), "is cut short"},
      {ply("ascii", vertices + "end_header\n0 0 5\n0 1 6\n1 0 7\n1 11111\n"),
       ":14: expected another number"},
      {ply("ascii", vertices + "end_header\n0 0 5 9\n0 1 6\n1 0 7\n1 1 8\n"),
       ":11: too many numbers"},
      {ply("binary_little_endian", vertices + "end_header\n" + std::string(47, 'x')),
       "is cut short"},
      {ply("binary_little_endian",
           "obj_info num_cols 2000000000\nobj_info num_rows 2000000000\nelement vertex "
           "2147483647\n" +
               kXyz + "end_header\n" + std::string(48, 'x')),
       "is cut short"},
      {ply("ascii", grid + points + "1 0\n1 0\n0\n0\n"), "a vertex twice"},
      {ply("ascii", grid + points + "1 0\n1 4\n0\n0\n"), "a vertex twice, or one that"},
      {ply("ascii", grid + points + "1 0\n1 -2\n0\n0\n"), "a vertex twice, or one that"},
      {ply("ascii", grid + points + "2 0 1\n1 2\n0\n0\n"), "lists of several elements"},
  };
  for (const Bad& bad : table) {
    SCOPED_TRACE(bad.content);
    const std::string failure = failureOf(optionsFor(write("a.ply", bad.content)));
    expectPart(failure, bad.message);
  }
}

#ifdef SCANLINE_PROGRAM_HAS_PCL
std::string pcd(const std::string& size, const std::string& data) {
  return "# .PCD v0.7\nVERSION 0.7\nFIELDS x y z\nSIZE 8 8 8\nTYPE F F F\nCOUNT 1 1 1\n" + size +
         "VIEWPOINT 0 0 0 1 0 0 0\n" + data;
}

TEST_F(Organised, ReadsPcd) {
  const std::string size = "WIDTH 2\nHEIGHT 2\nPOINTS 4\n";
  const std::string expected = "[0,0,5 0,1,6][- 1,1,8]";
  const double nan = std::nan("");
  const std::string contents[] = {
      pcd(size, "DATA ascii\n0 0 5\n0 1 6\nnan nan nan\n1 1 8\n"),
      pcd(size, "DATA binary\n" + listOf<double>({0, 0, 5, 0, 1, 6, nan, nan, nan, 1, 1, 8})),
  };
  for (const std::string& content : contents) {
    EXPECT_EQ(textOf(load(optionsFor(write("a.pcd", content))).scan), expected);
  }
}

TEST_F(Organised, RefusesPcd) {
  const std::string four = "DATA ascii\n0 0 5\n0 1 6\n1 0 7\n1 1 8\n";
  struct Bad {
    std::string content;
    const char* message;
  };
  const Bad table[] = {
      {"no cloud", "is no PCD file"},
      {pcd("WIDTH 4\nHEIGHT 1\nPOINTS 4\n", four), "is not organised"},
      {pcd("WIDTH 2\nHEIGHT 2\nPOINTS 5\n", four), "is not POINTS"},
      {pcd("WIDTH 65536\nHEIGHT 65536\nPOINTS 0\n", four), "is not POINTS"},
      {pcd("WIDTH 65536\nHEIGHT 65536\nPOINTS 4294967296\n", four), "damaged PCD file: POINTS"},
      {pcd("WIDTH 20000\nHEIGHT 20000\nPOINTS 400000000\n", four), "is cut short"},
      {pcd("WIDTH 2\nHEIGHT 2\nPOINTS 4\n", "DATA binary\n" + std::string(95, 'x')),
       "is cut short"},
      {pcd("WIDTH 2\nHEIGHT 2\nPOINTS 4\n", "DATA binary_compressed\n" + bytesOf<std::uint32_t>(4) +
                                                bytesOf<std::uint32_t>(4000000000U) + "xxxx"),
       "is cut short"},
      {pcd("WIDTH 2\nHEIGHT 2\nPOINTS 4\n", "DATA binary_compressed\n" + bytesOf<std::uint32_t>(4) +
                                                bytesOf<std::uint32_t>(96) + "xxxx"),
       "is a damaged PCD file"},
  };
  for (const Bad& bad : table) {
    SCOPED_TRACE(bad.content);
    expectPart(failureOf(optionsFor(write("a.pcd", bad.content))), bad.message);
  }
}
#else
TEST_F(Organised, NamesThePackageThatReadsPcd) {
  expectPart(failureOf(optionsFor(write("a.pcd", "VERSION 0.7\n"))), "package libpcl-dev");
}
#endif

}  // namespace
}  // namespace program
