#pragma once

/// A table with a call of each exported function, and functions for the checks of the table.

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace calls {

/// Marks a defect: a tree without nodes, an image with a size but no data, a changed margin.
struct Broken {};

/// A number of a call: its address if it can be replaced, or a value such as a size.
using Number = std::variant<double*, float*, int*, std::uint64_t, Broken>;
using Visitor = std::function<void(Number)>;

/// A call of a function with arguments of its own.
class Call {
 public:
  virtual ~Call() = default;
  virtual void run() = 0;
  [[nodiscard]] virtual int count() const = 0;  ///< Number of arguments.
  /// Visits the numbers of an argument, or of the result at `count()`.
  virtual void visit(int argument, const Visitor& visitor) = 0;
  /// Makes an argument that the call only writes empty: no elements, NaN and 0.
  virtual void clear(int argument) = 0;
};

/// An exported function: how to build a call of it, and the rules for its arguments.
struct Row {
  std::string name;
  std::function<std::unique_ptr<Call>(unsigned seed, int size)> make;
  std::vector<int> incomplete = {};  ///< Arguments that an exception leaves valid but incomplete.
  std::vector<int> fixed = {};       ///< Arguments whose numbers must not be replaced.
  std::vector<int> indices = {};     ///< Arguments whose ints must not.
  int minSize = 0;                   ///< Smallest input that is allowed.

  Row mayLose(std::initializer_list<int> arguments) && {
    incomplete = arguments;
    return std::move(*this);
  }
  Row keep(std::initializer_list<int> arguments) && {
    fixed = arguments;
    return std::move(*this);
  }
  Row keepInts(std::initializer_list<int> arguments) && {
    indices = arguments;
    return std::move(*this);
  }
  Row atLeast(int size) && {
    minSize = size;
    return std::move(*this);
  }
};

/// Names the row in the messages of GoogleTest.
inline void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

/// All exported functions.
const std::vector<Row>& table();
bool contains(const std::vector<int>& arguments, int argument);

/// The bits of the numbers of an argument or of the result. All NaNs are the same.
using Numbers = std::vector<std::uint64_t>;
Numbers numbersOf(Call& call, int argument);
/// Whether the arguments and the result have no defect.
bool isValid(Call& call);
/// The size of the inputs with a seed.
int sizeOf(unsigned seed);
/// Hash of the arguments and results after the calls with the first seeds. If `rounded`, values are
/// rounded to seven digits.
std::uint64_t hashOf(const Row& row, int seeds, bool rounded = false);
/// The line of a function in a list of results.
std::string resultsOf(const Row& row, bool rounded);
/// Something to do with an argument before a call: nothing in it, or all its ints replaced.
struct Preparation {
  int argument;
  std::optional<int> replacement;
};
/// Writes the numbers of a call: a line with the name, the seed and the number of arguments, one
/// for each argument before the call, and one for each after it and for the result. A word is a
/// letter for the type (i: int; d and f: the bits of a double and a float; n: a size or another
/// integer) and a number.
void listNumbers(const Row& row,
                 unsigned seed,
                 const std::vector<Preparation>& preparations,
                 std::ostream& out);

}  // namespace calls
