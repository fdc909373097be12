#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace examples {

/// Where results go, and how their lengths are labelled.
struct OutputOptions {
  std::string folder;    ///< For the pictures.
  std::string saveScan;  ///< File for the raw scan; empty: none.
  std::string unit;      ///< Unit of length; empty: as the scan suggests.
};

/// Adds the options of the output to a command line; the default folder is named after the program.
void addOutputOptions(CLI::App& app, OutputOptions& options);

}  // namespace examples
