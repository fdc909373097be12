#include "output/output_file.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/failure.h"

namespace program {
namespace {

namespace fs = std::filesystem;

// What a signal handler can reach: the temporary files that exist. Slots are never reused.
constexpr std::size_t kMostFiles = 16;
std::array<std::atomic<const char*>, kMostFiles> temporaryPaths;

extern "C" void removeTemporaries(int signal) {
  for (const std::atomic<const char*>& path : temporaryPaths) {
    if (const char* name = path.load()) {
      ::unlink(name);
    }
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void removeOnSignals(const std::string& path) {
  for (std::atomic<const char*>& slot : temporaryPaths) {
    if (slot.load() == nullptr) {
      // Kept until the program ends, as the handler may run at any time.
      slot = ::strdup(path.c_str());
      for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGTERM}) {
        std::signal(signal, removeTemporaries);
      }
      // A limit for the size of files is an error of writing then.
      std::signal(SIGXFSZ, SIG_IGN);
      return;
    }
  }
}

Failure cannotWrite(const std::string& path, const std::string& why) {
  return {ExitCode::cannotWrite, path + ": cannot be written: " + why};
}

/// A name in the same folder, with the same extension, that no other run uses.
std::string temporaryFor(const std::string& path) {
  const fs::path final(path);
  const std::string name = "." + final.stem().string() + "." + std::to_string(::getpid()) + ".tmp" +
                           final.extension().string();
  return (final.parent_path() / name).string();
}

bool writeAll(const std::string& path, const std::string& content) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) {
    return false;
  }
  const bool isWritten = std::fwrite(content.data(), 1, content.size(), file) == content.size();
  // A full disk may show at closing only.
  return (std::fclose(file) == 0) && isWritten;
}

}  // namespace

OutputFiles::~OutputFiles() {
  for (const std::string& path : temporaries_) {
    std::error_code ignored;
    fs::remove(path, ignored);
  }
}

void OutputFiles::check(const std::string& path, const std::vector<std::string>& inputs) const {
  std::error_code error;
  if (path.empty() || path == "-") {
    return;
  }
  const fs::path folder = fs::path(path).has_parent_path() ? fs::path(path).parent_path() : ".";
  if (!fs::is_directory(folder, error)) {
    throw cannotWrite(path, "there is no folder '" + folder.string() + "'");
  }
  if (::access(folder.c_str(), W_OK) != 0) {
    throw cannotWrite(path, "no permission to write to the folder '" + folder.string() + "'");
  }
  for (const std::string& input : inputs) {
    if (fs::equivalent(path, input, error)) {
      throw Failure(ExitCode::usage, path + ": is the input. Give the output another name");
    }
  }
  if (fs::is_directory(path, error)) {
    throw cannotWrite(path, "it is a folder");
  }
  if (fs::exists(path, error) && !overwrite_) {
    throw Failure(ExitCode::cannotWrite, path + ": exists. Use --overwrite to replace it");
  }
}

void OutputFiles::add(const std::string& path,
                      const std::function<bool(const std::string&)>& write) {
  const std::string temporary = temporaryFor(path);
  temporaries_.push_back(temporary);
  removeOnSignals(temporary);
  errno = 0;
  if (!write(temporary)) {
    throw cannotWrite(path, errno != 0 ? std::generic_category().message(errno) : "writing failed");
  }
  paths_.push_back(path);
}

void OutputFiles::add(const std::string& path, const std::string& content) {
  if (path != "-") {
    add(path, [&](const std::string& temporary) { return writeAll(temporary, content); });
  } else if (std::fwrite(content.data(), 1, content.size(), stdout) != content.size() ||
             std::fflush(stdout) != 0) {
    throw cannotWrite("standard output", std::generic_category().message(errno));
  }
}

void OutputFiles::publish() {
  for (std::size_t i = 0; i < paths_.size(); ++i) {
    std::error_code error;
    fs::rename(temporaries_[i], paths_[i], error);
    if (error) {
      throw cannotWrite(paths_[i], error.message());
    }
  }
  temporaries_.clear();
}

}  // namespace program
