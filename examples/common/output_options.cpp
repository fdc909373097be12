#include "output_options.h"

#include <CLI/CLI.hpp>

#include "program.h"

namespace examples {

void addOutputOptions(CLI::App& app, OutputOptions& options) {
  options.folder = app.get_name() + "_out";
  app.add_option("--out", options.folder, "Folder for the pictures")
      ->capture_default_str()
      ->type_name("FOLDER");
  app.add_option("--save-scan", options.saveScan, "Also write the raw scan as a TIFF of x, y, z")
      ->type_name("FILE");
  app.add_option("--unit", options.unit, "Name of the scan's unit of length, for the labels")
      ->type_name("NAME");
}

}  // namespace examples
