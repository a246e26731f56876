// Messages on streams.

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tools/protocol/framing.hpp"

namespace krel::Protocol {

namespace {

/// A pipe whose ends are closed together with the object.
class Pipe {
public:
    Pipe() {
        if (pipe(ends.data()) != 0) {
            throw std::runtime_error("no pipe");
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        closeInput();
        close(ends[0]);
    }

    int output() const { return ends[0]; }
    int input() const { return ends[1]; }
    /// Texts are short: the pipe has room for them.
    void send(std::string_view text) const {
        ASSERT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void closeInput() {
        if (ends[1] >= 0) {
            close(ends[1]);
            ends[1] = -1;
        }
    }

private:
    std::array<int, 2> ends{};
};

TEST(ContentLengthTest, StandsAmongOtherHeaders) {
    EXPECT_EQ(contentLength("Content-Length: 12"), 12U);
    EXPECT_EQ(contentLength("Content-Type: text; charset=utf-8\r\ncontent-LENGTH:\t 7 "), 7U);
    EXPECT_EQ(contentLength("Content-Length: 0\r\nother: 5"), 0U);
}

TEST(ContentLengthTest, IsANumber) {
    for (const std::string_view value : {"", "-1", "+1", "1x", "0x10", "1 2", "1.0"}) {
        EXPECT_THROW(contentLength("Content-Length: " + std::string{value}), std::runtime_error)
            << value;
    }
}

TEST(ContentLengthTest, IsNeeded) {
    EXPECT_THROW(contentLength(""), std::runtime_error);
    EXPECT_THROW(contentLength("Content-Type: text"), std::runtime_error);
    EXPECT_THROW(contentLength("Content-Length 12"), std::runtime_error);
    EXPECT_THROW(contentLength("other\r\nContent-Length: 12"), std::runtime_error);
}

TEST(ContentLengthTest, HasALimit) {
    EXPECT_EQ(contentLength("Content-Length: " + std::to_string(longestMessage)), longestMessage);
    EXPECT_THROW(contentLength("Content-Length: " + std::to_string(longestMessage + 1)),
                 std::runtime_error);
    EXPECT_THROW(contentLength("Content-Length: 99999999999999999999999"), std::runtime_error);
}

TEST(MessageReaderTest, TakesMessagesApart) {
    Pipe pipe;
    pipe.send(
        "Content-Length: 2\r\n\r\n{}Content-Length: 8\r\nother: x\r\n\r\na\r\n\r\nb\r\n"
        "Content-Length: 0\r\n\r\n");
    pipe.closeInput();
    MessageReader reader{pipe.output()};
    EXPECT_EQ(reader.next(), "{}");
    EXPECT_EQ(reader.next(), "a\r\n\r\nb\r\n");
    EXPECT_EQ(reader.next(), "");
    EXPECT_EQ(reader.next(), std::nullopt);
}

TEST(MessageReaderTest, KnowsWhetherThereIsMore) {
    Pipe pipe;
    MessageReader reader{pipe.output()};
    EXPECT_FALSE(reader.hasMore());
    pipe.send("Content-Length: 1\r\n\r\naContent-Length: 1\r\n\r\nb");
    EXPECT_TRUE(reader.hasMore());
    EXPECT_EQ(reader.next(), "a");
    EXPECT_TRUE(reader.hasMore());  // in its own memory
    EXPECT_EQ(reader.next(), "b");
    EXPECT_FALSE(reader.hasMore());
    pipe.closeInput();
    EXPECT_TRUE(reader.hasMore());  // the end
}

TEST(MessageReaderTest, RefusesAnEndWithinAMessage) {
    for (const std::string_view text : {"C", "Content-Length: 2\r\n", "Content-Length: 2\r\n\r\n",
                                        "Content-Length: 2\r\n\r\n{"}) {
        Pipe pipe;
        pipe.send(text);
        pipe.closeInput();
        MessageReader reader{pipe.output()};
        EXPECT_THROW(reader.next(), std::runtime_error) << text;
    }
}

/// Before they end, so that a client cannot fill the memory.
TEST(MessageReaderTest, RefusesHeadersWithoutEnd) {
    Pipe pipe;
    pipe.send(std::string(5000, 'x'));
    pipe.closeInput();
    MessageReader reader{pipe.output()};
    try {
        reader.next();
        FAIL();
    } catch (const std::runtime_error& fault) {
        EXPECT_STREQ(fault.what(), "the headers of a message have no end");
    }
}

TEST(MessageReaderTest, RefusesWhatCannotBeRead) {
    MessageReader reader{-1};
    EXPECT_THROW(reader.next(), std::runtime_error);
}

TEST(WriteMessageTest, IsReadAsTheSame) {
    Pipe pipe;
    writeMessage(pipe.input(), "\xc3\xa4\r\n\r\n");
    writeMessage(pipe.input(), "");
    MessageReader reader{pipe.output()};
    EXPECT_EQ(reader.next(), "\xc3\xa4\r\n\r\n");
    EXPECT_EQ(reader.next(), "");
}

TEST(WriteMessageTest, CountsBytes) {
    Pipe pipe;
    writeMessage(pipe.input(), "\xc3\xa4");
    std::array<char, 64> written{};
    const ssize_t count = read(pipe.output(), written.data(), written.size());
    EXPECT_EQ((std::string_view{written.data(), static_cast<std::size_t>(count)}),
              "Content-Length: 2\r\n\r\n\xc3\xa4");
}

TEST(WriteMessageTest, RefusesWhatCannotBeWritten) {
    EXPECT_THROW(writeMessage(-1, "{}"), std::runtime_error);
}

}  // namespace

}  // namespace krel::Protocol
