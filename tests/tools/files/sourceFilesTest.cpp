#include "tools/files/sourceFiles.hpp"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/unit/support/temporaryDirectory.hpp"

namespace krel {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// What a failing call says; empty when it does not fail.
std::string failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

/// The system forbids nothing to root: as long as it lives, such a process has the rights of
/// nobody.
class AsNobody {
public:
    AsNobody() { EXPECT_TRUE(getuid() != 0 || seteuid(65534) == 0); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
    ~AsNobody() { EXPECT_TRUE(getuid() != 0 || seteuid(0) == 0); }
};

class SourceFilesTest : public testing::Test {
protected:
    std::string pathOf(const std::string& name) const { return directory.path / name; }

    std::ptrdiff_t entries() const {
        return std::distance(fs::directory_iterator{directory.path}, fs::directory_iterator{});
    }

    TemporaryDirectory directory;
};

TEST_F(SourceFilesTest, FindsProgramsInTheOrderOfTheirPaths) {
    for (const char* const name : {"b.krl", "a.krl", "a/z.krl", "a/b/y.krl", "notes.txt", "krl",
                                   ".hidden.krl", ".git/c.krl", "x.krl.bak"}) {
        directory.write(name, "");
    }
    fs::create_symlink("a.krl", directory.path / "link.krl");
    fs::create_directory_symlink("a", directory.path / "linked");
    fs::create_directory(directory.path / "directory.krl");
    EXPECT_EQ(programsIn(directory.path),
              (Names{pathOf("a.krl"), pathOf("a/b/y.krl"), pathOf("a/z.krl"), pathOf("b.krl")}));
    EXPECT_EQ(programsIn(pathOf("directory.krl")), Names{});
    EXPECT_EQ(failureOf([&] { programsIn(pathOf("missing")); }),
              pathOf("missing") + ": No such file or directory");
}

TEST_F(SourceFilesTest, ReadsWhatIsThere) {
    const std::string text = std::string{"\0\r\n\xff", 4} + std::string(200000, 'x');
    EXPECT_EQ(readSource(directory.write("a.krl", text)), text);
    EXPECT_EQ(readSource(directory.write("empty.krl", "")), "");
}

TEST_F(SourceFilesTest, SaysWhyAFileCannotBeRead) {
    EXPECT_EQ(failureOf([&] { readSource(pathOf("missing.krl")); }),
              pathOf("missing.krl") + ": No such file or directory");
    EXPECT_EQ(failureOf([&] { readSource(directory.path); }),
              directory.path.string() + ": is a directory");
    ASSERT_EQ(mkfifo(pathOf("pipe.krl").c_str(), 0600), 0);
    EXPECT_EQ(failureOf([&] { readSource(pathOf("pipe.krl")); }),
              pathOf("pipe.krl") + ": is no regular file");
}

TEST_F(SourceFilesTest, ReplacesAFileAndKeepsItsMode) {
    const std::string path = directory.write("a.krl", "old");
    ASSERT_EQ(chmod(path.c_str(), 0751), 0);
    replaceSource(path, "new\n");
    EXPECT_EQ(readSource(path), "new\n");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0751});
    EXPECT_EQ(entries(), 1);
}

TEST_F(SourceFilesTest, ReplacesByRenaming) {
    const std::string path = directory.write("a.krl", "old");
    fs::create_hard_link(path, directory.path / "other");
    replaceSource(path, "new");
    EXPECT_EQ(readSource(pathOf("other")), "old");
}

TEST_F(SourceFilesTest, FollowsLinks) {
    directory.write("real/a.krl", "old");
    fs::create_symlink("real/a.krl", directory.path / "first.krl");
    fs::create_symlink("first.krl", directory.path / "second.krl");
    replaceSource(pathOf("second.krl"), "new");
    EXPECT_EQ(readSource(pathOf("real/a.krl")), "new");
    EXPECT_TRUE(fs::is_symlink(pathOf("first.krl")));
    EXPECT_TRUE(fs::is_symlink(pathOf("second.krl")));
    EXPECT_EQ(entries(), 3);
}

TEST_F(SourceFilesTest, LeavesAFileAloneThatCannotBeReplaced) {
    EXPECT_EQ(failureOf([&] { replaceSource(pathOf("missing.krl"), "new"); }),
              pathOf("missing.krl") + ": No such file or directory");
    const std::string path = directory.write("a.krl", "old");
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(chmod(directory.path.c_str(), 0777), 0);
    const AsNobody whoMayNotWriteIt;
    EXPECT_EQ(failureOf([&] { replaceSource(path, "new"); }), path + ": Permission denied");
    EXPECT_EQ(readSource(path), "old");
}

TEST_F(SourceFilesTest, ReplacesAFileOfSomebodyElse) {
    const std::string path = directory.write("a.krl", "old");
    ASSERT_EQ(chmod(path.c_str(), 04666), 0);
    ASSERT_EQ(chmod(directory.path.c_str(), 0777), 0);
    const AsNobody whoMayNotGiveFilesAway;
    replaceSource(path, "new");
    EXPECT_EQ(readSource(path), "new");
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, geteuid() == getuid() ? 04666U : 0666U);
    EXPECT_EQ(status.st_uid, geteuid());
}

/// A limit on the size of files stands for a full disk.
TEST_F(SourceFilesTest, LeavesNothingBehindWhenTheTextCannotBeWritten) {
    const std::string path = directory.write("a.krl", "old");
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{1000, before.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string said = failureOf([&] { replaceSource(path, std::string(5000, 'x')); });
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_DFL);
    EXPECT_EQ(said, path + ": File too large");
    EXPECT_EQ(readSource(path), "old");
    EXPECT_EQ(entries(), 1);
}

}  // namespace

}  // namespace krel
