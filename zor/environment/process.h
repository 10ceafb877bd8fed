// Threads and processes, and the library's small system texts.
#pragma once

#include "zor/text/string.h"

namespace ZOR {

// The library's version, "2017.0".
const wchar_t* version();

// Starts `routine(argument)` on a new thread and returns its handle, a pthread_t, which the caller
// owns: join or detach it. `priority` is a thread priority of this interface (-15 idle,
// -2 lowest ... 2 highest, 15 time-critical), applied as the thread's nice value where the process
// is permitted to (raising needs the right to); `flags` has no meaning on this platform. Null if
// the thread couldn't be started.
void* runThread(unsigned long (*routine)(void*), void* argument, int priority, unsigned long flags);

// Starts the program of `commandLine` (split into words as a shell would, without expanding
// commands; the first word is searched in PATH) in the caller's working directory, with no
// descriptor but the standard three and with every signal at its default, and with a
// `timeout` other than 0 waits up to that many milliseconds for it to end. 1 if the process
// started, 0 if it didn't (a null or empty line, a line that can't be split, a program that can't
// be run). The exit status isn't reported; a process still running is reaped when it ends.
// `show` asks for a visible window, which a process started here doesn't have; it has no effect.
int execute(const wchar_t* commandLine, unsigned long timeout, bool show);

// A new UUID in braces, "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}", 38 units.
void strUuidCreate(CZorString& out);

// The system's text for the current errno. The text lives in one module-wide string, good until
// the next call; it is empty if the system has no text for the code.
const wchar_t* lastErrorString();

}  // namespace ZOR
