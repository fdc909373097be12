#include "base/config_file.h"

#include <toml++/toml.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "base/failure.h"
#include "base/number.h"
#include "base/parameters.h"

namespace program {
namespace {

// A file cannot name itself, and what a run writes is not a setting.
const std::vector<std::string> kNotInFiles = {"config", "print-config", "help",    "json",
                                              "csv",    "ply",          "picture", "save-scan",
                                              "save",   "overwrite",    "output"};

Failure wrong(const std::string& path, const toml::source_region& where, const std::string& what) {
  return {ExitCode::usage, path + ":" + std::to_string(where.begin.line) + ": " + what};
}

toml::table parsed(const std::string& path) {
  if (!std::filesystem::is_regular_file(path)) {
    throw Failure(ExitCode::usage, path + ": there is no such file");
  }
  try {
    return toml::parse_file(path);
  } catch (const toml::parse_error& error) {
    throw wrong(path, error.source(), std::string(error.description()));
  }
}

/// The text of a value as the command line would give it; a list gives one for each element.
std::vector<std::string> textsOf(const std::string& path, const toml::node& node) {
  if (const toml::array* list = node.as_array()) {
    std::vector<std::string> texts;
    for (const toml::node& element : *list) {
      const std::vector<std::string> one = textsOf(path, element);
      texts.insert(texts.end(), one.begin(), one.end());
    }
    return texts;
  }
  if (const auto text = node.value_exact<std::string>()) {
    return {*text};
  }
  if (const auto flag = node.value_exact<bool>()) {
    return {*flag ? "true" : "false"};
  }
  if (const auto number = node.value<double>()) {
    return {exact(*number)};
  }
  throw wrong(path, node.source(), "expected a number, a string, true, false or a list of these");
}

CLI::Option* optionOf(CLI::App& command, const std::string& key) {
  const bool isSetting =
      std::find(kNotInFiles.begin(), kNotInFiles.end(), key) == kNotInFiles.end();
  return isSetting ? command.get_option_no_throw("--" + key) : nullptr;
}

/// One line of TOML: a number bare, anything else as a string, several as a list.
std::string settingOf(const std::string& key, const std::vector<std::string>& texts) {
  std::ostringstream value;
  toml::array list;
  for (const std::string& text : texts) {
    if (const auto number = parseNumber(text)) {
      list.push_back(*number);
    } else if (text == "true") {
      list.push_back(true);
    } else {
      list.push_back(text);
    }
  }
  if (list.size() == 1) {
    list.front().visit([&](const auto& only) { value << only; });
  } else {
    value << list;
  }
  return key + " = " + value.str();
}

}  // namespace

void readConfig(const std::string& path, CLI::App& command) {
  const toml::table file = parsed(path);
  for (const auto& [name, node] : file) {
    const toml::table* settings = node.as_table();
    if (settings == nullptr) {
      throw wrong(path, node.source(),
                  "'" + std::string(name.str()) + "' belongs in a table, such as [trace]");
    }
    if (name.str() != command.get_name()) {
      continue;
    }
    for (const auto& [key, value] : *settings) {
      CLI::Option* option = optionOf(command, std::string(key.str()));
      if (option == nullptr) {
        throw wrong(path, value.source(),
                    "'" + std::string(key.str()) + "' is not an option of '" + command.get_name() +
                        "' for a file");
      }
      if (option->count() > 0) {
        continue;
      }
      try {
        option->add_result(textsOf(path, value));
        option->run_callback();
      } catch (const CLI::Error& error) {
        throw wrong(path, value.source(), error.what());
      }
    }
  }
}

std::string configOf(const CLI::App& command, const Parameters& parameters) {
  std::string text = "[" + command.get_name() + "]\n";
  const auto isParameter = [&](const CLI::Option* option) {
    return std::any_of(parameters.all().begin(), parameters.all().end(),
                       [&](const Parameters::Parameter& p) { return p.option == option; });
  };
  for (const CLI::Option* option : command.get_options()) {
    const std::string key = option->get_lnames().empty() ? "" : option->get_lnames().front();
    const bool isSetting =
        !key.empty() && std::find(kNotInFiles.begin(), kNotInFiles.end(), key) == kNotInFiles.end();
    if (isSetting && option->count() > 0 && !isParameter(option)) {
      text += settingOf(key, option->results()) + '\n';
    }
  }
  for (const Parameters::Parameter& parameter : parameters.all()) {
    if (parameter.value && parameter.isUsed) {
      text += settingOf(parameter.option->get_lnames().front(), {exact(*parameter.value)}) +
              "  # " + nameOf(parameter.origin) + '\n';
    }
  }
  return text;
}

}  // namespace program
