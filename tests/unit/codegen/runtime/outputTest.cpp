#include "codegen/runtime/output.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "tests/unit/codegen/runtime/guardedText.hpp"
#include "tests/unit/support/childProcess.hpp"
#include "tests/unit/support/temporaryDirectory.hpp"

using krel::Output;

namespace {

std::unique_ptr<Output> openOutput(int descriptor) {
    auto output = std::make_unique<Output>();
    output->open(descriptor);
    return output;
}

/// Prints a text as one of the runtime's own strings: bytes after its end may be read.
void print(Output& output, std::string text) {
    const std::size_t length = text.size();
    text.resize(length + 16, '~');
    output.print(text.data(), length);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

class OutputFile : public testing::Test {
protected:
    OutputFile()
        : path(directory.path / "output"),
          descriptor(open(path.c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600)),
          output(openOutput(descriptor)) {}
    ~OutputFile() override { close(descriptor); }

    std::string contents() const {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }

    TemporaryDirectory directory;
    std::filesystem::path path;
    int descriptor;
    std::unique_ptr<Output> output;
};

}  // namespace

TEST_F(OutputFile, HoldsTextBackUntilItIsFlushed) {
    print(*output, "one");
    output->printLiteral(R"(\ttwo\n)");
    EXPECT_EQ(contents(), "");
    output->flush();
    EXPECT_EQ(contents(), "one\ttwo\n");
    output->flush();
    EXPECT_EQ(contents(), "one\ttwo\n");
}

TEST_F(OutputFile, PrintsTextAsItIsAndLiteralsDecoded) {
    print(*output, R"(\n)");
    output->printLiteral(R"(\\n)");
    output->printLiteral("");
    print(*output, "");
    output->flush();
    EXPECT_EQ(contents(), R"(\n\n)");
}

TEST_F(OutputFile, PrintsEveryByte) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    print(*output, bytes);
    output->flush();
    EXPECT_EQ(contents(), bytes);
}

TEST_F(OutputFile, TextsOfEverySizeAroundTheBuffersArriveInOrder) {
    std::string expected;
    char letter = 'a';
    for (const std::size_t length :
         {Output::capacity - 1, std::size_t{1}, std::size_t{1}, Output::capacity,
          Output::capacity + 1, std::size_t{17}, 3 * Output::capacity, std::size_t{0},
          Output::capacity - 20, std::size_t{20}, std::size_t{5}}) {
        const std::string text(length, letter++);
        print(*output, text);
        expected += text;
    }
    output->flush();
    EXPECT_TRUE(contents() == expected);
}

// The literal begins at every place relative to the buffer's end.
TEST_F(OutputFile, LiteralsCrossTheEndOfTheBuffer) {
    const std::string literal = R"(left\\middle\nand a right part that is long enough\t)";
    const std::string text = "left\\middle\nand a right part that is long enough\t";
    std::string expected;
    for (std::size_t left = 0; left < 80; ++left) {
        const std::string filling(Output::capacity - left, '.');
        print(*output, filling);
        output->printLiteral(literal.c_str());
        output->flush();
        expected += filling + text;
    }
    EXPECT_TRUE(contents() == expected);
}

TEST_F(OutputFile, PrintsALiteralLargerThanTheBuffer) {
    output->printLiteral(repeated(R"(ab\n\\)", 50'000).c_str());
    output->flush();
    EXPECT_TRUE(contents() == repeated("ab\n\\", 50'000));
}

TEST_F(OutputFile, ReadsNothingBeyondALiteralsPage) {
    const GuardedPages pages(1);
    std::string expected;
    for (std::size_t length = 0; length < 50; ++length) {
        output->printLiteral(pages.putAtEnd(std::string(length, 'x') + R"(\n)"));
        expected += std::string(length, 'x') + "\n";
    }
    output->flush();
    EXPECT_EQ(contents(), expected);
}

namespace {

/// What there is to read at once; nothing when nothing has been written.
std::string readAvailable(int file) {
    pollfd waiting{file, POLLIN, 0};
    char bytes[100];
    if (poll(&waiting, 1, 1000) != 1) {
        return {};
    }
    const ssize_t size = read(file, bytes, sizeof bytes);
    return {bytes, static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

}  // namespace

TEST(OutputTest, WritesAtOnceToATerminal) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal < 0) {
        GTEST_SKIP() << "the system has no pseudo-terminals";
    }
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    const int programSide = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    ASSERT_GE(programSide, 0);
    auto output = openOutput(programSide);
    print(*output, "prompt> ");
    EXPECT_EQ(readAvailable(terminal), "prompt> ");
    output->printLiteral("literal: ");
    EXPECT_EQ(readAvailable(terminal), "literal: ");
    close(programSide);
    close(terminal);
}

namespace {

/// Prints the same text over and over into a pipe from which little is read at a time, and returns
/// what arrived.
std::string printThroughPipe(const std::string& text, int count, bool mayBlock) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t writer = fork();
    if (writer == 0) {
        close(ends[0]);
        if (!mayBlock) {
            fcntl(ends[1], F_SETFL, O_NONBLOCK);
        }
        auto output = openOutput(ends[1]);
        for (int i = 0; i < count; ++i) {
            print(*output, text);
        }
        output->flush();
        _exit(output->hasFailed() ? 1 : 0);
    }
    close(ends[1]);
    std::string arrived;
    char bytes[3001];
    for (ssize_t length = 1; length != 0;) {
        usleep(20);
        length = read(ends[0], bytes, sizeof bytes);
        arrived.append(bytes, static_cast<std::size_t>(length));
    }
    close(ends[0]);
    int status = -1;
    waitpid(writer, &status, 0);
    EXPECT_EQ(status, 0);
    return arrived;
}

void ignoreSignal(int) {}

}  // namespace

TEST(OutputTest, WaitsForAPipeThatDoesNotBlock) {
    const std::string text = repeated("0123456789", 10'007);  // more than a pipe takes
    EXPECT_TRUE(printThroughPipe(text, 10, false) == repeated(text, 10));
    EXPECT_TRUE(printThroughPipe("line\n", 100'000, false) == repeated("line\n", 100'000));
}

TEST(OutputTest, GoesOnAfterSignals) {
    // Signals without an automatic restart interrupt the writer all the time.
    struct sigaction action = {};
    action.sa_handler = ignoreSignal;
    struct sigaction before = {};
    sigaction(SIGALRM, &action, &before);
    std::string arrived;
    const std::string text = repeated("0123456789", 10'007);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = fork();
    if (writer == 0) {
        close(ends[0]);
        const itimerval often = {{0, 200}, {0, 200}};
        setitimer(ITIMER_REAL, &often, nullptr);
        auto output = openOutput(ends[1]);
        for (int i = 0; i < 10; ++i) {
            print(*output, text);
        }
        output->flush();
        _exit(output->hasFailed() ? 1 : 0);
    }
    close(ends[1]);
    char bytes[3001];
    for (ssize_t length = 1; length != 0;) {
        usleep(500);
        length = read(ends[0], bytes, sizeof bytes);
        ASSERT_GE(length, 0);
        arrived.append(bytes, static_cast<std::size_t>(length));
    }
    close(ends[0]);
    int status = -1;
    waitpid(writer, &status, 0);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(arrived == repeated(text, 10));
}

namespace {

/// Prints a lot to the descriptor; the exit status tells whether that was noticed to fail.
int printToFailing(int descriptor) {
    auto output = openOutput(descriptor);
    for (int i = 0; i < 100; ++i) {
        print(*output, std::string(10'000, 'x'));
        output->flush();
    }
    return output->hasFailed() ? 3 : 0;
}

}  // namespace

TEST(OutputTest, ReportsAFullDiskOnce) {
    const ChildResult child =
        runInChild([] { return printToFailing(open("/dev/full", O_WRONLY)); });
    EXPECT_TRUE(child.hasExitedWith(3));
    EXPECT_EQ(child.err,
              "krel: runtime error: cannot write standard output: no space left on device\n");
}

TEST(OutputTest, ReportsAClosedDescriptor) {
    const ChildResult child = runInChild([] { return printToFailing(999); });
    EXPECT_TRUE(child.hasExitedWith(3));
    EXPECT_EQ(child.err,
              "krel: runtime error: cannot write standard output: bad file descriptor\n");
}

TEST(OutputTest, ReportsAnUnusualError) {
    TemporaryDirectory directory;
    const ChildResult child =
        runInChild([&] { return printToFailing(open(directory.path.c_str(), O_PATH)); });
    EXPECT_TRUE(child.hasExitedWith(3));
}

TEST(OutputTest, AClosedPipeEndsTheProcess) {
    const ChildResult child = runInChild([] {
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0) {
            return 1;
        }
        close(ends[0]);
        signal(SIGPIPE, SIG_DFL);
        return printToFailing(ends[1]);
    });
    EXPECT_TRUE(child.wasKilledBy(SIGPIPE));
    EXPECT_EQ(child.err, "");
}

TEST(OutputTest, AClosedPipeIsReportedWhereTheSignalIsIgnored) {
    const ChildResult child = runInChild([] {
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0) {
            return 1;
        }
        close(ends[0]);
        signal(SIGPIPE, SIG_IGN);
        return printToFailing(ends[1]);
    });
    EXPECT_TRUE(child.hasExitedWith(3));
    EXPECT_EQ(child.err, "krel: runtime error: cannot write standard output: broken pipe\n");
}

TEST(OutputTest, NothingPrintedIsNothingWritten) {
    const ChildResult child = runInChild([] {
        auto output = openOutput(999);
        output->printLiteral("");
        print(*output, "");
        output->flush();
        return output->hasFailed() ? 3 : 0;
    });
    EXPECT_TRUE(child.hasExitedWith(0));
    EXPECT_EQ(child.err, "");
}
