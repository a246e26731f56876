#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "driver/nativeBuild.hpp"
#include "tests/unit/support/temporaryDirectory.hpp"

namespace fs = std::filesystem;

namespace {

using CompilerDriver::TemporaryAssembly;

/// Makes a directory of its own the system's one for temporary files.
class TemporaryAssemblyTest : public testing::Test {
protected:
    void SetUp() override { setenv("TMPDIR", directory.path.c_str(), 1); }
    void TearDown() override { unsetenv("TMPDIR"); }

    TemporaryDirectory directory;
};

TEST_F(TemporaryAssemblyTest, IsANewEmptyFileInTheTemporaryDirectory) {
    const TemporaryAssembly assembly;
    EXPECT_EQ(assembly.path().parent_path(), directory.path);
    EXPECT_TRUE(fs::is_regular_file(assembly.path()));
    EXPECT_EQ(fs::file_size(assembly.path()), 0U);
}

TEST_F(TemporaryAssemblyTest, NameIsMadeFromTheTemplate) {
    const TemporaryAssembly assembly;
    const std::string name = assembly.path().filename().string();
    EXPECT_EQ(name.size(), std::string{"krelcc-XXXXXX.s"}.size());
    EXPECT_TRUE(name.starts_with("krelcc-"));
    EXPECT_TRUE(name.ends_with(".s"));
    EXPECT_NE(name, "krelcc-XXXXXX.s");
}

TEST_F(TemporaryAssemblyTest, TwoHaveDifferentFiles) {
    const TemporaryAssembly first;
    const TemporaryAssembly second;
    EXPECT_NE(first.path(), second.path());
}

TEST_F(TemporaryAssemblyTest, IsDeletedWithItsObject) {
    fs::path path;
    {
        const TemporaryAssembly assembly;
        path = assembly.path();
        std::ofstream{path} << "text";
        EXPECT_TRUE(fs::exists(path));
    }
    EXPECT_FALSE(fs::exists(path));
    EXPECT_TRUE(fs::is_empty(directory.path));
}

TEST_F(TemporaryAssemblyTest, MayBeGoneAlready) {
    const TemporaryAssembly assembly;
    fs::remove(assembly.path());
}

TEST_F(TemporaryAssemblyTest, IsNeitherCopiedNorMoved) {
    EXPECT_FALSE(std::is_copy_constructible_v<TemporaryAssembly>);
    EXPECT_FALSE(std::is_copy_assignable_v<TemporaryAssembly>);
    EXPECT_FALSE(std::is_move_constructible_v<TemporaryAssembly>);
    EXPECT_FALSE(std::is_move_assignable_v<TemporaryAssembly>);
}

TEST_F(TemporaryAssemblyTest, FailureIsThrownWithTheSystemsMessage) {
    constexpr const char* noFilesHere = "/proc/self";
    setenv("TMPDIR", noFilesHere, 1);
    std::string probe = std::string{noFilesHere} + "/krelcc-XXXXXX.s";
    ASSERT_LT(mkstemps(probe.data(), 2), 0);
    const std::string expected =
        std::string{"could not create temporary assembly file: "} + std::strerror(errno);
    try {
        const TemporaryAssembly assembly;
        FAIL() << "made " << assembly.path();
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), expected);
    }
}

}  // namespace
