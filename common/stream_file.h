#ifndef COMMON_STREAM_FILE_H
#define COMMON_STREAM_FILE_H

#include <cstddef>
#include <istream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

// Use of a closed object, an invalid descriptor, or a stream that could not
// be made.
class StreamFileBaseError : public std::runtime_error {
public:
    explicit StreamFileBaseError(const std::string& message) : std::runtime_error(message) {}
};

// A buffered standard stream buffer directly over a descriptor it does not
// own, so that formatted stream I/O and raw reads and writes share it.
class FdStreamBuf : public std::streambuf {
public:
    // Reads or writes (by `mode`) `fd` through a buffer of `size` bytes.
    FdStreamBuf(int fd, std::ios_base::openmode mode, std::size_t size);
    // Writes out what is buffered; a failed write loses it silently.
    ~FdStreamBuf() override;

protected:
    int_type overflow(int_type c) override;
    int_type underflow() override;
    int sync() override;

private:
    bool Flush();
    int fd_;
    std::vector<char> buffer_;
};

// Owns one descriptor and, on demand, an input and an output stream over it.
// A copy owns a duplicate of the descriptor.
//
// On a closed object, reading, writing, the streams and SetNonBlocking()
// throw StreamFileBaseError "StreamFileBase: file is closed" without any
// system call; a failed system call throws ErrnoError naming the operation.
class StreamFileBase {
public:
    // A closed object.
    StreamFileBase() = default;
    // Owns `fd`; a negative one throws "StreamFileBase: invalid file descriptor".
    explicit StreamFileBase(int fd);
    // Owns a dup(2) of the other's descriptor, without its streams; a failed
    // dup throws "StreamFileBase: invalid file descriptor".
    StreamFileBase(const StreamFileBase& other);
    StreamFileBase& operator=(const StreamFileBase&) = delete;
    // Closes; a failing close(2) is not reported.
    virtual ~StreamFileBase();

    // The descriptor; -1 when closed.
    int GetFd() const { return fd_; }
    // Closes the current descriptor and takes `fd`; a negative one throws
    // "StreamFileBase: invalid file descriptor", leaving the object closed.
    void SetFd(int fd);
    // Releases the streams (flushing the output) and closes the descriptor;
    // does nothing when closed. A failing close(2) throws ErrnoError, and
    // the object is closed even so.
    void Close();
    // Sets O_NONBLOCK; throws ErrnoError when the flags cannot be read or set.
    void SetNonBlocking();

    // The output stream over the descriptor, made on first use (8192-byte
    // buffer); throws StreamFileBaseError when it cannot be made.
    std::ostream& GetOStream();
    // The input stream, as GetOStream().
    std::istream& GetIStream();

    // One write(2); a short count is returned as it is, -1 throws ErrnoError.
    std::size_t Write(const void* data, std::size_t length);
    // Write() of the text's bytes.
    std::size_t Write(const std::string& text);
    // One read(2); 0 means end of file, -1 throws ErrnoError.
    std::size_t Read(void* buffer, std::size_t length);
    // Replaces `out` by at most 4096 bytes from one Read(); empty at end of
    // file.
    std::size_t Read(std::string& out);

protected:
    // Throws "StreamFileBase: file is closed" when closed.
    void CheckOpen() const;

private:
    void CloseStreams();

    int fd_ = -1;
    std::unique_ptr<FdStreamBuf> out_buf_;
    std::unique_ptr<std::ostream> out_stream_;
    std::unique_ptr<FdStreamBuf> in_buf_;
    std::unique_ptr<std::istream> in_stream_;
    std::vector<char> read_buffer_;
};

// A file or device opened by path.
class StreamFile : public StreamFileBase {
public:
    // A closed file.
    StreamFile() = default;
    // open(2) of `path` with `flags`; failure throws ErrnoError
    // "StreamFile: Unable to open " and the path.
    StreamFile(const std::string& path, int flags);
    // Owns a dup(2) of the other's descriptor.
    StreamFile(const StreamFile& other) = default;
};

#endif
