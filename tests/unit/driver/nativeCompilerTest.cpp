#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/time.h>

#include <cerrno>
#include <csignal>
#include <iostream>
#include <string>

#include "driver/nativeBuild.hpp"
#include "tests/unit/driver/failingCall.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/temporaryDirectory.hpp"

namespace {

using CompilerDriver::runNativeCompiler;

constexpr int refused = 77;  // the exit code of a child that may not make its calls fail

/// Runs scripts in the place of a native compiler.
class NativeCompilerTest : public testing::Test {
protected:
    /// The result of running `compiler`, in a process that has first done `prepare`.
    template <typename Prepare>
    ChildResult run(const std::string& compiler, Prepare prepare) {
        return runInChild([&] {
            if (!prepare()) {
                return refused;
            }
            return runNativeCompiler(compiler, "in put.s", "dir/runtime.o", "out");
        });
    }

    ChildResult run(const std::string& compiler) {
        return run(compiler, [] { return true; });
    }

    ChildResult runScript(const std::string& commands) { return run(script(commands)); }

    std::string script(const std::string& commands) {
        return directory.writeScript("cc", commands).string();
    }

    TemporaryDirectory directory;
};

TEST_F(NativeCompilerTest, PassesItsArgumentsInOrder) {
    const ChildResult result = runScript("for argument; do echo \"<$argument>\"; done; echo $0");
    EXPECT_TRUE(result.hasExitedWith(0));
    EXPECT_EQ(result.out,
              "<in put.s>\n"
              "<dir/runtime.o>\n"
              "<-o>\n"
              "<out>\n" +
                  (directory.path / "cc").string() + "\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(NativeCompilerTest, PassesNoPathThatItWouldTakeForAnOption) {
    const std::string compiler = script("for argument; do echo \"<$argument>\"; done");
    const ChildResult result =
        runInChild([&] { return runNativeCompiler(compiler, "@in.s", "-runtime.o", "-out"); });
    EXPECT_TRUE(result.hasExitedWith(0));
    EXPECT_EQ(result.out,
              "<./@in.s>\n"
              "<./-runtime.o>\n"
              "<-o>\n"
              "<./-out>\n");
    const ChildResult below = runInChild(
        [&] { return runNativeCompiler(compiler, "dir/@in.s", "/-runtime.o", "./@out"); });
    EXPECT_EQ(below.out,
              "<dir/@in.s>\n"
              "</-runtime.o>\n"
              "<-o>\n"
              "<./@out>\n");
}

TEST_F(NativeCompilerTest, InheritsTheStandardStreams) {
    const ChildResult result = runScript("echo to out; echo to err >&2");
    EXPECT_EQ(result.out, "to out\n");
    EXPECT_EQ(result.err, "to err\n");
}

TEST_F(NativeCompilerTest, GivesTheExitStatus) {
    EXPECT_TRUE(runScript("exit 0").hasExitedWith(0));
    EXPECT_TRUE(runScript("exit 2").hasExitedWith(2));
    EXPECT_TRUE(runScript("exit 255").hasExitedWith(255));
}

TEST_F(NativeCompilerTest, DeathByASignalIsOne) {
    EXPECT_TRUE(runScript("kill -KILL $$").hasExitedWith(1));
    EXPECT_TRUE(runScript("kill -TERM $$").hasExitedWith(1));
}

TEST_F(NativeCompilerTest, CompilerThatCannotRunIsReportedByTheChild) {
    const ChildResult missing = run("/nowhere/cc");
    EXPECT_TRUE(missing.hasExitedWith(127));
    EXPECT_EQ(missing.err, "Could not run /nowhere/cc: No such file or directory\n");
    const std::string plain = directory.write("plain", "").string();
    const ChildResult forbidden = run(plain);
    EXPECT_TRUE(forbidden.hasExitedWith(127));
    EXPECT_EQ(forbidden.err, "Could not run " + plain + ": Permission denied\n");
}

TEST_F(NativeCompilerTest, SearchPathIsNotUsed) {
    EXPECT_EQ(run("sh").err, "Could not run sh: No such file or directory\n");
}

TEST_F(NativeCompilerTest, CompilerThatCannotBeStartedIsReported) {
    const ChildResult result = run(script("exit 0"), [] {
        return makeCallsFail({SYS_fork, SYS_vfork, SYS_clone, SYS_clone3}, EAGAIN);
    });
    if (result.hasExitedWith(refused)) {
        GTEST_SKIP() << "system calls cannot be made to fail here";
    }
    EXPECT_TRUE(result.hasExitedWith(1));
    EXPECT_EQ(result.err, "Could not start " + (directory.path / "cc").string() +
                              ": Resource temporarily unavailable\n");
}

TEST_F(NativeCompilerTest, CompilerThatCannotBeWaitedForIsReported) {
    const ChildResult result =
        run(script("exit 0"), [] { return std::signal(SIGCHLD, SIG_IGN) != SIG_ERR; });
    EXPECT_TRUE(result.hasExitedWith(1));
    EXPECT_EQ(result.err,
              "Could not wait for " + (directory.path / "cc").string() + ": No child processes\n");
}

void ignoreAlarm(int /*signal*/) {}

TEST_F(NativeCompilerTest, InterruptedWaitGoesOn) {
    const auto interruptOften = [] {
        struct sigaction action = {};
        action.sa_handler = ignoreAlarm;  // without SA_RESTART: the wait fails with EINTR
        const itimerval every10ms = {{0, 10000}, {0, 10000}};
        return sigaction(SIGALRM, &action, nullptr) == 0 &&
               setitimer(ITIMER_REAL, &every10ms, nullptr) == 0;
    };
    const ChildResult result = run(script("sleep 0.3; exit 3"), interruptOften);
    EXPECT_TRUE(result.hasExitedWith(3));
    EXPECT_EQ(result.err, "");
}

}  // namespace
