#include "zor/environment/process.h"

#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <uuid/uuid.h>
#include <wordexp.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "zor/environment/native_text.h"

extern char** environ;

namespace ZOR {
namespace {

// The thread priorities of the interface at their ends: idle and time-critical.
constexpr int kPriorityIdle = -15;
constexpr int kPriorityTimeCritical = 15;
// Nice value per step of priority between lowest (-2) and highest (2).
constexpr int kNicePerStep = 5;
constexpr int kNiceMax = 19;
constexpr int kNiceMin = -20;

int niceOfPriority(int priority) {
    if (priority <= kPriorityIdle) return kNiceMax;
    if (priority >= kPriorityTimeCritical) return kNiceMin;
    const int nice = -priority * kNicePerStep;
    return nice < kNiceMin ? kNiceMin : (nice > kNiceMax ? kNiceMax : nice);
}

struct ThreadStart {
    unsigned long (*routine)(void*);
    void* argument;
    int nice;
};

void* threadMain(void* raw) {
    const ThreadStart start = *static_cast<ThreadStart*>(raw);
    delete static_cast<ThreadStart*>(raw);
    // The nice value of a Linux thread is its own; refusal (raising without the right) is harmless.
    if (start.nice != 0) ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), start.nice);
    start.routine(start.argument);
    return nullptr;
}

// Reaps a child that outlived the wait, so that it leaves no zombie behind when it ends.
void reapLater(pid_t pid) {
    std::thread([pid] {
        int status = 0;
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
    }).detach();
}

// Waits up to `timeout` ms for the child; true if it ended and was reaped.
bool waitFor(pid_t pid, unsigned long timeout) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
    for (;;) {
        int status = 0;
        const pid_t got = ::waitpid(pid, &status, WNOHANG);
        if (got == pid || (got < 0 && errno != EINTR)) return true;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

}  // namespace

const wchar_t* version() {
    return L"2017.0";
}

void* runThread(unsigned long (*routine)(void*), void* argument, int priority,
                unsigned long /*flags*/) {
    if (routine == nullptr) return nullptr;
    auto* start = new ThreadStart{routine, argument, niceOfPriority(priority)};
    pthread_t thread{};
    if (::pthread_create(&thread, nullptr, threadMain, start) != 0) {
        delete start;
        return nullptr;
    }
    return reinterpret_cast<void*>(thread);
}

int execute(const wchar_t* commandLine, unsigned long timeout, bool /*show*/) {
    if (commandLine == nullptr || commandLine[0] == 0) return 0;
    const std::string line = detail::toUtf8(commandLine);
    wordexp_t words{};
    // No command substitution: a command line is a program and its arguments, nothing more.
    if (::wordexp(line.c_str(), &words, WRDE_NOCMD) != 0) {
        ::wordfree(&words);
        return 0;
    }
    if (words.we_wordc == 0) {
        ::wordfree(&words);
        return 0;
    }
    // The child inherits no descriptors but the standard three: descriptors opened without
    // close-on-exec elsewhere in the process stay behind.
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addclosefrom_np(&actions, 3);
    // A program starts afresh: no signal blocked or ignored because the host blocks or ignores it
    // (hosts commonly ignore SIGPIPE, which would change how a pipeline in the child ends).
    posix_spawnattr_t attributes;
    ::posix_spawnattr_init(&attributes);
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t pid = 0;
    const int rc =
        ::posix_spawnp(&pid, words.we_wordv[0], &actions, &attributes, words.we_wordv, environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
    ::wordfree(&words);
    if (rc != 0) return 0;
    if (timeout == 0 || !waitFor(pid, timeout)) reapLater(pid);
    return 1;
}

void strUuidCreate(CZorString& out) {
    uuid_t id;
    ::uuid_generate(id);
    char text[37];
    ::uuid_unparse_lower(id, text);
    out = (L"{" + detail::fromUtf8(text) + L"}").c_str();
}

const wchar_t* lastErrorString() {
    const int code = errno;
    static CZorString text;
    // A code without a name is one the system has no text for; strerror_r would make up an
    // "Unknown error" line for it.
    if (::strerrorname_np(code) == nullptr) {
        text = L"";
        return text;
    }
    char buffer[256];
    // The GNU form returns the text, which may or may not be the buffer.
    const char* message = ::strerror_r(code, buffer, sizeof buffer);
    text = message != nullptr ? detail::fromUtf8(message).c_str() : L"";
    return text;
}

}  // namespace ZOR
