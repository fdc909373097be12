#include "base/help.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <vector>

namespace program {
namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kColumn = 26;

/// Appends one line of text, broken between words at the width; what follows a break is indented.
void appendWrapped(std::string& to, const std::string& text, std::size_t at, std::size_t indent) {
  std::istringstream words(text);
  std::string word;
  bool isFirst = true;
  while (words >> word) {
    if (!isFirst && at + 1 + word.size() > kWidth) {
      to += '\n' + std::string(indent, ' ');
      at = indent;
    } else if (!isFirst) {
      to += ' ';
      ++at;
    }
    to += word;
    at += word.size();
    isFirst = false;
  }
  to += '\n';
}

/// Text of several lines, each of which keeps its indentation to the right of `column`.
std::string wrapped(const std::string& text, std::size_t column, std::size_t hanging) {
  std::string result;
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    const std::size_t own = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t begin = column + own;
    result += std::string(line.empty() ? 0 : begin, ' ');
    appendWrapped(result, line, begin, begin + (own > 0 ? hanging : 0));
  }
  return result;
}

std::string entry(const std::string& left, const std::string& help) {
  std::string text = "  " + left;
  const std::string right = wrapped(help, kColumn, 2);
  if (text.size() + 2 > kColumn) {
    return text + '\n' + right;
  }
  text.resize(kColumn, ' ');
  return text + right.substr(kColumn);
}

std::string optionEntry(const CLI::Option& option) {
  const std::string type = option.get_type_size() == 0 ? "" : ' ' + option.get_type_name();
  const bool isPositional = option.get_positional();
  const std::string required = !isPositional && option.get_required() ? " (required)" : "";
  return entry(isPositional ? option.get_name(true, false) : option.get_name(false, true) + type,
               option.get_description() + required);
}

std::string groupOf(const std::string& title, const std::vector<const CLI::Option*>& options) {
  std::string text;
  for (const CLI::Option* option : options) {
    text += optionEntry(*option);
  }
  return text.empty() ? text : '\n' + title + ":\n" + text;
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app,
                                          bool isPositional,
                                          const std::string& group) {
  return app.get_options([&](const CLI::Option* option) {
    return option->get_positional() == isPositional && option->get_group() == group;
  });
}

}  // namespace

std::string helpOf(const CLI::App& app, const std::string& name) {
  const auto positionals = optionsOf(app, true, "Options");
  const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
  std::string text = app.get_description() + "\n\nUsage: " + name;
  text += commands.empty() ? "" : " COMMAND";
  for (const CLI::Option* positional : positionals) {
    text += ' ' + positional->get_name(true, false);
  }
  text += " [OPTIONS]\n" + groupOf("Arguments", positionals);
  if (!commands.empty()) {
    text += "\nCommands:\n";
    for (const CLI::App* command : commands) {
      text += entry(command->get_name(), command->get_description());
    }
  }
  for (const std::string& group : app.get_groups()) {
    if (group != "Options") {
      text += groupOf(group, optionsOf(app, false, group));
    }
  }
  text += groupOf("Other", optionsOf(app, false, "Options"));
  return text + '\n' + wrapped(app.get_footer(), 0, 2);
}

}  // namespace program
