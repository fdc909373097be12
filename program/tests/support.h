#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "base/failure.h"
#include "base/messages.h"
#include "base/scan.h"
#include "input/scan_input.h"

namespace program {

/// A folder of its own for each test, which goes with it.
class FolderTest : public testing::Test {
 protected:
  FolderTest() {
    std::string name = (std::filesystem::temp_directory_path() / "scanline.XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
  }
  ~FolderTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] std::string path(const std::string& name) const {
    return folder_ + "/" + name;
  }

  std::string write(const std::string& name, const std::string& content) {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

  [[nodiscard]] static std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
  }

 private:
  std::string folder_;
};

inline InputOptions optionsFor(const std::string& path) {
  InputOptions options;
  options.path = path;
  options.axes = AxisOrder::keep;
  return options;
}

inline LoadedScan load(const InputOptions& options) {
  Messages messages(true);
  return loadScan(options, messages);
}

/// The message of the failure to load a file; empty if it loads.
inline std::string failureOf(const InputOptions& options, ExitCode expected = ExitCode::badInput) {
  try {
    load(options);
    return {};
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.code(), expected) << failure.what();
    return failure.what();
  }
}

/// A scan as text: its lines in brackets, of each sample x,y,z, or - if it is missing.
inline std::string textOf(const Scan& scan) {
  std::ostringstream text;
  for (const Line& line : scan) {
    text << '[';
    for (const STesk3DPosition& sample : line) {
      const STesk3DPoint& p = sample.pt3D;
      text << (&sample == &line.front() ? "" : " ");
      if (isMeasured(sample)) {
        text << p.x << ',' << p.y << ',' << p.z;
      } else {
        text << '-';
      }
    }
    text << ']';
  }
  return text.str();
}

/// The bytes of a number in this machine's order, or reversed.
template <typename Value>
std::string bytesOf(Value value, bool isReversed = false) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return isReversed ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
}

/// Expects that `text` contains `part`.
inline void expectPart(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << "'" << part << "' is not in '" << text << "'";
}

}  // namespace program
