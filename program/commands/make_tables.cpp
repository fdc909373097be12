#include "commands/make_tables.h"

namespace program {
namespace {

Table objectTable(const std::vector<TrueObject>& objects) {
  Table table = {"objects",
                 "Objects on the plane",
                 {{"id", ""},
                  {"kind", ""},
                  {"x", "mm", 1},
                  {"y", "mm", 1},
                  {"length", "mm", 1},
                  {"width", "mm", 1},
                  {"height", "mm", 1},
                  {"angle", "deg", 1}},
                 {}};
  for (const TrueObject& object : objects) {
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1), object.kind, object.x,
                          object.y, object.length, object.width, object.height, object.degrees});
  }
  return table;
}

Table gapTable(const std::vector<TrueGap>& gaps) {
  Table table = {
      "gaps",
      "Gaps",
      {{"id", ""}, {"name", ""}, {"width", "mm", 2}, {"first x", "mm", 1}, {"last x", "mm", 1}},
      {}};
  for (const TrueGap& gap : gaps) {
    table.rows.push_back(
        {static_cast<long long>(table.rows.size() + 1), gap.name, gap.width, gap.x.min, gap.x.max});
  }
  return table;
}

/// Points of the gaps' centre lines, for JSON alone.
Table centreTable(const std::vector<TrueGap>& gaps) {
  constexpr int kSteps = 50;
  Table table = {"centre_lines", "", {{"gap", ""}, {"x", ""}, {"y", ""}}, {}};
  long long id = 0;
  for (const TrueGap& gap : gaps) {
    ++id;
    for (int i = 0; i <= kSteps; ++i) {
      const double x = gap.x.min + (gap.x.max - gap.x.min) * i / kSteps;
      table.rows.push_back({id, x, gap.centre(x)});
    }
  }
  return table;
}

Table rodTable(const std::vector<TrueRod>& rods) {
  Table table = {"rods",
                 "Rods, from one end of the axis to the other",
                 {{"id", ""},
                  {"radius", "mm", 1},
                  {"x1", "mm", 1},
                  {"y1", "mm", 1},
                  {"z1", "mm", 1},
                  {"x2", "mm", 1},
                  {"y2", "mm", 1},
                  {"z2", "mm", 1}},
                 {}};
  for (const TrueRod& rod : rods) {
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1), rod.radius, rod.from.x,
                          rod.from.y, rod.from.z, rod.to.x, rod.to.y, rod.to.z});
  }
  return table;
}

/// The profile without noise, for JSON alone; z is null where nothing is measured.
Table profileTable(const Line& profile) {
  Table table = {"profile", "", {{"sample", ""}, {"y", ""}, {"z", ""}}, {}};
  for (const STesk3DPosition& sample : profile) {
    table.rows.push_back({static_cast<long long>(sample.nPointIdx), sample.pt3D.y,
                          isMeasured(sample) ? Cell{sample.pt3D.z} : Cell{}});
  }
  return table;
}

}  // namespace

std::vector<Table> tablesOf(const MadeScan& made) {
  std::vector<Table> tables;
  if (!made.objects.empty()) {
    tables.push_back(objectTable(made.objects));
  }
  if (!made.gaps.empty()) {
    tables.push_back(gapTable(made.gaps));
    tables.push_back(centreTable(made.gaps));
  }
  if (!made.rods.empty()) {
    tables.push_back(rodTable(made.rods));
  }
  if (!made.profile.empty()) {
    tables.push_back(profileTable(made.profile));
  }
  return tables;
}

}  // namespace program
