// Comes in: two texts. Goes out: one line on standard error. Nothing is changed.

#include "codegen/runtime/report.hpp"

#include <cstddef>
#include <initializer_list>

#include "codegen/runtime/bytes.hpp"
#include "codegen/runtime/systemCalls.hpp"

namespace krel {

void reportRuntimeError(const char* what, const char* detail) {
    constexpr int standardError = 2;
    constexpr std::size_t longestLine = 160;
    char line[longestLine];
    std::size_t length = 0;
    for (const char* part : {"krel: runtime error: ", what, detail, "\n"}) {
        for (; *part != '\0' && length < longestLine; ++part) {
            line[length++] = *part;
        }
    }
    system::write(standardError, line, length);
}

}  // namespace krel
