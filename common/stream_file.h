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
    FdStreamBuf(int fd, std::ios_base::openmode mode, std::size_t size);
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
class StreamFileBase {
public:
    StreamFileBase() = default;
    explicit StreamFileBase(int fd);
    StreamFileBase(const StreamFileBase& other);
    StreamFileBase& operator=(const StreamFileBase&) = delete;
    virtual ~StreamFileBase();

    int GetFd() const { return fd_; }
    // Closes the current descriptor and takes `fd`.
    void SetFd(int fd);
    void Close();
    void SetNonBlocking();

    std::ostream& GetOStream();
    std::istream& GetIStream();

    // One write(2); a short count is returned as it is.
    std::size_t Write(const void* data, std::size_t length);
    std::size_t Write(const std::string& text);
    // One read(2); 0 means end of file.
    std::size_t Read(void* buffer, std::size_t length);
    // Replaces `out` by at most 4096 bytes from one read.
    std::size_t Read(std::string& out);

protected:
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
    StreamFile() = default;
    StreamFile(const std::string& path, int flags);
    StreamFile(const StreamFile& other) = default;
};

#endif
