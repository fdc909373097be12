/**
 * @file
 * Draws a picture for each extractor of line features: a synthetic profile and what is found on it.
 *
 * The calls of the extractors are in the exhibits' files.
 */

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

#include "exhibit.h"
#include "picture.h"
#include "plot.h"
#include "program.h"
#include "text_table.h"

namespace examples {
namespace {

/// What tells that an extractor has found nothing on the profile made for it.
constexpr int kExitNothingFound = 1;

std::vector<Exhibit> allExhibits() {
  std::vector<Exhibit> exhibits = cornerExhibits();
  for (const auto& more : {shapeExhibits(), peakExhibits()}) {
    exhibits.insert(exhibits.end(), more.begin(), more.end());
  }
  return exhibits;
}

/// One line of text: the extractor, and what it found where.
void printFindings(const Exhibit& exhibit, const std::vector<Mark>& marks) {
  std::string found;
  for (const Mark& mark : marks) {
    if (mark.kind != MarkKind::segmentEnd) {
      found += (found.empty() ? "" : "; ") + mark.label + " at y " + fixed(mark.from.y, 1);
      found += mark.from.y == mark.to.y ? "" : " to " + fixed(mark.to.y, 1);
    }
  }
  std::printf("%s: %s\n", exhibit.name, found.empty() ? "nothing found" : found.c_str());
}

/// Runs one extractor and writes its picture. Returns whether it found a feature.
bool show(const Exhibit& exhibit, const std::filesystem::path& folder) {
  const Line given = exhibit.profile();
  Line line = given;
  const Findings findings = exhibit.find(line);
  const std::string file = (folder / (std::string(exhibit.name) + ".png")).string();
  writePng(file, drawExhibit(exhibit, given, line, findings));
  printFindings(exhibit, findings.marks);
  return holdsFeature(findings.marks);
}

/// Draws all pictures. Returns whether every extractor found a feature.
bool showAll(const std::string& folder) {
  prepareFolder(folder);
  bool allFound = true;
  for (const Exhibit& exhibit : allExhibits()) {
    allFound = show(exhibit, folder) && allFound;
  }
  return allFound;
}

}  // namespace
}  // namespace examples

int main(int argc, char** argv) {
  std::string folder = "feature_gallery_out";
  const examples::ProgramHead head = {
      "feature_gallery", "Draws a picture of what each extractor of line features finds.",
      [&](CLI::App& app) {
        app.add_option("--out", folder, "Folder for the pictures")
            ->capture_default_str()
            ->type_name("FOLDER");
      }};
  bool allFound = true;
  const int code =
      examples::runProgram(head, argc, argv, [&] { allFound = examples::showAll(folder); });
  return code == 0 && !allFound ? examples::kExitNothingFound : code;
}
