// Calendar date and time that knows whether it is local or GMT, conversions between the three
// forms of a point in time (the calendar record, the runtime's `tm`, seconds since 1970), display
// text in the environment's locale, and the date number of the CAD product, a double of the form
// YYYYMMDD.HHMMSS.
#pragma once

#include <cstdint>
#include <ctime>

#include "zor/text/string.h"

namespace ZOR {

// The calendar record: eight 16-bit fields.
struct SYSTEMTIME {
    std::uint16_t wYear;
    std::uint16_t wMonth;      // 1..12
    std::uint16_t wDayOfWeek;  // 0 = Sunday
    std::uint16_t wDay;
    std::uint16_t wHour;
    std::uint16_t wMinute;
    std::uint16_t wSecond;
    std::uint16_t wMilliseconds;
};

class CDateTime {
  public:
    // 1970-01-01 00:00:00, local.
    CDateTime();
    CDateTime(const CDateTime& other) = default;
    CDateTime& operator=(const CDateTime& other) = default;
    // The fields from a count of seconds, read in the sense of the GMT flag; a time that
    // timeToTm refuses leaves them as they are.
    CDateTime& operator=(std::int64_t time);

    int year() const { return record.wYear; }
    int month() const { return record.wMonth; }
    int day() const { return record.wDay; }
    int hour() const { return record.wHour; }
    int minute() const { return record.wMinute; }
    int second() const { return record.wSecond; }
    bool isGMT() const { return gmt; }

    // Each setter refuses a value out of its range with false and keeps the field. Months and
    // days check each other: going from 31 January to February takes setDay first.
    bool setYear(int year);      // 1970 and later
    bool setMonth(int month);    // 1..12, and the current day must exist in it
    bool setDay(int day);        // 1..length of the current month
    bool setHour(int hour);      // 0..23
    bool setMinute(int minute);  // 0..59
    bool setSecond(int second);  // 0..59
    // Sets the flag only; no field changes.
    void setGMT(bool isGmt) { gmt = isGmt; }

    // Converted by the current time zone; an object already in the wanted sense is copied.
    CDateTime toGMT() const;
    CDateTime toLocal() const;
    // The current time to the second, in GMT or local.
    static CDateTime now(bool gmt);

    // Seconds since 1970, read in the sense of the flag; 0 if the fields can't be expressed.
    std::int64_t time() const;
    operator std::int64_t() const { return time(); }
    operator const SYSTEMTIME*() const { return &record; }

    // Static conversions. `local` true reads or writes a time by the local zone. All are false
    // for a null record.
    // Field by field: year + 1900, month + 1, milliseconds 0.
    static bool tmToSystemTime(SYSTEMTIME* st, const tm* t);
    // Field by field, then normalised by the GMT or the local calendar.
    static bool systemTimeToTm(tm* t, const SYSTEMTIME* st, bool gmt);
    // False as well for a time before 1970 or after the year 3000.
    static bool timeToTm(tm* t, std::int64_t time, bool local);
    // False for a negative result, and `time` stays.
    static bool tmToTime(std::int64_t& time, tm* t, bool local);
    static bool timeToSystemTime(SYSTEMTIME* st, std::int64_t time, bool local);
    static bool systemTimeToTime(std::int64_t& time, const SYSTEMTIME* st, bool local);

  private:
    SYSTEMTIME record;
    bool gmt;
};

// "<date> <time>" in the formats of the environment's locale (LC_TIME, LANG): the long or the
// short date form, and the locale's time form, with " GMT" behind the time of a GMT object.
// `out` takes the text, which is returned.
const wchar_t* dateTime(CZorString& out, const CDateTime& when, bool longDate);
// The same for a count of seconds, shown as local time.
const wchar_t* dateTime(CZorString& out, std::int64_t when, bool longDate);

// The date number of a `tm`: 31 March 2017, 14:05:09 gives 20170331.140509.
bool tmToAcadCDate(double& date, const tm* t);
// The date number of a count of seconds, by the local zone.
bool timeToAcadCDate(double& date, std::int64_t when);
// A `tm` from a date number; false for a null record, a date that isn't finite, above
// 99999999.0 or below 19000101.0, or without a month.
bool acadCDateToTm(tm* t, double date);
// Seconds since 1970 from a date number, by the local zone; on false `when` stays.
bool acadCDateToTime(std::int64_t& when, double date);

}  // namespace ZOR
