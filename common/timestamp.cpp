#include "common/timestamp.h"

#include <sys/time.h>

#include <ctime>
#include <iomanip>

#include "common/errno_error.h"

namespace {

const int kSecondsPerDay = 86400;
const int kDaysPerYear = 365;
const int kDaysPerBlock = 4 * kDaysPerYear + 1;  // four years, the last one leap
const int kFirstYear = 1989;
const int kLastYearOffset = 2099 - kFirstYear;
const int kFirstLeapDayOfBlock = 3 * kDaysPerYear;  // days before the leap year

// Days before the first of each month, and in the whole year; the second
// row is for the leap year.
const int kDaysBeforeMonth[2][13] = {
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
};

std::int64_t FullYear(std::int64_t year) {
    if (year >= 100) return year;
    return year < 89 ? 2000 + year : 1900 + year;
}

// Integer division and remainder rounding towards minus infinity, so that a
// month of 0 or below steps back into the years before.
std::int64_t FloorDiv(std::int64_t a, std::int64_t b) { return a / b - (a % b < 0 ? 1 : 0); }
std::int64_t FloorMod(std::int64_t a, std::int64_t b) { return a - b * FloorDiv(a, b); }

}  // namespace

Timestamp::Timestamp(int year, int month, int day, int hour, int minute, double second) {
    // 64 bits so that no field read from text can overflow the sums.
    std::int64_t y = FullYear(year) - kFirstYear + FloorDiv(std::int64_t(month) - 1, 12);
    std::int64_t m = FloorMod(std::int64_t(month) - 1, 12);
    if (y < 0 || y > kLastYearOffset) return;  // outside 1989..2099: stays 0
    bool leap = y % 4 == 3;
    std::int64_t days =
        std::int64_t(day) - 1 + kDaysBeforeMonth[leap][m] + kDaysPerYear * y + y / 4;
    std::int64_t whole =
        days * kSecondsPerDay + std::int64_t(hour) * 3600 + std::int64_t(minute) * 60;
    value_ = double(whole) + second;
}

Timestamp Timestamp::now() {
    timeval tv;
    if (::gettimeofday(&tv, nullptr) != 0) throw ErrnoError("Unable to get current time");
    time_t seconds = tv.tv_sec;
    // localtime (not localtime_r) so that a change of TZ is seen at once.
    const std::tm* local = std::localtime(&seconds);
    if (!local) throw ErrnoError("Unable to get current time");
    Timestamp stamp(local->tm_year + 1900, local->tm_mon + 1, local->tm_mday, local->tm_hour,
                    local->tm_min, local->tm_sec);
    stamp.value_ += tv.tv_usec / 1000000.0;
    return stamp;
}

std::uint32_t Timestamp::WholeSeconds() const {
    // Values outside the 32-bit range only come from bad input; clamp them
    // rather than convert out of range.
    if (!(value_ > 0)) return 0;
    if (value_ >= 4294967295.0) return 4294967295u;
    return static_cast<std::uint32_t>(value_);
}

Timestamp::Date Timestamp::GetDate() const {
    std::uint32_t days = WholeSeconds() / kSecondsPerDay;
    std::uint32_t block = days / kDaysPerBlock;
    int d = int(days - block * kDaysPerBlock);
    // The last day of a block is the 366th day of its leap year.
    bool last_day = d == kDaysPerBlock - 1;
    int year_in_block = last_day ? 3 : d / kDaysPerYear;
    int day_of_year = last_day ? kDaysPerYear : d % kDaysPerYear;
    bool leap = d >= kFirstLeapDayOfBlock;
    int month = 11;
    while (kDaysBeforeMonth[leap][month] > day_of_year) --month;
    return Date{kFirstYear + 4 * int(block) + year_in_block, month + 1,
                day_of_year + 1 - kDaysBeforeMonth[leap][month]};
}

int Timestamp::year() const { return GetDate().year; }
int Timestamp::month() const { return GetDate().month; }
int Timestamp::day() const { return GetDate().day; }
int Timestamp::hour() const { return int(WholeSeconds() / 3600 % 24); }
int Timestamp::minute() const { return int(WholeSeconds() / 60 % 60); }

double Timestamp::second() const { return value_ - 60.0 * (WholeSeconds() / 60); }

std::ostream& operator<<(std::ostream& out, const Timestamp& timestamp) {
    out << std::setfill('0') << std::setw(4) << timestamp.year() << '-' << std::setw(2)
        << timestamp.month() << '-' << std::setw(2) << timestamp.day() << ' ' << std::setw(2)
        << timestamp.hour() << ':' << std::setw(2) << timestamp.minute() << ':'
        << std::setfill(' ');
    double second = timestamp.second();
    if (second < 10) out << '0';
    return out << second;
}

std::istream& operator>>(std::istream& in, Timestamp& timestamp) {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0;
    double second = 0;
    char c = 0;
    // The date: year, month and day separated by '-'.
    for (int* field : {&year, &month}) {
        if (!(in >> *field >> c)) return in;
        if (c != '-') {
            in.putback(c);
            in.setstate(std::ios::failbit);
            return in;
        }
    }
    if (!(in >> day)) return in;
    // The time of day follows a single blank; whatever part of it is there
    // counts and the rest is zero.
    if (in.get(c) && c != ' ') {
        in.putback(c);
        in.setstate(std::ios::failbit);
    }
    in >> hour >> c >> minute >> c >> second;
    in.clear();
    timestamp = Timestamp(year, month, day, hour, minute, second);
    return in;
}
