#include "zor/environment/datetime.h"

#include <locale.h>
#include <time.h>

#include <cmath>
#include <cwchar>

#include "zor/text/number_text.h"

namespace ZOR {
namespace {

// The display buffers' size, in units.
constexpr std::size_t kTextUnits = 260;
// 3000-12-31 23:59:59 GMT: times are read into calendar fields from 1970 up to the end of the
// year 3000, the range the product's dates have always had, so that a year never overflows the
// record's 16-bit field.
constexpr std::int64_t kLastTime = 32535215999;

bool isLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int monthLength(int year, int month) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && isLeapYear(year) ? 29 : kDays[month - 1];
}

// The record of `from` in the other sense: its time read one way and written the other.
SYSTEMTIME convertZone(const SYSTEMTIME& from, bool fromLocal) {
    SYSTEMTIME to = from;
    std::int64_t seconds = 0;
    if (CDateTime::systemTimeToTime(seconds, &from, fromLocal) &&
        CDateTime::timeToSystemTime(&to, seconds, !fromLocal))
        to.wMilliseconds = from.wMilliseconds;
    return to;
}

// The environment's time formats: its LC_TIME (through LANG and LC_ALL) and LC_CTYPE, or the
// plain "C" locale where the environment names none that exists.
locale_t environmentLocale() {
    locale_t loc = ::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "", static_cast<locale_t>(0));
    if (loc == static_cast<locale_t>(0))
        loc = ::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, "C", static_cast<locale_t>(0));
    return loc;
}

CZorString formatTime(const wchar_t* pattern, const tm& t, locale_t loc) {
    wchar_t text[kTextUnits];
    const std::size_t n = ::wcsftime_l(text, kTextUnits, pattern, &t, loc);
    text[n < kTextUnits ? n : 0] = 0;
    return CZorString(text);
}

}  // namespace

CDateTime::CDateTime() : record{1970, 1, 0, 1, 0, 0, 0, 0}, gmt(false) {}

CDateTime& CDateTime::operator=(std::int64_t time) {
    timeToSystemTime(&record, time, !gmt);
    return *this;
}

bool CDateTime::setYear(int year) {
    if (year < 1970 || year > 0xFFFF) return false;
    record.wYear = static_cast<std::uint16_t>(year);
    return true;
}

bool CDateTime::setMonth(int month) {
    if (month < 1 || month > 12 || record.wDay > monthLength(record.wYear, month)) return false;
    record.wMonth = static_cast<std::uint16_t>(month);
    return true;
}

bool CDateTime::setDay(int day) {
    if (day < 1 || day > monthLength(record.wYear, record.wMonth)) return false;
    record.wDay = static_cast<std::uint16_t>(day);
    return true;
}

bool CDateTime::setHour(int hour) {
    if (hour < 0 || hour > 23) return false;
    record.wHour = static_cast<std::uint16_t>(hour);
    return true;
}

bool CDateTime::setMinute(int minute) {
    if (minute < 0 || minute > 59) return false;
    record.wMinute = static_cast<std::uint16_t>(minute);
    return true;
}

bool CDateTime::setSecond(int second) {
    if (second < 0 || second > 59) return false;
    record.wSecond = static_cast<std::uint16_t>(second);
    return true;
}

CDateTime CDateTime::toGMT() const {
    CDateTime result(*this);
    if (gmt) return result;
    result.record = convertZone(record, true);
    result.gmt = true;
    return result;
}

CDateTime CDateTime::toLocal() const {
    CDateTime result(*this);
    if (!gmt) return result;
    result.record = convertZone(record, false);
    result.gmt = false;
    return result;
}

CDateTime CDateTime::now(bool gmt) {
    CDateTime result;
    result.gmt = gmt;
    timeToSystemTime(&result.record, static_cast<std::int64_t>(::time(nullptr)), !gmt);
    result.record.wMilliseconds = 0;
    return result;
}

std::int64_t CDateTime::time() const {
    std::int64_t seconds = 0;
    return systemTimeToTime(seconds, &record, !gmt) ? seconds : 0;
}

bool CDateTime::tmToSystemTime(SYSTEMTIME* st, const tm* t) {
    if (st == nullptr || t == nullptr) return false;
    st->wYear = static_cast<std::uint16_t>(t->tm_year + 1900);
    st->wMonth = static_cast<std::uint16_t>(t->tm_mon + 1);
    st->wDayOfWeek = static_cast<std::uint16_t>(t->tm_wday);
    st->wDay = static_cast<std::uint16_t>(t->tm_mday);
    st->wHour = static_cast<std::uint16_t>(t->tm_hour);
    st->wMinute = static_cast<std::uint16_t>(t->tm_min);
    st->wSecond = static_cast<std::uint16_t>(t->tm_sec);
    st->wMilliseconds = 0;
    return true;
}

bool CDateTime::systemTimeToTm(tm* t, const SYSTEMTIME* st, bool gmt) {
    if (t == nullptr || st == nullptr) return false;
    *t = tm{};
    t->tm_year = st->wYear - 1900;
    t->tm_mon = st->wMonth - 1;
    t->tm_wday = st->wDayOfWeek;
    t->tm_mday = st->wDay;
    t->tm_hour = st->wHour;
    t->tm_min = st->wMinute;
    t->tm_sec = st->wSecond;
    t->tm_isdst = -1;  // the zone's rules decide
    if (gmt) {
        ::timegm(t);
    } else {
        ::mktime(t);
    }
    return true;
}

bool CDateTime::timeToTm(tm* t, std::int64_t time, bool local) {
    if (t == nullptr || time < 0 || time > kLastTime) return false;
    const time_t seconds = static_cast<time_t>(time);
    return (local ? ::localtime_r(&seconds, t) : ::gmtime_r(&seconds, t)) != nullptr;
}

bool CDateTime::tmToTime(std::int64_t& time, tm* t, bool local) {
    if (t == nullptr) return false;
    const time_t seconds = local ? ::mktime(t) : ::timegm(t);
    if (seconds < 0) return false;
    time = static_cast<std::int64_t>(seconds);
    return true;
}

bool CDateTime::timeToSystemTime(SYSTEMTIME* st, std::int64_t time, bool local) {
    tm t{};
    return st != nullptr && timeToTm(&t, time, local) && tmToSystemTime(st, &t);
}

bool CDateTime::systemTimeToTime(std::int64_t& time, const SYSTEMTIME* st, bool local) {
    tm t{};
    return systemTimeToTm(&t, st, !local) && tmToTime(time, &t, local);
}

const wchar_t* dateTime(CZorString& out, const CDateTime& when, bool longDate) {
    // The record's fields as they stand, with the weekday worked out for the long form.
    tm t{};
    const SYSTEMTIME* st = when;
    CDateTime::systemTimeToTm(&t, st, true);
    locale_t loc = environmentLocale();
    CZorString text = formatTime(longDate ? L"%A, %-d %B %Y" : L"%x", t, loc);
    CZorString time = formatTime(L"%X", t, loc);
    if (loc != static_cast<locale_t>(0)) ::freelocale(loc);
    if (when.isGMT()) time += L" GMT";
    text += L" ";
    text += time;
    out = text;
    return out;
}

const wchar_t* dateTime(CZorString& out, std::int64_t when, bool longDate) {
    CDateTime local;
    local = when;
    return dateTime(out, local, longDate);
}

bool tmToAcadCDate(double& date, const tm* t) {
    if (t == nullptr) return false;
    CZorString text;
    text.format(L"%04d%02d%02d.%02d%02d%02d", t->tm_year + 1900, t->tm_mon + 1, t->tm_mday,
                t->tm_hour, t->tm_min, t->tm_sec);
    date = ZOR::atof(text);
    return true;
}

bool timeToAcadCDate(double& date, std::int64_t when) {
    tm t{};
    return CDateTime::timeToTm(&t, when, true) && tmToAcadCDate(date, &t);
}

bool acadCDateToTm(tm* t, double date) {
    if (t == nullptr || !std::isfinite(date) || date > 99999999.0 || date < 19000101.0)
        return false;
    wchar_t digits[64];
    if (!zorRtoS(digits, date, Zor::lDecimal, 8, false)) return false;
    CZorString text(digits);
    text.lfill(17, L'0');
    t->tm_sec = 0;
    t->tm_min = 0;
    std::swscanf(text, L"%4d%2d%2d%*c%2d%2d%2d", &t->tm_year, &t->tm_mon, &t->tm_mday, &t->tm_hour,
                 &t->tm_min, &t->tm_sec);
    t->tm_year -= 1900;
    if (t->tm_mon < 1) return false;
    t->tm_mon -= 1;
    t->tm_isdst = -1;
    ::mktime(t);
    return true;
}

bool acadCDateToTime(std::int64_t& when, double date) {
    tm t{};
    return acadCDateToTm(&t, date) && CDateTime::tmToTime(when, &t, true);
}

}  // namespace ZOR
