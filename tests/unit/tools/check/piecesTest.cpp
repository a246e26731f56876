// Repaired texts and the way back from them.

#include <gtest/gtest.h>

#include <algorithm>

#include "tools/check/pieces.hpp"

namespace krel::Check {

namespace {

constexpr std::string_view source = "x = a[i + 1];";

/// `int k = i + 1; x = a[k];`
Pieces hoisted() {
    Pieces moved;
    moved.keep({6, 11});
    moved.markAsMoved();
    Pieces all;
    all.insert("int k = ", {6, 11});
    all.append(std::move(moved));
    all.insert("; ", {6, 11});
    all.keep({0, 6});
    all.insert("k", {6, 11});
    all.keep({11, 13});
    return all;
}

TEST(PiecesTest, WritesTheText) {
    EXPECT_EQ(hoisted().textOver(source), "int k = i + 1; x = a[k];");
    EXPECT_TRUE(Pieces{}.empty());
}

TEST(PiecesTest, JoinsWhatTouches) {
    Pieces all;
    all.keep({0, 3});
    all.keep({3, 5});
    all.keep({5, 5});
    ASSERT_EQ(all.pieces().size(), 1U);
    EXPECT_EQ(all.pieces()[0].origin, (SourceRange{0, 5}));
}

TEST(RepairedTextTest, KnowsWhereEverythingComesFrom) {
    const RepairedText repaired{hoisted(), source};
    EXPECT_EQ(repaired.originOf({8, 9}), (SourceRange{6, 7}));      // i, moved
    EXPECT_EQ(repaired.originOf({15, 16}), (SourceRange{0, 1}));    // x, kept
    EXPECT_EQ(repaired.originOf({0, 3}), (SourceRange{6, 11}));     // int, new
    EXPECT_EQ(repaired.originOf({21, 22}), (SourceRange{6, 11}));   // k, new
    EXPECT_EQ(repaired.originOf({15, 24}), (SourceRange{0, 13}));   // the assignment
    EXPECT_EQ(repaired.originOf({24, 24}), (SourceRange{13, 13}));  // the end
}

TEST(RepairedTextTest, ListsTheChanges) {
    const RepairedText repaired{hoisted(), source};
    ASSERT_EQ(repaired.edits().size(), 2U);
    EXPECT_EQ(repaired.edits()[0].range, (SourceRange{0, 0}));
    EXPECT_EQ(repaired.edits()[0].text, "int k = i + 1; ");
    EXPECT_EQ(repaired.edits()[1].range, (SourceRange{6, 11}));
    EXPECT_EQ(repaired.edits()[1].text, "k");
}

TEST(RepairedTextTest, KnowsWhatMadeEachChangeNecessary) {
    const RepairedText repaired{hoisted(), source};
    const auto& causes = repaired.causes();
    ASSERT_EQ(causes.size(), 2U);
    for (const auto& ranges : causes) {
        EXPECT_NE(std::find(ranges.begin(), ranges.end(), SourceRange{6, 11}), ranges.end());
    }
}

TEST(RepairedTextTest, NothingChangesWithoutRepairs) {
    Pieces all;
    all.keep({0, static_cast<std::uint32_t>(source.size())});
    const RepairedText repaired{all, source};
    EXPECT_EQ(repaired.text(), source);
    EXPECT_TRUE(repaired.edits().empty());
    EXPECT_EQ((RepairedText{Pieces{}, ""}.originOf({0, 0})), (SourceRange{0, 0}));
}

}  // namespace

}  // namespace krel::Check
