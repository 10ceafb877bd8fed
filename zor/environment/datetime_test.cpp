#include "zor/environment/datetime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::ScopedEnv;

// A fixed zone (one hour east of GMT, with summer time) for the length of a test.
class ZoneTest : public ::testing::Test {
  protected:
    explicit ZoneTest(const char* zone = "CET-1CEST,M3.5.0,M10.5.0/3")
        : zone_(std::make_unique<ScopedEnv>("TZ", zone)) {
        ::tzset();
    }
    ~ZoneTest() override {
        zone_.reset();
        ::tzset();
    }

  private:
    std::unique_ptr<ScopedEnv> zone_;
};

class GmtZoneTest : public ZoneTest {
  protected:
    GmtZoneTest() : ZoneTest("UTC0") {}
};

TEST(CDateTime, DefaultAndSetterRanges) {
    CDateTime d;
    EXPECT_EQ(d.year(), 1970);
    EXPECT_EQ(d.month(), 1);
    EXPECT_EQ(d.day(), 1);
    EXPECT_EQ(d.hour(), 0);
    EXPECT_FALSE(d.isGMT());
    EXPECT_FALSE(d.setYear(1969));
    EXPECT_FALSE(d.setMonth(13));
    EXPECT_FALSE(d.setMonth(0));
    EXPECT_FALSE(d.setHour(24));
    EXPECT_FALSE(d.setHour(-1));
    EXPECT_FALSE(d.setMinute(60));
    EXPECT_TRUE(d.setSecond(59));
    EXPECT_FALSE(d.setSecond(60));
    EXPECT_EQ(d.year(), 1970);
    EXPECT_EQ(d.hour(), 0);
    EXPECT_EQ(d.second(), 59);
}

TEST(CDateTime, MonthAndDayCheckEachOther) {
    CDateTime d;
    ASSERT_TRUE(d.setDay(31));
    EXPECT_FALSE(d.setMonth(2));
    EXPECT_EQ(d.month(), 1);
    EXPECT_TRUE(d.setDay(28));
    EXPECT_TRUE(d.setMonth(2));
    EXPECT_TRUE(d.setYear(2000));
    EXPECT_TRUE(d.setDay(29));  // divisible by 400
    EXPECT_FALSE(d.setYear(1900));
    EXPECT_TRUE(d.setYear(2100));
    EXPECT_FALSE(d.setDay(30));
    ASSERT_TRUE(d.setDay(28));
    EXPECT_FALSE(d.setDay(29));  // divisible by 100 only
    EXPECT_TRUE(d.setYear(2024));
    EXPECT_TRUE(d.setDay(29));
    EXPECT_FALSE(d.setDay(0));
}

TEST_F(ZoneTest, ZoneConversionsFollowTheLocalRules) {
    CDateTime d;
    d.setYear(2017);
    d.setMonth(7);
    d.setDay(1);
    d.setHour(1);
    const CDateTime g = d.toGMT();  // summer: two hours behind, on the day before
    EXPECT_TRUE(g.isGMT());
    EXPECT_EQ(g.day(), 30);
    EXPECT_EQ(g.month(), 6);
    EXPECT_EQ(g.hour(), 23);
    EXPECT_EQ(g.toGMT().hour(), 23);  // already GMT: a copy
    const CDateTime back = g.toLocal();
    EXPECT_FALSE(back.isGMT());
    EXPECT_EQ(back.day(), 1);
    EXPECT_EQ(back.hour(), 1);
    EXPECT_EQ(d.time(), g.time());
    EXPECT_EQ(static_cast<std::int64_t>(d), 1498863600);

    CDateTime winter;
    winter.setGMT(true);
    winter = std::int64_t{0};
    EXPECT_EQ(winter.hour(), 0);
    EXPECT_EQ(winter.toLocal().hour(), 1);
    winter.setGMT(false);  // the flag alone: the fields stay
    EXPECT_EQ(winter.hour(), 0);
    EXPECT_EQ(winter.time(), 0);  // 00:00 local is before 1970 in this zone: not expressible
}

TEST_F(ZoneTest, NowInBothSenses) {
    const std::int64_t before = ::time(nullptr);
    const CDateTime local = CDateTime::now(false);
    const CDateTime gmt = CDateTime::now(true);
    EXPECT_TRUE(gmt.isGMT());
    EXPECT_NEAR(static_cast<double>(local.time()), static_cast<double>(before), 2.0);
    EXPECT_NEAR(static_cast<double>(gmt.time()), static_cast<double>(before), 2.0);
}

TEST(CDateTimeStatics, NullRecordsAndNegativeTimes) {
    SYSTEMTIME st{};
    tm t{};
    std::int64_t when = 77;
    EXPECT_FALSE(CDateTime::tmToSystemTime(nullptr, &t));
    EXPECT_FALSE(CDateTime::tmToSystemTime(&st, nullptr));
    EXPECT_FALSE(CDateTime::systemTimeToTm(nullptr, &st, true));
    EXPECT_FALSE(CDateTime::timeToTm(nullptr, 0, true));
    EXPECT_FALSE(CDateTime::tmToTime(when, nullptr, true));
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
    EXPECT_EQ(st.wYear, 1970);
    EXPECT_EQ(st.wDay, 2);
    EXPECT_EQ(st.wDayOfWeek, 5);  // a Friday
    EXPECT_EQ(st.wHour, 1);
    EXPECT_EQ(st.wSecond, 1);
    EXPECT_TRUE(CDateTime::systemTimeToTime(when, &st, false));
    EXPECT_EQ(when, 86400 + 3661);
}

TEST(DateNumber, RoundTripAndRefusals) {
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
    EXPECT_EQ(back.tm_year, 117);
    EXPECT_EQ(back.tm_mon, 2);
    EXPECT_EQ(back.tm_mday, 31);
    EXPECT_EQ(back.tm_hour, 14);
    EXPECT_EQ(back.tm_min, 5);
    EXPECT_EQ(back.tm_sec, 9);
    EXPECT_FALSE(acadCDateToTm(&back, 19000100.0));  // no month
    EXPECT_FALSE(acadCDateToTm(&back, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(acadCDateToTm(&back, 100000000.0));
    EXPECT_FALSE(acadCDateToTm(&back, 19000100.99));
    EXPECT_FALSE(acadCDateToTm(nullptr, date));
    EXPECT_FALSE(tmToAcadCDate(date, nullptr));
    std::int64_t when = 5;
    EXPECT_FALSE(acadCDateToTime(when, 1.0));
    EXPECT_EQ(when, 5);
}

TEST_F(ZoneTest, DateNumberOfTimesIsLocal) {
    double date = 0;
    ASSERT_TRUE(timeToAcadCDate(date, 0));
    EXPECT_EQ(date, 19700101.010000);
    std::int64_t when = 0;
    ASSERT_TRUE(acadCDateToTime(when, 20170701.010000));
    EXPECT_EQ(when, 1498863600);
    // Fields that overflow are normalised: 31 June is 1 July.
    tm t{};
    ASSERT_TRUE(acadCDateToTm(&t, 20170631.120000));
    EXPECT_EQ(t.tm_mon, 6);
    EXPECT_EQ(t.tm_mday, 1);
}

TEST_F(GmtZoneTest, DateTextInLocaleFormsWithGmtMark) {
    ScopedEnv all("LC_ALL", "C");
    CDateTime d;
    d.setYear(2017);
    d.setMonth(3);
    d.setDay(31);
    d.setHour(14);
    d.setMinute(5);
    d.setSecond(9);
    CZorString out;
    EXPECT_STREQ(dateTime(out, d, false), L"03/31/17 14:05:09");
    EXPECT_STREQ(out, L"03/31/17 14:05:09");
    EXPECT_STREQ(dateTime(out, d, true), L"Friday, 31 March 2017 14:05:09");
    d.setGMT(true);
    const std::wstring text = dateTime(out, d, false);
    EXPECT_EQ(text, L"03/31/17 14:05:09 GMT");
    EXPECT_STREQ(dateTime(out, std::int64_t{0}, false), L"01/01/70 00:00:00");
}

}  // namespace
}  // namespace ZOR
