#pragma once

/// The documentation of the public headers. The build writes its source.

#include <cstddef>

namespace binding {

struct ParameterText {
  const char* name;
  const char* text;
};

/// An exported function as its header declares and documents it.
struct FunctionText {
  const char* name;
  const char* text;                 ///< What it does.
  const char* notes;                ///< Preconditions, exceptions, cost and method.
  const char* result;               ///< What it returns; may be empty.
  const ParameterText* parameters;  ///< All parameters, up to one without a name.
};

/// Throws std::logic_error for a function without documentation.
const FunctionText& functionText(const char* name);
/// The documentation of a record, or of one of its fields; throws as above.
const char* documentation(const char* record, const char* field = nullptr);

}  // namespace binding
