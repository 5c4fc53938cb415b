#include "common/stream_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <string>

#include "tests/support/error_text.h"

namespace {

// Both ends of a pipe, each owned by a StreamFileBase.
struct Pipe {
    Pipe() {
        int fds[2];
        if (::pipe(fds) != 0) throw std::runtime_error("pipe failed");
        reader.SetFd(fds[0]);
        writer.SetFd(fds[1]);
    }
    StreamFileBase reader;
    StreamFileBase writer;
};

}  // namespace

TEST(StreamFileBase, RejectsInvalidDescriptors) {
    const std::string invalid = "StreamFileBase: invalid file descriptor";
    EXPECT_EQ(ErrorText([] { StreamFileBase file(-1); }), invalid);
    StreamFileBase closed;
    EXPECT_EQ(ErrorText([&] { StreamFileBase copy(closed); }), invalid);

    Pipe pipe;
    int old_fd = pipe.reader.GetFd();
    EXPECT_EQ(ErrorText([&] { pipe.reader.SetFd(-1); }), invalid);
    EXPECT_EQ(::fcntl(old_fd, F_GETFD), -1);  // the old descriptor was closed
    EXPECT_EQ(pipe.reader.GetFd(), -1);
}

TEST(StreamFileBase, ClosedObjectRefusesEveryOperation) {
    StreamFileBase file;
    char byte = 0;
    std::string text;
    const std::function<void()> operations[] = {
        [&] { file.Write(&byte, 1); },
        [&] { file.Read(&byte, 1); },
        [&] { file.Read(text); },
        [&] { file.SetNonBlocking(); },
    };
    for (const auto& operation : operations)
        EXPECT_EQ(ErrorText(operation), "StreamFileBase: file is closed");
    EXPECT_EQ(ErrorText([&] { file.Close(); }), "");  // closing a closed object does nothing
}

TEST(StreamFileBase, ReadIntoStringTakesAtMost4096Bytes) {
    Pipe pipe;
    std::string pending(10000, '\0');
    for (std::size_t i = 0; i < pending.size(); ++i) pending[i] = static_cast<char>(i % 251);
    ASSERT_EQ(pipe.writer.Write(pending), pending.size());
    pipe.writer.Close();

    std::string out;
    std::string received;
    for (std::size_t want : {4096u, 4096u, 10000u - 8192u, 0u}) {
        out = "stale";
        EXPECT_EQ(pipe.reader.Read(out), want);
        EXPECT_EQ(out.size(), want);  // replaced, not appended to
        received += out;
    }
    EXPECT_EQ(received, pending);
}
