// The rules of checked runs. Comes in: a name. Goes out: a rule. The comments are the pages that
// krel explain shows.

/// # deep-recursion
///
/// ## What it finds
///
/// A call for whose variables the stack has no room.
///
/// ## Why
///
/// Mostly a recursion that never ends. The stack is as large as the system lets it be, 8 MB as a
/// rule, for checked runs and for compiled programs alike. Each call takes 8 bytes for each
/// variable, temporary and array element of the function, and 16 more. A compiled program is ended
/// by the signal `SIGSEGV`.
///
/// ## Example
///
/// ```krel example
/// int sum(int n) {
///     return n + sum(n - 1);
/// }
/// void main() {
///     print(sum(10), "\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// int sum(int n) {
///     if (n == 0) {
///         return 0;
///     }
///     return n + sum(n - 1);
/// }
/// void main() {
///     print(sum(10), "\n");
/// }
/// ```

/// # division-by-zero
///
/// ## What it finds
///
/// An `int` that is divided by zero.
///
/// ## Why
///
/// The processor cannot do it: a compiled program is ended by the signal `SIGFPE`. `--allow` does
/// not change that. A `double` may be divided by zero.
///
/// ## Example
///
/// ```krel example fragment
/// i = 0;
/// n = n / i;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 0;
/// if (i != 0) {
///     n = n / i;
/// }
/// ```

/// # division-overflow
///
/// ## What it finds
///
/// The least `int` divided by -1.
///
/// ## Why
///
/// The result has no room in 64 bits. A compiled program is ended by the signal `SIGFPE`, and
/// `--allow` does not change that.
///
/// ## Example
///
/// ```krel example fragment
/// i = 0 - 2147483647;
/// i = i * 2147483647 * 2 - 2147483647 * 4 - 2;
/// n = 0 - n / 2;
/// i = i / n;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 0 - 2147483647;
/// n = 0 - n / 2;
/// i = i / n;
/// ```

/// # index-outside
///
/// ## What it finds
///
/// An element that its array does not have, in an index or in a list with more values than the
/// array has elements.
///
/// ## Why
///
/// A compiled program does not look: it reads or changes whatever lies there, another variable as a
/// rule. Indexes go from 0 up to the size, without the size itself.
///
/// ## Example
///
/// ```krel example fragment
/// for (i = 0; i <= 3; i++) {
///     a[i] = i;
/// }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// for (i = 0; i < 3; i++) {
///     a[i] = i;
/// }
/// ```

/// # missing-result
///
/// ## What it finds
///
/// The use of a result where the function has returned nothing.
///
/// ## Why
///
/// A function whose end is reached returns what happens to lie in a register. Also a `void`
/// function has no result, and the list of an array can call one.
///
/// ## Example
///
/// ```krel example
/// int sign(int n) {
///     if (n > 0) {
///         return 1;
///     }
/// }
/// void main() {
///     int s = sign(0);
///     print(s, "\n");
/// }
/// ```
///
/// ## Use instead
///
/// ```krel
/// int sign(int n) {
///     if (n > 0) {
///         return 1;
///     }
///     return 0;
/// }
/// void main() {
///     int s = sign(0);
///     print(s, "\n");
/// }
/// ```

/// # out-of-memory
///
/// ## What it finds
///
/// A string for which there is no memory.
///
/// ## Why
///
/// Strings that no variable holds any more are taken back by themselves. What is left needs more
/// than the system gives. A compiled program is ended by the signal `SIGABRT`.
///
/// ## Example
///
/// A loop that doubles a string without end: `s = s + s;`.
///
/// ## Use instead
///
/// Print what is done, and go on with an empty string.

/// # overflow
///
/// ## What it finds
///
/// A sum, difference, product or negation that has no room in an `int`, and an integer literal that
/// has no room in 32 bits.
///
/// ## Why
///
/// An `int` has 64 bits. What is too large loses its highest bits, and becomes another number. That
/// can be meant, in random numbers for example: `--allow=overflow` lets it pass. Literals are cut
/// to 32 bits: `2147483647` is the largest that keeps its value.
///
/// ## Example
///
/// ```krel example fragment
/// i = 2147483647;
/// i = i * i * i;
/// n = 4294967296;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// i = 2147483647;
/// i = i * i;
/// n = 65536 * 65536;
/// ```

/// # step-limit
///
/// ## What it finds
///
/// A program that is still running after as many steps as `--limit` allows.
///
/// ## Why
///
/// A loop may never end. A step is a line of the intermediate code: a statement has one for each
/// operator, and a few more.
///
/// ## Example
///
/// With `--limit=1000`:
///
/// ```krel example fragment
/// while (i > 0) {
///     i++;
/// }
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// while (i < 100) {
///     i++;
/// }
/// ```

/// # unset-value
///
/// ## What it finds
///
/// A variable or an element that is read, and nothing has set it.
///
/// ## Why
///
/// It holds whatever the memory held before. Three things come without a value: the elements of an
/// array without a list, or with a short one; a variable that is used before its declaration is
/// reached; and a name that is declared nowhere, which is refused in most places, but not in
/// conditions, in indexes and behind `+=`.
///
/// ## Example
///
/// ```krel example fragment
/// int counts[10];
/// counts[i] = counts[i] + 1;
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// int counts[10];
/// for (n = 0; n < 10; n++) {
///     counts[n] = 0;
/// }
/// counts[i] = counts[i] + 1;
/// ```

/// # wrong-type
///
/// ## What it finds
///
/// A value that is used as one of another type: a `double` as an `int` or a condition, a comparison
/// as a `double`, a number as a `string`.
///
/// ## Why
///
/// Types are not checked in conditions, in indexes, behind `+=` and in lists, comparisons have the
/// type of their operands for the checker, and a literal like `2.0` counts as an `int`. The bits
/// are then taken as they are. `int`, `boolean` and `character` are all whole numbers, and may
/// stand for each other here.
///
/// ## Example
///
/// ```krel example fragment
/// i += 1.5;
/// print(i, "\n");
/// ```
///
/// ## Use instead
///
/// ```krel fragment
/// d += 1.5;
/// print(d, "\n");
/// ```

#include "tools/machine/rules.hpp"

#include <algorithm>
#include <array>

#include "tools/machine/faults.hpp"

namespace krel::Execution {

namespace {

constexpr std::array<std::string_view, ruleCount> ruleNames = {
    "index-outside",     "unset-value", "missing-result", "overflow",     "division-by-zero",
    "division-overflow", "wrong-type",  "deep-recursion", "out-of-memory"};

}  // namespace

std::string_view nameOf(Rule rule) {
    return ruleNames[static_cast<std::size_t>(rule)];
}

std::optional<Rule> ruleNamed(std::string_view name) {
    const auto* const found = std::ranges::find(ruleNames, name);
    if (found == ruleNames.end()) {
        return std::nullopt;
    }
    return static_cast<Rule>(found - ruleNames.begin());
}

}  // namespace krel::Execution
