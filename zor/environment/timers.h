// Stopwatches on the monotonic clock, and scoped timers that sum their time by name.
#pragma once

#include <cstdint>

#include "zor/foundation/map.h"
#include "zor/text/string.h"

namespace ZOR {

// A stopwatch on CLOCK_MONOTONIC, counting nanoseconds (frequency 1e9). `stop` and `start(false)`
// pause and resume, so the timer accumulates across pauses. Copied as plain data.
class CTimer {
  public:
    // Running from now, or with `running` false from a start of 0 until `start` is called.
    explicit CTimer(bool running = true);

    // With `reset` the accumulated time goes back to 0; the timer runs from now.
    void start(bool reset);
    // Adds the running phase, unless stopped already, and returns the accumulated seconds; a
    // second call returns the same value.
    double stop();
    // Seconds so far, without stopping.
    operator double() const;

  private:
    static std::int64_t counter();

    std::int64_t startCount;  // The counter at the last start.
    std::int64_t elapsed;     // Accumulated ticks of the finished phases.
    std::int64_t frequency;   // Ticks per second.
    bool stopped;
};

// A scope whose lifetime is added to the module's table of performance sums under its name: to
// the top time when it is the outermost living CPerfTimer, else to the nested time. For one
// thread at a time; scopes must nest.
class CPerfTimer {
  public:
    explicit CPerfTimer(const wchar_t* name);
    // A copy takes name and timer but doesn't count as a living scope, though its end does.
    CPerfTimer(const CPerfTimer& other);
    CPerfTimer& operator=(const CPerfTimer& other);
    ~CPerfTimer();

  private:
    static int m_Level;  // Living CPerfTimer objects.

    CZorString name;
    CTimer timer;
};

// A record of the table of performance sums.
struct perf_data {
    CZorString name;
    int count = 0;            // How many times the name was timed.
    double topTime = 0.0;     // Seconds as the outermost scope.
    double nestedTime = 0.0;  // Seconds inside another scope.
};

// Adds `seconds` to the record of `name` (created when missing): to the top time with `top`,
// else to the nested time, and counts one more timing.
void addPerfTime(const wchar_t* name, double seconds, bool top);
// The record at `index` in name order; false, with the out-values unchanged, for an index at or
// beyond the number of records (a negative index included).
bool perfEntryAtIndex(int index, CZorString& name, double& topTime, double& nestedTime, int& count);
// Frees all records.
void perfReset();

namespace detail {
// The table of performance sums, defined with the module's other constants.
extern CZorMapTempl<CZorString, perf_data> perfTable;
}  // namespace detail

}  // namespace ZOR
