#ifndef COMMON_TIMESTAMP_H
#define COMMON_TIMESTAMP_H

#include <cstdint>
#include <istream>
#include <ostream>

// A local calendar time with a fractional second, held as seconds since
// 1989-01-01 00:00:00 on the local wall clock. The calendar arithmetic
// covers 1989 to 2099, where every fourth year from 1992 on is a leap year.
// Text form: "YYYY-MM-DD HH:MM:SS.SS".
class Timestamp {
public:
    Timestamp() = default;
    Timestamp(double value) : value_(value) {}
    // From calendar fields. A year below 100 is two-digit (below 89 means
    // 20xx); months above 12 run into the next years and day, hour, minute
    // and second carry into the fields above them. A date outside 1989..2099
    // gives 0.
    Timestamp(int year, int month, int day, int hour, int minute, double second);

    // The current local time; throws ErrnoError when the clock cannot be read.
    static Timestamp now();

    double get() const { return value_; }
    void set(double value) { value_ = value; }

    int year() const;
    int month() const;  // 1..12
    int day() const;    // 1..31
    int hour() const;
    int minute() const;
    double second() const;  // with the fraction

private:
    struct Date {
        int year;
        int month;  // 1..12
        int day;    // 1..31
    };
    // The whole seconds of the value; a 32-bit count reaches past 2099.
    std::uint32_t WholeSeconds() const;
    Date GetDate() const;

    double value_ = 0;
};

// Writes "YYYY-MM-DD HH:MM:SS" with the fraction of the second written at the
// stream's precision.
std::ostream& operator<<(std::ostream& out, const Timestamp& timestamp);
// Reads a date and an optional time of day. A date that cannot be read fails
// the stream and leaves the timestamp unchanged; once the date is read, a
// missing or partial time counts as zero and the stream is left good.
std::istream& operator>>(std::istream& in, Timestamp& timestamp);

#endif
