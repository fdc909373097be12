#pragma once

// Shares its name with a header of the library, which must not hide it.
constexpr bool kOwnTrees = true;
