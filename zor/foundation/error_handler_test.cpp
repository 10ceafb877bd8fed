#include "zor/foundation/error_handler.h"

#include <sys/mman.h>
#include <unistd.h>

#include <thread>

#include "gtest/gtest.h"

namespace {

// One page that every access faults on: a bad pointer that is not null, so that no null check
// of a sanitizer steps in before the processor does.
volatile int* inaccessible_page() {
    static void* page = mmap(nullptr, static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), PROT_NONE,
                             MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return static_cast<volatile int*>(page);
}

[[gnu::noinline]] int read_bad_pointer() {
    return *inaccessible_page();
}

// The undefined-behaviour sanitizer would report the division itself; here the processor must.
[[gnu::noinline, gnu::no_sanitize_undefined]] int divide(int a, int b) {
    return a / b;
}

volatile int zero = 0;
volatile int sink = 0;

[[gnu::noinline]] void illegal_instruction() {
    __asm__ volatile("ud2");
}

// Runs `fault` and returns the code that arrived as `unsigned int`, or 0 when nothing did.
template <typename Fault>
unsigned int caught_code(Fault fault) {
    try {
        fault();
    } catch (unsigned int code) {
        return code;
    }
    return 0;
}

void* seen_fault_address = nullptr;

// A translator of the caller's own: records what it learns and throws something else.
void recording_translator(unsigned int code, EXCEPTION_POINTERS* info) {
    seen_fault_address = info->ExceptionRecord->FaultAddress;
    throw static_cast<long>(code);
}

void returning_translator(unsigned int, EXCEPTION_POINTERS*) {}

TEST(ErrorHandlerTest, TranslatesFaultsIntoTheirCodes) {
    CZorErrorHandler guard;
    EXPECT_EQ(caught_code(read_bad_pointer), CZorErrorHandler::kAccessViolation);
    EXPECT_EQ(caught_code([] { sink = divide(1, zero); }), CZorErrorHandler::kIntDivideByZero);
    EXPECT_EQ(caught_code(illegal_instruction), CZorErrorHandler::kIllegalInstruction);
    // A second fault of the same kind in the same scope is translated as well: the signal was
    // not left blocked by the first one.
    EXPECT_EQ(caught_code(read_bad_pointer), CZorErrorHandler::kAccessViolation);
}

TEST(ErrorHandlerTest, NestedScopesRestoreTheEarlierTranslatorAndCopiesInstallNothing) {
    CZorErrorHandler outer;
    EXPECT_EQ(outer.oldHandler(), nullptr);
    {
        CZorErrorHandler inner(recording_translator);
        EXPECT_NE(inner.oldHandler(), nullptr);
        const CZorErrorHandler copy(inner);
        EXPECT_EQ(copy.oldHandler(), inner.oldHandler());
        CZorErrorHandler assigned(recording_translator);
        assigned = outer;
        EXPECT_EQ(assigned.oldHandler(), nullptr);
        // Neither the copy nor the assignment changed the active translator: the latest scope's.
        try {
            read_bad_pointer();
            ADD_FAILURE() << "the fault was not translated";
        } catch (long code) {
            EXPECT_EQ(code, static_cast<long>(CZorErrorHandler::kAccessViolation));
        }
        EXPECT_EQ(seen_fault_address, const_cast<int*>(inaccessible_page()));
        // Leaving, `assigned` reinstalls "no translator", then `copy` and `inner` the library's.
    }
    EXPECT_EQ(caught_code(read_bad_pointer), CZorErrorHandler::kAccessViolation);
}

TEST(ErrorHandlerDeathTest, FaultsOutsideAnyScopeKeepTheirDefaultCourse) {
    { CZorErrorHandler installs_the_signal_handlers; }
    EXPECT_DEATH(read_bad_pointer(), "");
    EXPECT_DEATH(
        {
            CZorErrorHandler guard;
            std::thread([] { read_bad_pointer(); }).join();
        },
        "");
    EXPECT_DEATH(
        {
            CZorErrorHandler guard(returning_translator);
            read_bad_pointer();
        },
        "");
}

}  // namespace
