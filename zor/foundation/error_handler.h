// CZorErrorHandler: a scope inside which a processor fault of the current thread becomes a C++
// exception.
//
// While a handler object lives, a fault raised on its thread (a read through a bad pointer, an
// integer division by zero, an illegal instruction) calls the thread's installed translator
// with the fault's code. The library's own translator throws that code as an `unsigned int`:
//
//     try {
//         CZorErrorHandler guard;
//         risky();
//     } catch (unsigned int code) {
//         // code == CZorErrorHandler::kAccessViolation, ...
//     }
//
// Translators form a per-thread stack: each handler keeps the translator it replaced and puts it
// back when it is destroyed, so handlers must be destroyed on the thread that built them and in
// reverse order of construction. A thread without a handler keeps the default behaviour of a
// fault (the process ends, or a signal handler installed before ours takes over).
//
// The faults arrive as the signals SIGSEGV, SIGBUS, SIGFPE and SIGILL. The exception leaves the
// signal handler and unwinds through the instruction that faulted, so the code that may fault
// must be compiled with -fnon-call-exceptions; without it the exception cannot be matched to the
// enclosing try block and the program terminates.
#pragma once

// What a translator learns about a fault beyond its code.
struct EXCEPTION_RECORD {
    unsigned int ExceptionCode;  // one of the codes CZorErrorHandler::k...
    void* ExceptionAddress;      // the instruction that faulted
    int Signal;                  // the signal that reported it
    int SignalCode;              // its si_code
    void* FaultAddress;          // the memory address involved (si_addr)
};

// The second argument of a translator. Valid only during the translator call.
struct EXCEPTION_POINTERS {
    EXCEPTION_RECORD* ExceptionRecord;
    void* ContextRecord;  // the interrupted thread's ucontext_t
};

class CZorErrorHandler {
  public:
    using Translator = void (*)(unsigned int code, EXCEPTION_POINTERS* info);

    // Codes carried by a translated fault: the values the structured-exception world uses.
    static constexpr unsigned int kAccessViolation = 0xC0000005u;       // SIGSEGV
    static constexpr unsigned int kInPageError = 0xC0000006u;           // SIGBUS, object or address
    static constexpr unsigned int kDatatypeMisalignment = 0x80000002u;  // SIGBUS, alignment
    static constexpr unsigned int kIllegalInstruction = 0xC000001Du;    // SIGILL
    static constexpr unsigned int kPrivilegedInstruction = 0xC0000096u;  // SIGILL, privileged
    static constexpr unsigned int kIntDivideByZero = 0xC0000094u;        // SIGFPE, integer division
    static constexpr unsigned int kIntOverflow = 0xC0000095u;            // SIGFPE, integer overflow
    static constexpr unsigned int kFltDivideByZero = 0xC000008Eu;        // SIGFPE, float division
    static constexpr unsigned int kFltInexactResult = 0xC000008Fu;       // SIGFPE, inexact result
    static constexpr unsigned int kFltInvalidOperation = 0xC0000090u;    // SIGFPE, invalid or other
    static constexpr unsigned int kFltOverflow = 0xC0000091u;            // SIGFPE, float overflow
    static constexpr unsigned int kFltUnderflow = 0xC0000093u;           // SIGFPE, float underflow
    static constexpr unsigned int kArrayBoundsExceeded = 0xC000008Cu;    // SIGFPE, subscript range

    // Installs the library's translator, which throws the code as an `unsigned int`.
    CZorErrorHandler();
    // Installs `f` instead. A translator that returns instead of throwing lets the fault take
    // its default course.
    explicit CZorErrorHandler(Translator f);
    // Copies keep the same replaced translator and install nothing; destroying a copy
    // reinstalls that translator as well.
    CZorErrorHandler(const CZorErrorHandler&) = default;
    CZorErrorHandler& operator=(const CZorErrorHandler&) = default;
    // Reinstalls the translator that this handler replaced.
    virtual ~CZorErrorHandler();

    // The translator that was installed before this handler; null when there was none.
    Translator oldHandler() const { return m_oldHandler; }

  private:
    static void transFunc(unsigned int code, EXCEPTION_POINTERS* info);

    Translator m_oldHandler;
};
