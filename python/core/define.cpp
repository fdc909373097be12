#include "define.h"

#include <cstring>

namespace binding {

namespace {

/// `text` with its lines indented by four spaces.
std::string indented(const std::string& text) {
  std::string result = "    ";
  for (const char c : text) {
    result += c;
    if (c == '\n') {
      result += "    ";
    }
  }
  return result;
}

const char* textOfParameter(const FunctionText& text, const std::string& name) {
  for (const ParameterText* parameter = text.parameters; parameter->name != nullptr; ++parameter) {
    if (name == parameter->name) {
      return parameter->text;
    }
  }
  return text.result;
}

/// A section of the docstring with an entry for each parameter or result.
std::string section(const std::string& title, const FunctionText& text, const py::list& entries) {
  if (entries.empty()) {
    return "";
  }
  std::string result = "\n\n" + title + "\n" + std::string(title.size(), '-');
  for (const py::handle entry : entries) {
    const auto name = entry[py::int_(0)].cast<std::string>();
    const auto annotation = entry[py::int_(1)].cast<std::string>();
    const bool isKeyword =
        py::len(entry) == 3 && entry[py::int_(2)].cast<std::string>() == "keyword";
    result +=
        "\n" + name + " : " + annotation + "\n" +
        indented(isKeyword ? "takes the result of this name as well" : textOfParameter(text, name));
  }
  return result;
}

std::string joined(const py::list& entries, const std::string& kind) {
  std::string result;
  for (const py::handle entry : entries) {
    if (py::len(entry) < 3 || entry[py::int_(2)].cast<std::string>() == kind) {
      result += (result.empty() ? "" : ", ") + entry[py::int_(0)].cast<std::string>() +
                (kind == "keyword" ? "=None" : "");
    }
  }
  return result;
}

}  // namespace

py::object recordSignature(py::module_& module, const char* name, const Signature& signature) {
  py::dict entry;
  entry["parameters"] = signature.parameters;
  entry["results"] = signature.results;
  entry["arguments"] = signature.arguments;
  entry["result"] = signature.resultType;
  entry["is_checked"] = signature.isChecked;
  module.attr("_signatures")[name] = entry;
  if (signature.results.size() < 2) {
    return py::none();
  }
  py::list fields;
  for (const py::handle result : signature.results) {
    fields.append(result[py::int_(0)]);
  }
  const std::string typeName = std::string(name) + "_result";
  using py::literals::operator""_a;
  py::object type = py::module_::import("collections")
                        .attr("namedtuple")(typeName, fields, "module"_a = "scanline._core");
  module.attr(typeName.c_str()) = type;
  return type;
}

std::string docstring(const FunctionText& text, const Signature& signature) {
  const std::string keywords = joined(signature.parameters, "keyword");
  const std::string positions = joined(signature.parameters, "position");
  const std::string comma = positions.empty() || keywords.empty() ? "" : ", ";
  std::string result = std::string(text.name) + "(" + positions + comma +
                       (keywords.empty() ? "" : "*, " + keywords) + ")\n\n" + text.text;
  result += section("Parameters", text, signature.parameters);
  result += section("Returns", text, signature.results);
  if (std::strlen(text.notes) > 0) {
    result += "\n\nNotes\n-----\n" + std::string(text.notes);
  }
  return result;
}

void failUnsuited(const char* argument, const std::length_error& error) {
  throw py::value_error(std::string(argument) +
                        ": expected values within the limits in the function's notes; " +
                        error.what());
}

py::object packed(const py::object& type, const py::list& results) {
  if (results.empty()) {
    return py::none();
  }
  if (results.size() == 1) {
    return results[0];
  }
  return type.attr("_make")(results);
}

}  // namespace binding
