#include "common/stream_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "common/errno_error.h"

namespace {
const std::size_t kStreamBufferSize = 8192;
const std::size_t kReadChunk = 4096;
}  // namespace

FdStreamBuf::FdStreamBuf(int fd, std::ios_base::openmode mode, std::size_t size)
    : fd_(fd), buffer_(size) {
    if (mode & std::ios_base::out)
        setp(buffer_.data(), buffer_.data() + buffer_.size());
    else
        setg(buffer_.data(), buffer_.data(), buffer_.data());
}

FdStreamBuf::~FdStreamBuf() { Flush(); }

bool FdStreamBuf::Flush() {
    char* p = pbase();
    while (p < pptr()) {
        ssize_t n = ::write(fd_, p, pptr() - p);
        if (n <= 0) {
            setp(buffer_.data(), buffer_.data() + buffer_.size());
            return false;
        }
        p += n;
    }
    setp(buffer_.data(), buffer_.data() + buffer_.size());
    return true;
}

FdStreamBuf::int_type FdStreamBuf::overflow(int_type c) {
    if (!pbase() || !Flush()) return traits_type::eof();
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
    }
    return traits_type::not_eof(c);
}

FdStreamBuf::int_type FdStreamBuf::underflow() {
    if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
    ssize_t n = ::read(fd_, buffer_.data(), buffer_.size());
    if (n <= 0) return traits_type::eof();
    setg(buffer_.data(), buffer_.data(), buffer_.data() + n);
    return traits_type::to_int_type(*gptr());
}

int FdStreamBuf::sync() { return !pbase() || Flush() ? 0 : -1; }

StreamFileBase::StreamFileBase(int fd) { SetFd(fd); }

StreamFileBase::StreamFileBase(const StreamFileBase& other) {
    int copy = ::dup(other.fd_);
    if (copy < 0) throw StreamFileBaseError("StreamFileBase: invalid file descriptor");
    fd_ = copy;
}

StreamFileBase::~StreamFileBase() {
    try {
        Close();
    } catch (const std::exception&) {
        // The descriptor is unusable either way; a destructor must not throw.
    }
}

void StreamFileBase::SetFd(int fd) {
    Close();
    if (fd < 0) throw StreamFileBaseError("StreamFileBase: invalid file descriptor");
    fd_ = fd;
}

void StreamFileBase::CloseStreams() {
    out_stream_.reset();
    out_buf_.reset();
    in_stream_.reset();
    in_buf_.reset();
}

void StreamFileBase::Close() {
    CloseStreams();
    if (fd_ < 0) return;
    int fd = fd_;
    fd_ = -1;  // close(2) releases the descriptor even when it reports an error
    if (::close(fd) != 0) throw ErrnoError("StreamFileBase: unable to close file");
}

void StreamFileBase::CheckOpen() const {
    if (fd_ < 0) throw StreamFileBaseError("StreamFileBase: file is closed");
}

void StreamFileBase::SetNonBlocking() {
    CheckOpen();
    int flags = ::fcntl(fd_, F_GETFL);
    if (flags == -1) throw ErrnoError("StreamFileBase: unable to get file flags");
    if (::fcntl(fd_, F_SETFL, flags | O_NONBLOCK) == -1)
        throw ErrnoError("StreamFileBase: unable to set file flags");
}

std::ostream& StreamFileBase::GetOStream() {
    CheckOpen();
    if (!out_stream_) {
        out_buf_.reset(new FdStreamBuf(fd_, std::ios_base::out, kStreamBufferSize));
        out_stream_.reset(new std::ostream(out_buf_.get()));
        if (out_stream_->fail()) {
            CloseStreams();
            throw StreamFileBaseError("StreamFileBase: unable to create ostream");
        }
    }
    return *out_stream_;
}

std::istream& StreamFileBase::GetIStream() {
    CheckOpen();
    if (!in_stream_) {
        in_buf_.reset(new FdStreamBuf(fd_, std::ios_base::in, kStreamBufferSize));
        in_stream_.reset(new std::istream(in_buf_.get()));
        if (in_stream_->fail()) {
            CloseStreams();
            throw StreamFileBaseError("StreamFileBase: unable to create istream");
        }
    }
    return *in_stream_;
}

std::size_t StreamFileBase::Write(const void* data, std::size_t length) {
    CheckOpen();
    ssize_t n = ::write(fd_, data, length);
    if (n == -1) throw ErrnoError("StreamFileBase: error in Write");
    return static_cast<std::size_t>(n);
}

std::size_t StreamFileBase::Write(const std::string& text) {
    return Write(text.data(), text.size());
}

std::size_t StreamFileBase::Read(void* buffer, std::size_t length) {
    CheckOpen();
    ssize_t n = ::read(fd_, buffer, length);
    if (n == -1) throw ErrnoError("StreamFileBase: error in Read");
    return static_cast<std::size_t>(n);
}

std::size_t StreamFileBase::Read(std::string& out) {
    CheckOpen();
    if (read_buffer_.size() < kReadChunk) read_buffer_.resize(kReadChunk, 0);
    std::size_t n = Read(read_buffer_.data(), kReadChunk);
    out.assign(read_buffer_.data(), n);
    return n;
}

StreamFile::StreamFile(const std::string& path, int flags) {
    int fd = ::open(path.c_str(), flags);
    // errno is taken before the message is built: building it allocates.
    if (fd < 0) {
        int error = errno;
        throw ErrnoError("StreamFile: Unable to open " + path, error);
    }
    SetFd(fd);
}
