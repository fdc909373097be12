#include "base/parameters.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <stdexcept>
#include <utility>

#include "base/failure.h"
#include "base/number.h"

namespace program {
namespace {

constexpr double kLargestLength = 1e9;
constexpr long long kLargestCount = 1'000'000;

CLI::Validator validatorOf(Kind kind) {
  switch (kind) {
    case Kind::angle:
      return numberIn(0.0, 180.0);
    case Kind::count:
      return countIn(0, kLargestCount);
    case Kind::window:
      return oddCountUpTo(kLargestCount);
    case Kind::percent:
      return numberIn(0.0, 100.0);
    case Kind::number:
      return numberIn(-kLargestLength, kLargestLength);
    default:
      return numberIn(0.0, kLargestLength);
  }
}

const char* typeNameOf(Kind kind) {
  switch (kind) {
    case Kind::angle:
      return "DEGREES";
    case Kind::count:
    case Kind::window:
      return "COUNT";
    case Kind::percent:
      return "PERCENT";
    case Kind::number:
      return "NUMBER";
    default:
      return "LENGTH";
  }
}

std::string optionNameOf(std::string name) {
  std::replace(name.begin(), name.end(), '.', '-');
  return "--" + name;
}

}  // namespace

const char* nameOf(Origin origin) {
  switch (origin) {
    case Origin::given:
      return "given";
    case Origin::derived:
      return "derived";
    default:
      return "default";
  }
}

Parameters::Parameters(CLI::App& command, std::string group)
    : command_(command), group_(std::move(group)) {}

void Parameters::add(const std::string& name, Kind kind, double builtIn, const std::string& help) {
  addDerived(name, kind, exact(builtIn), help);
  parameters_.back().value = builtIn;
  parameters_.back().origin = Origin::builtIn;
}

void Parameters::addDerived(const std::string& name,
                            Kind kind,
                            const std::string& rule,
                            const std::string& help) {
  CLI::Option* option = command_.add_option_function<std::string>(
      optionNameOf(name), [](const std::string&) {}, help + " (default: " + rule + ")");
  option->check(validatorOf(kind))->type_name(typeNameOf(kind))->group(group_);
  parameters_.push_back({name, kind, std::nullopt, Origin::derived, option});
}

void Parameters::takeGiven() {
  for (Parameter& parameter : parameters_) {
    if (parameter.option->count() > 0) {
      parameter.value = parseNumber(parameter.option->results().back());
      parameter.origin = Origin::given;
    }
  }
}

void Parameters::derive(const std::string& name, double value) {
  Parameter& parameter = find(name);
  if (parameter.origin == Origin::derived) {
    parameter.value = value;
  }
}

void Parameters::useOnly(const std::vector<const char*>& names) {
  for (Parameter& parameter : parameters_) {
    parameter.isUsed = std::find(names.begin(), names.end(), parameter.name) != names.end();
  }
}

double Parameters::get(const std::string& name) const {
  return find(name).value.value();
}

int Parameters::count(const std::string& name) const {
  return static_cast<int>(get(name));
}

bool Parameters::isGiven(const std::string& name) const {
  return find(name).origin == Origin::given;
}

const Parameters::Parameter& Parameters::find(const std::string& name) const {
  return const_cast<Parameters*>(this)->find(name);
}

Parameters::Parameter& Parameters::find(const std::string& name) {
  const auto found = std::find_if(parameters_.begin(), parameters_.end(),
                                  [&](const Parameter& p) { return p.name == name; });
  if (found == parameters_.end()) {
    throw std::logic_error("no parameter " + name);
  }
  return *found;
}

void requireLess(const Parameters& parameters, const std::string& less, const std::string& more) {
  if (parameters.get(less) < parameters.get(more)) {
    return;
  }
  const auto described = [&](const std::string& name) {
    return optionNameOf(name) + (parameters.isGiven(name) ? " (" : " (by default ") +
           significant(parameters.get(name), 4) + ")";
  };
  std::string remedy;
  for (const std::string& name : {less, more}) {
    if (!parameters.isGiven(name)) {
      remedy += (remedy.empty() ? ". Give " : " and ") + optionNameOf(name);
    }
  }
  throw Failure(ExitCode::usage,
                described(less) + " must be less than " + described(more) + remedy);
}

}  // namespace program
