#ifndef COMMON_SYSLOG_STREAM_H
#define COMMON_SYSLOG_STREAM_H

#include <functional>
#include <streambuf>
#include <string>

// The process's connection to syslog, under one identity set once.
class SysLog {
public:
    // Delivers one message at a syslog priority; by default syslog(3).
    typedef std::function<void(int priority, const std::string& text)> Writer;

    static SysLog& Instance();

    SysLog();
    SysLog(const SysLog&) = delete;
    SysLog& operator=(const SysLog&) = delete;

    // Sets the identity; it can be set once and never changed.
    void SetIdentity(const std::string& name);
    const std::string& Identity() const { return identity_; }
    // Sends `text` at `level` (5 informational; see PriorityOfLevel).
    void Write(const std::string& text, int level);
    // Replaces where messages go (a simulated analyzer logs to a socket of
    // its own root instead of the host's syslog).
    void SetWriter(Writer writer) { writer_ = std::move(writer); }

    // The syslog priority of a level: 0 alert, 1 critical, 3 warning,
    // 4 notice, 5 informational, 6 debug, anything else error.
    static int PriorityOfLevel(int level);

private:
    std::string identity_;
    Writer writer_;
};

// A stream buffer that sends every completed line to syslog. It has no put
// area, so every character reaches overflow(); a line without its newline
// stays in the buffer.
template <typename CharT>
class basic_syslogbuf : public std::basic_streambuf<CharT> {
public:
    typedef typename std::basic_streambuf<CharT>::int_type int_type;
    typedef typename std::basic_streambuf<CharT>::traits_type traits_type;

    explicit basic_syslogbuf(const std::string& identity = "", int level = 5,
                             SysLog* syslog = &SysLog::Instance())
        : syslog_(syslog), level_(level) {
        if (!identity.empty()) syslog_->SetIdentity(identity);
    }

    void set_level(int level) { level_ = level; }

protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) return c;
        line_ += traits_type::to_char_type(c);
        if (traits_type::to_char_type(c) == CharT('\n')) {
            syslog_->Write(line_, level_);
            level_ = 5;
            line_.clear();
        }
        return c;
    }

private:
    SysLog* syslog_;
    int level_;
    std::basic_string<CharT> line_;
};

typedef basic_syslogbuf<char> syslogbuf;

#endif
