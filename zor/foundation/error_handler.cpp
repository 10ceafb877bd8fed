#include "zor/foundation/error_handler.h"

#include <signal.h>
#include <ucontext.h>

#include <mutex>

namespace {

// The translator of the calling thread; null outside every handler scope. A plain pointer with
// a constant initialiser, so reading it from the signal handler touches no lazy initialisation.
thread_local CZorErrorHandler::Translator current_translator = nullptr;

constexpr int kTranslatedSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL};

// The dispositions that were in place before ours; a fault outside every scope goes to them.
struct sigaction previous_actions[NSIG];

unsigned int code_for(int signal, int signal_code) {
    switch (signal) {
        case SIGBUS:
            return signal_code == BUS_ADRALN ? CZorErrorHandler::kDatatypeMisalignment
                                             : CZorErrorHandler::kInPageError;
        case SIGILL:
            return signal_code == ILL_PRVOPC || signal_code == ILL_PRVREG
                       ? CZorErrorHandler::kPrivilegedInstruction
                       : CZorErrorHandler::kIllegalInstruction;
        case SIGFPE:
            switch (signal_code) {
                case FPE_INTDIV:
                    return CZorErrorHandler::kIntDivideByZero;
                case FPE_INTOVF:
                    return CZorErrorHandler::kIntOverflow;
                case FPE_FLTDIV:
                    return CZorErrorHandler::kFltDivideByZero;
                case FPE_FLTOVF:
                    return CZorErrorHandler::kFltOverflow;
                case FPE_FLTUND:
                    return CZorErrorHandler::kFltUnderflow;
                case FPE_FLTRES:
                    return CZorErrorHandler::kFltInexactResult;
                case FPE_FLTSUB:
                    return CZorErrorHandler::kArrayBoundsExceeded;
                default:
                    return CZorErrorHandler::kFltInvalidOperation;
            }
        default:
            return CZorErrorHandler::kAccessViolation;
    }
}

// Hands a fault that no translator took to whatever handled the signal before us. With the
// default disposition the signal is raised again: it stays blocked until this handler returns,
// is then delivered with the default action, and the process ends as it would have without us.
void pass_on(int signal, siginfo_t* info, void* context) {
    const struct sigaction& previous = previous_actions[signal];
    if ((previous.sa_flags & SA_SIGINFO) != 0 && previous.sa_sigaction != nullptr) {
        previous.sa_sigaction(signal, info, context);
        return;
    }
    if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
        previous.sa_handler(signal);
        return;
    }
    // Ignoring a fault would re-run the faulting instruction forever; end the process instead.
    struct sigaction fallback {};
    fallback.sa_handler = SIG_DFL;
    sigemptyset(&fallback.sa_mask);
    sigaction(signal, &fallback, nullptr);
    sigset_t only_this;
    sigemptyset(&only_this);
    sigaddset(&only_this, signal);
    pthread_sigmask(SIG_BLOCK, &only_this, nullptr);
    raise(signal);
}

void on_fault(int signal, siginfo_t* info, void* context) {
    CZorErrorHandler::Translator translator = current_translator;
    if (translator != nullptr) {
        EXCEPTION_RECORD record{code_for(signal, info->si_code), nullptr, signal, info->si_code,
                                info->si_addr};
#if defined(__x86_64__)
        record.ExceptionAddress =
            reinterpret_cast<void*>(static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RIP]);
#elif defined(__aarch64__)
        record.ExceptionAddress =
            reinterpret_cast<void*>(static_cast<ucontext_t*>(context)->uc_mcontext.pc);
#endif
        EXCEPTION_POINTERS pointers{&record, context};
        // The translator normally throws; the exception unwinds out of this handler straight
        // into the frame that faulted. SA_NODEFER below keeps the signal unblocked for that
        // journey, so the next fault in the same thread is translated too.
        translator(record.ExceptionCode, &pointers);
    }
    pass_on(signal, info, context);
}

// The signal handlers are process-wide and installed once, the first time a scope opens. They
// stay in place afterwards: without a translator on the faulting thread they only pass on.
void install_signal_handlers() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action {};
        action.sa_sigaction = on_fault;
        action.sa_flags = SA_SIGINFO | SA_NODEFER;
        sigemptyset(&action.sa_mask);
        for (int signal : kTranslatedSignals) sigaction(signal, &action, &previous_actions[signal]);
    });
}

CZorErrorHandler::Translator exchange_translator(CZorErrorHandler::Translator translator) {
    CZorErrorHandler::Translator old = current_translator;
    current_translator = translator;
    return old;
}

}  // namespace

CZorErrorHandler::CZorErrorHandler() : CZorErrorHandler(transFunc) {}

CZorErrorHandler::CZorErrorHandler(Translator f) {
    install_signal_handlers();
    m_oldHandler = exchange_translator(f);
}

CZorErrorHandler::~CZorErrorHandler() {
    exchange_translator(m_oldHandler);
}

void CZorErrorHandler::transFunc(unsigned int code, EXCEPTION_POINTERS*) {
    throw code;
}
