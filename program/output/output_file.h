#pragma once

#include <functional>
#include <string>
#include <vector>

namespace program {

/**
 * Writes files to temporary names beside their final ones, and renames all of them at the end.
 *
 * A run that fails, or is interrupted by SIGINT or SIGTERM, leaves neither a half-written file nor
 * a temporary one.
 */
class OutputFiles {
 public:
  explicit OutputFiles(bool overwrite) : overwrite_(overwrite) {}
  ~OutputFiles();
  OutputFiles(const OutputFiles&) = delete;
  OutputFiles& operator=(const OutputFiles&) = delete;

  /// Fails early if a path cannot be an output: it exists and may not be overwritten, its folder is
  /// missing or not writable, or it is one of the inputs.
  void check(const std::string& path, const std::vector<std::string>& inputs) const;

  /// Lets `write` fill a file at the temporary path that it is given, which keeps the extension.
  /// @throws Failure if `write` returns false or throws.
  void add(const std::string& path, const std::function<bool(const std::string&)>& write);
  /// The same for content in memory; "-" is the standard output.
  void add(const std::string& path, const std::string& content);

  /// Gives all files their final names.
  void publish();

  [[nodiscard]] const std::vector<std::string>& paths() const {
    return paths_;
  }

 private:
  bool overwrite_;
  std::vector<std::string> paths_;
  std::vector<std::string> temporaries_;
};

}  // namespace program
