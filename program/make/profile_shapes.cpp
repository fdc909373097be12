#include "make/profile_shapes.h"

namespace program {
namespace {

using Corners = std::vector<ProfilePoint>;

const Corners kBox = {{0, 120},  {25, 120}, {26, 100}, {48, 100}, {49, 120},
                      {78, 120}, {88, 129}, {98, 120}, {120, 120}};
const Corners kGroovedParts = {{0, 100},  {11, 100}, {12, 112}, {38, 112}, {39, 100}, {50, 100},
                               {60, 100}, {71, 100}, {72, 112}, {98, 112}, {99, 100}, {110, 100}};
const Corners kPockets = {{0, 80},  {15, 80},  {17, 100}, {38, 100}, {40, 80},
                          {65, 80}, {67, 120}, {88, 120}, {90, 80},  {105, 80}};
const Corners kPedestal = {{0, 130}, {20, 130}, {23, 115}, {43, 115}, {46, 95},
                           {68, 95}, {71, 115}, {91, 115}, {94, 130}, {115, 130}};
const Corners kTable = {{0, 170}, {19.5, 170}, {20, 110}, {40, 110},   {41, 92},
                        {62, 92}, {63, 110},   {95, 110}, {95.5, 170}, {115, 170}};
const Corners kChannel = {{0, 90},  {20, 90},  {22, 108}, {42, 108}, {44, 90},
                          {68, 90}, {78, 102}, {88, 90},  {108, 90}};
const Corners kPanels = {{0, 80},  {28, 80},   {29.5, 92}, {32.5, 92}, {34, 80},
                         {62, 80}, {63.5, 92}, {82, 92},   {83.5, 80}, {110, 80}};
const Corners kSoftSteps = {{0, 110}, {22, 110}, {25, 98}, {44, 98},   {47, 84},
                            {66, 84}, {69, 98},  {86, 98}, {100, 110}, {115, 110}};
const Corners kStairs = {{0, 80},  {20, 80},    {20.5, 92}, {42, 92},   {42.5, 95},
                         {64, 95}, {64.5, 110}, {86, 110},  {86.5, 80}, {105, 80}};
const Corners kBank = {{0, 120},  {20, 120}, {20.5, 98}, {50, 98},   {50.5, 120}, {66, 120},
                       {73, 133}, {80, 120}, {98, 120},  {104, 100}, {128, 100}};
const Corners kRail = {{0, 100},  {22, 100},   {22.2, 82}, {44, 82},    {44.2, 100},
                       {66, 100}, {66.2, 116}, {88, 116},  {88.2, 100}, {110, 100}};
const Corners kDents = {{0, 100}, {28, 100}, {28.2, 101.6}, {33, 101.6}, {33.2, 100}, {100, 100}};
const Corners kRibs = {{0, 110},   {15, 110},  {15.5, 95},  {27, 95},    {27.5, 110},
                       {42, 110},  {42.5, 95}, {72, 95},    {72.5, 110}, {86, 110},
                       {86.5, 90}, {94, 90},   {94.5, 110}, {110, 110}};

ProfileShape plain(const char* name, const char* shows, const Corners& corners) {
  ProfileShape shape;
  shape.name = name;
  shape.shows = shows;
  shape.corners = corners;
  return shape;
}

ProfileShape withHole(const STeskRangeD& hole, ProfileShape shape) {
  shape.holes = {hole};
  return shape;
}

/// A level surface with round places, so smooth that it has no noise.
ProfileShape smooth(const char* name, const char* shows, const ProfilePoint& end) {
  ProfileShape shape = plain(name, shows, {{0, end.z}, end});
  shape.noise = 0.0;
  return shape;
}

ProfileShape rail() {
  ProfileShape shape = plain("rail", "a rail and a slot with samples on their walls", kRail);
  shape.hasWalls = true;
  return shape;
}

ProfileShape hills() {
  ProfileShape shape = smooth("hills", "three hills, one with a small neighbour", {120, 110});
  shape.bumps = {{24, 16, 16}, {56, 18, 22}, {72, 6, 5}, {98, 14, 12}};
  return shape;
}

ProfileShape dents() {
  ProfileShape shape = plain("dents", "a plate with a sharp slot and a soft dent", kDents);
  shape.bumps = {{68, 3, -1.8}};
  shape.noise = 0.02;
  shape.step = 0.2;
  return shape;
}

ProfileShape tubes() {
  ProfileShape shape = smooth("tubes", "the tops of four tubes, two of them close", {118, 100});
  shape.arches = {{16, 10, 10}, {46, 10, 10}, {72, 10, 10}, {102, 10, 10}};
  shape.farthest = 94;
  return shape;
}

ProfileShape beads() {
  ProfileShape shape = smooth("beads", "a wide and a narrow round bead", {110, 100});
  shape.arches = {{38, 13, 12}, {84, 4, 4}};
  return shape;
}

ProfileShape bowls() {
  ProfileShape shape = smooth("bowls", "a deep bowl and a shallow one", {110, 90});
  shape.bumps = {{34, 16, -26}, {82, 20, -6}};
  return shape;
}

}  // namespace

const std::vector<ProfileShape>& profileShapes() {
  static const std::vector<ProfileShape> all = {
      withHole({57, 66}, plain("box", "a box, its shadow, and a V groove", kBox)),
      withHole({50.2, 59.8}, plain("parts", "two parts with one groove each", kGroovedParts)),
      withHole({68, 76}, plain("table", "a table with a block, above a floor", kTable)),
      plain("channel", "a channel with steep walls, and a V groove", kChannel),
      plain("pockets", "two pockets, the second one deeper", kPockets),
      plain("pedestal", "a block on a pedestal on the ground", kPedestal),
      plain("panels", "three panels with a narrow and a wide joint", kPanels),
      plain("soft-steps", "steps that spread over samples, and a ramp", kSoftSteps),
      withHole({64.5, 70}, plain("stairs", "high and low steps, one behind a hole", kStairs)),
      hills(),
      dents(),
      plain("bank", "a box with sharp walls, a V groove, and a bank", kBank),
      rail(),
      beads(),
      tubes(),
      bowls(),
      plain("ribs", "two ribs with a wide block between them", kRibs)};
  return all;
}

}  // namespace program
