// Which compilers are next. Starting them is tested from outside, in tests/native.

#include "native/nextCompiler.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace krel::Native {

namespace {

namespace fs = std::filesystem;
using Compilers = std::vector<std::string>;

class NativeNextCompilerTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "krel-next-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { fs::remove_all(folder); }

    /// Makes a program; gives its path.
    std::string program(const std::string& name, fs::perms mode = fs::perms::owner_all) const {
        const fs::path path = folder / name;
        fs::create_directories(path.parent_path());
        std::ofstream{path} << "\n";
        fs::permissions(path, mode);
        return path.string();
    }

    std::string at(const std::string& name) const { return (folder / name).string(); }

    std::string path(std::initializer_list<const char*> names) const {
        std::string joined;
        for (const char* const name : names) {
            joined += (joined.empty() ? "" : ":") + at(name);
        }
        return joined;
    }

    fs::path folder;
};

TEST_F(NativeNextCompilerTest, GccComesBeforeClangWhereverItIs) {
    const std::string own = program("own/gcc");
    const std::string clang = program("a/clang");
    const std::string gcc = program("b/gcc");
    EXPECT_EQ(nextCompilers(path({"own", "a", "b"}), own, ""), (Compilers{gcc, clang}));
}

TEST_F(NativeNextCompilerTest, OnlyWhatIsBehindTheOwnFolderCounts) {
    program("a/gcc");
    const std::string own = program("own/gcc");
    const std::string gcc = program("b/gcc");
    EXPECT_EQ(nextCompilers(path({"a", "own", "b"}), own, ""), Compilers{gcc});
    EXPECT_EQ(nextCompilers(path({"b", "own"}), own, ""), Compilers{});
}

TEST_F(NativeNextCompilerTest, AllOfThePathCountsWhenTheOwnFolderIsNotOnIt) {
    const std::string own = program("own/gcc");
    const std::string gcc = program("a/gcc");
    const std::string clang = program("b/clang");
    EXPECT_EQ(nextCompilers(path({"a", "b"}), own, ""), (Compilers{gcc, clang}));
}

TEST_F(NativeNextCompilerTest, TheOwnFileUnderAnotherNameIsNoOther) {
    const std::string own = program("own/gcc");
    fs::create_directories(folder / "a");
    fs::create_symlink(own, folder / "a/gcc");
    fs::create_hard_link(own, folder / "a/clang");
    const std::string gcc = program("b/gcc");
    EXPECT_EQ(nextCompilers(path({"own", "a", "b", "own"}), own, ""), Compilers{gcc});
}

TEST_F(NativeNextCompilerTest, ThoseThatHandedOnAlreadyAreLeftOut) {
    const std::string own = program("own/gcc");
    const std::string other = program("other/gcc");
    const std::string clang = program("b/clang");
    EXPECT_EQ(nextCompilers(path({"own", "other", "b"}), own, identityOf(other)), Compilers{clang});
}

TEST_F(NativeNextCompilerTest, AllThatHandedOnAreLeftOut) {
    const std::string own = program("own/gcc");
    const std::string first = program("first/gcc");
    const std::string second = program("second/gcc");
    fs::create_directories(folder / "link");
    fs::create_symlink(own, folder / "link/gcc");
    const std::string last = program("last/gcc");
    EXPECT_EQ(nextCompilers(path({"own", "link", "second", "first", "last"}), own,
                            identityOf(first) + identityOf(second)),
              Compilers{last});
}

TEST_F(NativeNextCompilerTest, IdentitiesAreComparedAsAWhole) {
    const std::string own = program("own/gcc");
    const std::string gcc = program("a/gcc");
    const std::string identity = identityOf(gcc);
    const std::string withoutBlank = identity.substr(0, identity.size() - 1);
    EXPECT_EQ(nextCompilers(path({"own", "a"}), own, "1" + identity), Compilers{gcc});
    EXPECT_EQ(nextCompilers(path({"own", "a"}), own, withoutBlank + "1 "), Compilers{gcc});
}

TEST_F(NativeNextCompilerTest, WhatCannotRunIsPassedOver) {
    const std::string own = program("own/gcc");
    program("a/gcc", fs::perms::owner_read);
    fs::create_directories(folder / "b/gcc");
    fs::create_directories(folder / "c");
    fs::create_symlink(folder / "missing", folder / "c/gcc");
    const std::string gcc = program("d/gcc");
    EXPECT_EQ(nextCompilers(path({"own", "a", "b", "c", "missing", "d"}), own, ""), Compilers{gcc});
}

TEST_F(NativeNextCompilerTest, EmptyPiecesAreTheWorkingDirectory) {
    const std::string own = program("own/gcc");
    const fs::path before = fs::current_path();
    program("gcc");
    fs::current_path(folder);
    for (const std::string& searched : {at("own") + ":", at("own") + "::" + at("a")}) {
        EXPECT_EQ(nextCompilers(searched, own, ""), Compilers{"./gcc"});
    }
    EXPECT_EQ(nextCompilers("", own, ""), Compilers{"./gcc"});
    fs::current_path(before);
}

TEST_F(NativeNextCompilerTest, FilesThatDoNotExistHaveNoIdentity) {
    EXPECT_EQ(identityOf(at("missing")), "");
    EXPECT_NE(identityOf(program("a/gcc")), identityOf(program("b/gcc")));
}

}  // namespace

}  // namespace krel::Native
