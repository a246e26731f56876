#include "codegen/assemblyWriter.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "codegen/shortText.hpp"

namespace krel {

TEST(AssemblyWriterTest, WritesPartsOfEveryKindInOrder) {
    std::ostringstream out;
    {
        AssemblyWriter writer{out};
        writer.write("\tmovq ", ShortText{"%rax"}, ", ", ShortText::of(-8),
                     std::string{"(%rbp)\n"});
        writer.write(ShortText{});
        writer.write("\tret\n");
    }
    EXPECT_EQ(out.str(),
              "\tmovq %rax, -8(%rbp)\n"
              "\tret\n");
}

TEST(AssemblyWriterTest, TextsOfEveryLengthAroundItsBlocksComeThrough) {
    // With 65532 the text behind it ends where the block does.
    for (const std::size_t size :
         {1UL, 65531UL, 65532UL, 65533UL, 65535UL, 65536UL, 65537UL, 1000000UL}) {
        const std::string longText(size, 'x');
        std::ostringstream out;
        {
            AssemblyWriter writer{out};
            writer.write("a", ShortText{"b"});
            writer.write("c", longText, ShortText{"d"});
            writer.write(ShortText{"e"}, "f");
        }
        EXPECT_EQ(out.str(), "abc" + longText + "def");
    }
}

TEST(AssemblyWriterTest, WritesWhatItHasWhenAnErrorEndsTheGeneration) {
    std::ostringstream out;
    try {
        AssemblyWriter writer{out};
        writer.write("before");
        throw 1;
    } catch (int) {
        EXPECT_EQ(out.str(), "before");
    }
}

TEST(AssemblyWriterTest, LeavesFailuresInTheStream) {
    std::ostringstream out;
    out.setstate(std::ios::badbit);
    { AssemblyWriter{out}.write("lost"); }
    EXPECT_TRUE(out.bad());
    EXPECT_EQ(out.str(), "");
}

}  // namespace krel
