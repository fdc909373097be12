#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace program {

/// What a parameter measures. It decides which values are accepted and how help names them.
enum class Kind {
  length,
  angle,
  count,
  window,  ///< A count of samples that has a middle one, or 0 for no window.
  percent,
  number
};

/// Where a parameter's value comes from.
enum class Origin { builtIn, derived, given };

const char* nameOf(Origin origin);

/**
 * The numbers that tune a command: given by an option or the configuration file, else derived from
 * the scan, else built in.
 *
 * The option of the parameter "corner.scale" is --corner-scale.
 */
class Parameters {
 public:
  struct Parameter {
    std::string name;
    Kind kind;
    std::optional<double> value;
    Origin origin;
    CLI::Option* option;
    bool isUsed = true;  ///< Listed among the parameters of a run.
  };

  /// The options are added to a group of this command.
  Parameters(CLI::App& command, std::string group);
  Parameters(const Parameters&) = delete;
  Parameters& operator=(const Parameters&) = delete;

  /// Adds a parameter with a built-in value.
  void add(const std::string& name, Kind kind, double builtIn, const std::string& help);
  /// Adds a parameter that derive() sets. The help states the rule, as in "10 sample spacings".
  void addDerived(const std::string& name,
                  Kind kind,
                  const std::string& rule,
                  const std::string& help);

  /// Takes the values of the options that were given. Call it after parsing.
  void takeGiven();
  /// Sets a derived value, unless the user has given one.
  void derive(const std::string& name, double value);

  /// Takes all others out of the lists of a run: they have no effect on it.
  void useOnly(const std::vector<const char*>& names);

  [[nodiscard]] double get(const std::string& name) const;
  [[nodiscard]] int count(const std::string& name) const;
  [[nodiscard]] bool isGiven(const std::string& name) const;
  [[nodiscard]] const std::vector<Parameter>& all() const {
    return parameters_;
  }

 private:
  [[nodiscard]] const Parameter& find(const std::string& name) const;
  Parameter& find(const std::string& name);

  CLI::App& command_;
  std::string group_;
  std::vector<Parameter> parameters_;
};

/// Checks two limits against each other. @throw Failure (usage)
void requireLess(const Parameters& parameters, const std::string& less, const std::string& more);

}  // namespace program
