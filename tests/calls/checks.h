#pragma once

/// What all checks of the table use.

#include <cstdint>
#include <string>
#include <vector>

#include "call.h"

namespace calls {

using Numbers = std::vector<std::uint64_t>;

/// The numbers of an argument, or of the result: each bit of them but those of NaNs.
Numbers numbersOf(Call& call, int argument);

/// Hash of all arguments and the result. If `rounded`, values count to seven digits.
std::uint64_t hashOf(Call& call, bool rounded = false);

/// Hash of what the calls of some seeds leave.
std::uint64_t hashOfSeeds(const Row& row, int first, int last, bool rounded = false);

/// The same of 128 seeds, as text.
std::string resultsOf(const Row& row, bool rounded);

}  // namespace calls
