#include "zor/environment/datetime.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::ScopedEnv;
using Fields = std::array<int, 6>;  // year, month, day, hour, minute, second

Fields fields(const CDateTime& d) {
    return {d.year(), d.month(), d.day(), d.hour(), d.minute(), d.second()};
}
Fields fields(const tm& t) {
    return {t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec};
}
Fields fields(const SYSTEMTIME& st) {
    return {st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond};
}

// A local date through the setters, largest field first.
CDateTime at(const Fields& f) {
    CDateTime d;
    EXPECT_TRUE(d.setYear(f[0]) && d.setMonth(f[1]) && d.setDay(f[2]) && d.setHour(f[3]) &&
                d.setMinute(f[4]) && d.setSecond(f[5]));
    return d;
}

// A fixed zone for the scope, by default one hour east of GMT with summer time. The runtime
// rereads TZ on the way in, and on the way out once the old value is back.
class ScopedZone {
  public:
    explicit ScopedZone(const char* zone = "CET-1CEST,M3.5.0,M10.5.0/3") : zone_("TZ", zone) {
        ::tzset();
    }

  private:
    struct Reread {
        ~Reread() { ::tzset(); }
    } reread_;
    ScopedEnv zone_;
};

TEST(CDateTime, SettersRefuseOutOfRangeValuesAndMonthAndDayCheckEachOther) {
    CDateTime d;
    const Fields start{1970, 1, 1, 0, 0, 0};
    EXPECT_EQ(fields(d), start);
    EXPECT_FALSE(d.isGMT());
    using Setter = bool (CDateTime::*)(int);
    const std::pair<Setter, int> refused[] = {
        {&CDateTime::setYear, 1969}, {&CDateTime::setYear, 1900}, {&CDateTime::setMonth, 0},
        {&CDateTime::setMonth, 13},  {&CDateTime::setDay, 0},     {&CDateTime::setDay, 32},
        {&CDateTime::setHour, -1},   {&CDateTime::setHour, 24},   {&CDateTime::setMinute, -1},
        {&CDateTime::setMinute, 60}, {&CDateTime::setSecond, -1}, {&CDateTime::setSecond, 60}};
    for (const auto& [set, value] : refused) {
        EXPECT_FALSE((d.*set)(value)) << value;
        EXPECT_EQ(fields(d), start);
    }
    EXPECT_TRUE(d.setSecond(59));
    // Month and day check each other by the Gregorian length of the month.
    ASSERT_TRUE(d.setDay(31));
    EXPECT_FALSE(d.setMonth(2));
    EXPECT_EQ(d.month(), 1);
    EXPECT_TRUE(d.setDay(28) && d.setMonth(2) && d.setYear(2000));
    EXPECT_TRUE(d.setDay(29));  // divisible by 400
    EXPECT_TRUE(d.setYear(2100));
    EXPECT_FALSE(d.setDay(30));
    ASSERT_TRUE(d.setDay(28));
    EXPECT_FALSE(d.setDay(29));  // divisible by 100 only
    EXPECT_TRUE(d.setYear(2024) && d.setDay(29));
    EXPECT_EQ(fields(d), (Fields{2024, 2, 29, 0, 0, 59}));
}

TEST(CDateTime, ZoneConversionsFollowTheLocalRules) {
    ScopedZone zone;
    const CDateTime d = at({2017, 7, 1, 1, 0, 0});
    const CDateTime g = d.toGMT();  // summer: two hours behind, on the day before
    EXPECT_TRUE(g.isGMT());
    EXPECT_EQ(fields(g), (Fields{2017, 6, 30, 23, 0, 0}));
    EXPECT_EQ(fields(g.toGMT()), fields(g));  // already GMT: a copy
    const CDateTime back = g.toLocal();
    EXPECT_FALSE(back.isGMT());
    EXPECT_EQ(fields(back), fields(d));
    EXPECT_EQ(g.time(), 1498863600);
    EXPECT_EQ(static_cast<std::int64_t>(d), 1498863600);

    CDateTime winter;
    winter.setGMT(true);
    winter = std::int64_t{0};
    EXPECT_EQ(winter.toLocal().hour(), 1);
    winter.setGMT(false);  // the flag alone: the fields stay
    EXPECT_EQ(winter.hour(), 0);
    EXPECT_EQ(winter.time(), 0);  // 00:00 local is before 1970 in this zone: not expressible

    const std::int64_t before = ::time(nullptr);
    for (bool gmt : {false, true}) {
        const CDateTime now = CDateTime::now(gmt);
        EXPECT_EQ(now.isGMT(), gmt);
        EXPECT_LE(std::llabs(now.time() - before), 2);
    }
}

TEST(CDateTime, StaticConversionsRefuseNullRecordsAndTimesOutOfRange) {
    SYSTEMTIME st{};
    tm t{};
    std::int64_t when = 77;
    EXPECT_FALSE(CDateTime::tmToSystemTime(nullptr, &t) ||
                 CDateTime::tmToSystemTime(&st, nullptr) ||
                 CDateTime::systemTimeToTm(nullptr, &st, true) ||
                 CDateTime::timeToTm(nullptr, 0, true) || CDateTime::tmToTime(when, nullptr, true));
    t.tm_year = 60;  // 1960
    t.tm_mday = 1;
    EXPECT_FALSE(CDateTime::tmToTime(when, &t, false));
    EXPECT_EQ(when, 77);
    // Times before 1970 or past the year 3000 have no record; the fields keep their year.
    EXPECT_FALSE(CDateTime::timeToTm(&t, -1, false));
    EXPECT_TRUE(CDateTime::timeToSystemTime(&st, 32535215999, false));
    EXPECT_EQ(st.wYear, 3000);
    EXPECT_FALSE(CDateTime::timeToSystemTime(&st, 32535216000, false));
    CDateTime kept;
    kept = std::int64_t{-5000000000000};
    EXPECT_EQ(kept.year(), 1970);
    ASSERT_TRUE(CDateTime::timeToSystemTime(&st, 86400 + 3661, false));
    EXPECT_EQ(fields(st), (Fields{1970, 1, 2, 1, 1, 1}));
    EXPECT_EQ(st.wDayOfWeek, 5);  // a Friday
    EXPECT_TRUE(CDateTime::systemTimeToTime(when, &st, false));
    EXPECT_EQ(when, 86400 + 3661);
}

TEST(DateNumber, RoundTripLocalTimesAndRefusals) {
    ScopedZone zone;
    tm t{};
    t.tm_year = 117;
    t.tm_mon = 2;
    t.tm_mday = 31;
    t.tm_hour = 14;
    t.tm_min = 5;
    t.tm_sec = 9;
    double date = 0;
    ASSERT_TRUE(tmToAcadCDate(date, &t));
    EXPECT_EQ(date, 20170331.140509);
    tm back{};
    ASSERT_TRUE(acadCDateToTm(&back, date));
    EXPECT_EQ(fields(back), fields(t));
    // Fields that overflow are normalised: 31 June is 1 July.
    ASSERT_TRUE(acadCDateToTm(&back, 20170631.120000));
    EXPECT_EQ(fields(back), (Fields{117, 6, 1, 12, 0, 0}));
    for (double refused : {19000100.0, 19000100.99, 100000000.0,  // no month, or above the range
                           std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(acadCDateToTm(&back, refused)) << refused;
    }
    EXPECT_FALSE(acadCDateToTm(nullptr, date) || tmToAcadCDate(date, nullptr));

    ASSERT_TRUE(timeToAcadCDate(date, 0));
    EXPECT_EQ(date, 19700101.010000);
    std::int64_t when = 5;
    EXPECT_FALSE(acadCDateToTime(when, 1.0));
    EXPECT_EQ(when, 5);
    ASSERT_TRUE(acadCDateToTime(when, 20170701.010000));
    EXPECT_EQ(when, 1498863600);
}

TEST(DateText, LocaleFormsWithGmtMark) {
    ScopedZone zone("UTC0");
    ScopedEnv all("LC_ALL", "C");
    CDateTime d = at({2017, 3, 31, 14, 5, 9});
    CZorString out;
    EXPECT_STREQ(dateTime(out, d, false), L"03/31/17 14:05:09");
    EXPECT_STREQ(out, L"03/31/17 14:05:09");
    EXPECT_STREQ(dateTime(out, d, true), L"Friday, 31 March 2017 14:05:09");
    d.setGMT(true);
    EXPECT_STREQ(dateTime(out, d, false), L"03/31/17 14:05:09 GMT");
    EXPECT_STREQ(dateTime(out, std::int64_t{0}, false), L"01/01/70 00:00:00");
}

}  // namespace
}  // namespace ZOR
