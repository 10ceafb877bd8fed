#include "zor/environment/timers.h"

#include <time.h>

namespace ZOR {
namespace {

constexpr std::int64_t kTicksPerSecond = 1000000000;
// A scope shorter than the clock's resolution still counts this long.
constexpr double kShortestScope = 1e-9;

}  // namespace

int CPerfTimer::m_Level = 0;

std::int64_t CTimer::counter() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * kTicksPerSecond + now.tv_nsec;
}

CTimer::CTimer(bool running)
    : startCount(running ? counter() : 0), elapsed(0), frequency(kTicksPerSecond), stopped(false) {}

void CTimer::start(bool reset) {
    if (reset) elapsed = 0;
    startCount = counter();
    stopped = false;
}

double CTimer::stop() {
    if (!stopped) {
        elapsed += counter() - startCount;
        stopped = true;
    }
    return static_cast<double>(elapsed) / static_cast<double>(frequency);
}

CTimer::operator double() const {
    const std::int64_t ticks = stopped ? elapsed : elapsed + counter() - startCount;
    return static_cast<double>(ticks) / static_cast<double>(frequency);
}

CPerfTimer::CPerfTimer(const wchar_t* name) : name(name), timer(true) {
    ++m_Level;
}

CPerfTimer::CPerfTimer(const CPerfTimer& other) = default;

CPerfTimer& CPerfTimer::operator=(const CPerfTimer& other) = default;

CPerfTimer::~CPerfTimer() {
    --m_Level;
    double seconds = timer.stop();
    if (seconds < kShortestScope) seconds = kShortestScope;
    addPerfTime(name, seconds, m_Level == 0);
}

void addPerfTime(const wchar_t* name, double seconds, bool top) {
    const CZorString key(name);
    perf_data* record = nullptr;
    if (!detail::perfTable.getAt(key, record)) {
        perf_data fresh;
        fresh.name = key;
        detail::perfTable.setAt(key, fresh);
        detail::perfTable.getAt(key, record);
    }
    if (top) {
        record->topTime += seconds;
    } else {
        record->nestedTime += seconds;
    }
    ++record->count;
}

bool perfEntryAtIndex(int index, CZorString& name, double& topTime, double& nestedTime,
                      int& count) {
    perf_data* record = nullptr;
    if (!detail::perfTable.getAtIndex(static_cast<std::uint32_t>(index), record)) return false;
    name = record->name;
    topTime = record->topTime;
    nestedTime = record->nestedTime;
    count = record->count;
    return true;
}

void perfReset() {
    detail::perfTable.removeAll();
}

}  // namespace ZOR
