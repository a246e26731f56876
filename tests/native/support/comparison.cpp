// Comes in: assembly text. Goes out: a failed test when two assemblers disagree on it.

#include "tests/native/support/comparison.hpp"

#include <gtest/gtest.h>

#include "native/assembler.hpp"
#include "native/objectReader.hpp"
#include "tests/native/support/objectDifference.hpp"
#include "tests/native/support/systemAssembler.hpp"

namespace krel::Native {

void expectSameObject(std::string_view text) {
    // A symbol at the end: objects without any have no table of symbols, and are not read.
    const std::string whole = std::string{text} + "\t.text\n\t.globl end_of_text\nend_of_text:\n";
    const std::string file = objectBySystem(whole);
    EXPECT_EQ(difference(assemble(whole), readObject(file)), "");
}

}  // namespace krel::Native
