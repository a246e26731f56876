// The search for programs and for the runtime object.

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "driver/nativeBuild.hpp"
#include "tests/unit/driver/failingCall.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/temporaryDirectory.hpp"

namespace fs = std::filesystem;

namespace {

constexpr int refused = 77;  // the exit code of a child that may not make its calls fail

/// What findProgram("tool") gives in `directory` with PATH set to `path`, or unset for null.
std::string found(const char* path, const fs::path& directory = "/") {
    const ChildResult child = runInChild([&] {
        fs::current_path(directory);
        if (path == nullptr) {
            unsetenv("PATH");
        } else {
            setenv("PATH", path, 1);
        }
        std::cout << CompilerDriver::findProgram("tool");
        return 0;
    });
    return child.out;
}

class ProgramSearchTest : public testing::Test {
protected:
    void SetUp() override {
        tool = directory.writeScript("bin/tool", "").string();
        bin = (directory.path / "bin").string();
    }

    TemporaryDirectory directory;
    std::string tool;
    std::string bin;
};

TEST_F(ProgramSearchTest, GivesThePathOfAnExecutable) {
    EXPECT_EQ(found(bin.c_str()), tool);
    EXPECT_EQ(found(("/nowhere:" + bin).c_str()), tool);
    EXPECT_EQ(found((bin + ":/nowhere").c_str()), tool);
}

TEST_F(ProgramSearchTest, FirstDirectoryWins) {
    const std::string other = directory.writeScript("other/tool", "").parent_path().string();
    EXPECT_EQ(found((other + ":" + bin).c_str()), other + "/tool");
    EXPECT_EQ(found((bin + ":" + other).c_str()), tool);
}

TEST_F(ProgramSearchTest, EmptyPieceIsTheWorkingDirectory) {
    EXPECT_EQ(found((":" + bin).c_str(), bin), "./tool");
    EXPECT_EQ(found("/nowhere::/nothing", bin), "./tool");
    EXPECT_EQ(found("/nowhere:", bin), "./tool");
    EXPECT_EQ(found("", bin), "./tool");
    EXPECT_EQ(found((bin + ":").c_str(), bin), tool);
}

TEST_F(ProgramSearchTest, RelativePieceGivesARelativePath) {
    EXPECT_EQ(found("bin", directory.path), "bin/tool");
}

TEST_F(ProgramSearchTest, UnsetPathFindsNothing) {
    EXPECT_EQ(found(nullptr, bin), "");
}

TEST_F(ProgramSearchTest, FindsNothingElsewhere) {
    EXPECT_EQ(found("/nowhere"), "");
    EXPECT_EQ(found(""), "");
    EXPECT_EQ(found(":"), "");
    EXPECT_EQ(found((bin + "/").c_str()), tool);
}

TEST_F(ProgramSearchTest, PassesOverWhatIsNotExecutable) {
    const std::string plain = directory.write("plain/tool", "").parent_path().string();
    EXPECT_EQ(found(plain.c_str()), "");
    EXPECT_EQ(found((plain + ":" + bin).c_str()), tool);
}

TEST_F(ProgramSearchTest, TakesADirectoryThatMayBeSearched) {
    fs::create_directories(directory.path / "strange" / "tool");
    const std::string strange = (directory.path / "strange").string();
    EXPECT_EQ(found((strange + ":" + bin).c_str()), strange + "/tool");
}

/// What findRuntime gives in `directory`. With `canReadLinks` false the running program's own file
/// cannot be found by its link; nothing when that cannot be arranged.
std::string runtimeIn(const fs::path& directory, const std::string& argv0, bool canReadLinks) {
    const ChildResult child = runInChild([&] {
        fs::current_path(directory);
        if (!canReadLinks && !makeCallsFail({SYS_readlink, SYS_readlinkat}, EACCES)) {
            return refused;
        }
        std::cout << CompilerDriver::findRuntime(argv0.c_str()).string();
        return 0;
    });
    return child.hasExitedWith(0) ? child.out : "<failed>";
}

class RuntimeSearchTest : public testing::Test {
protected:
    void SetUp() override {
        const ChildResult probe = runInChild([] {
            return makeCallsFail({SYS_readlink, SYS_readlinkat}, EACCES) ? 0 : refused;
        });
        canMakeCallsFail = probe.hasExitedWith(0);
    }

    TemporaryDirectory directory;
    bool canMakeCallsFail = false;
};

TEST_F(RuntimeSearchTest, WorkingDirectoryIsTheLastResort) {
    const fs::path runtime = directory.write("codegen/runtime.o", "");
    EXPECT_EQ(runtimeIn(directory.path, "krelcc", true), runtime.string());
}

TEST_F(RuntimeSearchTest, NothingIsFoundWithoutARegularFile) {
    EXPECT_EQ(runtimeIn(directory.path, "krelcc", true), "");
    fs::create_directories(directory.path / "codegen" / "runtime.o");
    EXPECT_EQ(runtimeIn(directory.path, "krelcc", true), "");
}

TEST_F(RuntimeSearchTest, WithoutTheLinkTheNameGivesTheDirectory) {
    if (!canMakeCallsFail) {
        GTEST_SKIP() << "system calls cannot be made to fail here";
    }
    const fs::path runtime = directory.write("install/codegen/runtime.o", "");
    const fs::path elsewhere = directory.write("elsewhere/file", "").parent_path();
    EXPECT_EQ(runtimeIn(elsewhere, (directory.path / "install/krelcc").string(), false),
              runtime.string());
    EXPECT_EQ(runtimeIn(elsewhere, (directory.path / "install/bin/krelcc").string(), false),
              runtime.string());
    EXPECT_EQ(runtimeIn(directory.path, "install/krelcc", false), runtime.string());
    EXPECT_EQ(runtimeIn(elsewhere, "krelcc", false), "");
}

TEST_F(RuntimeSearchTest, WithoutAnyNameTheWorkingDirectoryIsMeant) {
    if (!canMakeCallsFail) {
        GTEST_SKIP() << "system calls cannot be made to fail here";
    }
    const fs::path runtime = directory.write("codegen/runtime.o", "");
    const fs::path below = directory.write("below/file", "").parent_path();
    EXPECT_EQ(runtimeIn(directory.path, "", false), runtime.string());
    EXPECT_EQ(runtimeIn(below, "", false), runtime.string());
}

}  // namespace
