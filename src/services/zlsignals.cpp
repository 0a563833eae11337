// The signal half of ZlErrorService.
#include "services/zlerrorservice.h"

#include <array>
#include <cstdlib>
#include <ctime>
#include <execinfo.h>
#include <iostream>
#include <unistd.h>

#include "services/kepterrno.h"
#include "services/logfile.h"
#include "services/zlutils.h"

namespace {

std::string nameAndNumber(int signal)
{
    return ZlErrorService::signalNames[signal] + " (" + toString(signal) + ")";
}

// Installs the action, or ends the process with what each form says.
void install(int signal, const struct sigaction& action, const char* traceText, const char* userText)
{
    if (sigaction(signal, &action, nullptr) == 0) {
        return;
    }
    ZlErrorService* errorServiceP = ZlErrorService::errorServiceP;
    errorServiceP->pushNewMsg(traceText);
    errorServiceP->fullLog();
    errorServiceP->writeTrace();
    std::cerr << userText;
    std::exit(1);
}

} // namespace

void ZlErrorService::addSignal(int signal, SignalHandler handler)
{
    ZL_TRACE();
    struct sigaction action {};
    action.sa_sigaction = handler;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    sigaddset(&action.sa_mask, signal);
    // Support scripts match "addSigna".
    install(signal, action, "ZlErrorService::addSigna Setting new action failed. Terminate.",
            "Define signal handler failed.\n");
}

void ZlErrorService::addSignal(int signal, void (*handler)(int))
{
    ZL_TRACE();
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    install(signal, action, "ZlErrorService::addSignal Setting default action failed. Terminate.",
            "Define default signal handling failed.\n");
}

void ZlErrorService::analyseSiginfo(const siginfo_t* info)
{
    ZL_TRACE();
    signalPid = info->si_code == SI_USER ? info->si_pid : -1;
    signalValue = info->si_code == SI_QUEUE ? info->si_value.sival_int : -1;
}

void ZlErrorService::signalHandler(int signal, siginfo_t* info, void* /*context*/)
{
    // A second abort() comes from in here: memory is broken for good.
    static volatile std::sig_atomic_t isAborting = 0;
    if (signal == SIGABRT && isAborting != 0) {
        _exit(1);
    }
    isAborting = signal == SIGABRT;
    const KeptErrno kept;
    ZL_TRACE();
    analyseSiginfo(info);
    errorServiceP->pushNewMsg("\nInterrupt signal " + nameAndNumber(signal) + " received.\n");
    if (signal == SIGUSR1) {
        dumpDebugTrace();
        return;
    }
    if (signal == SIGSEGV) {
        errorServiceP->pushNewMsg("Stack Trace");
        errorServiceP->pushNewMsg(getStackTrace());
    }
    errorServiceP->pushNewMsg("Terminate from ZlErrorService::signalHandler");
    errorServiceP->writeTrace();
    std::cout << "An unexpected Error occured." << std::endl;
    std::exit(1);
}

// Writes the debug log without emptying the lists, for a tool that binds signalHandler to SIGUSR1. The end
// stamp has hours and seconds.
void ZlErrorService::dumpDebugTrace()
{
    ZL_TRACE();
    if (debugTrace.empty()) {
        return;
    }
    std::array<char, 32> stamp{};
    const time_t now = std::time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d.%H:%S", &local);
    replaceLog(logFilePath + "debug" + (logFileName.empty() ? DEFAULT_LOG : logFileName),
               "Debug Trace start at: " + startTime + "\n" + debugTrace +
                   "Debug Trace end at: " + stamp.data() + "\n");
}

std::string ZlErrorService::getStackTrace()
{
    ZL_TRACE();
    std::array<void*, 20> frames{};
    const int count = backtrace(frames.data(), frames.size());
    char** const symbols = backtrace_symbols(frames.data(), count);
    if (symbols == nullptr) {
        return "ZlErrorService::getStackTrace: Retreving stack trace failed.";
    }
    std::string text;
    for (int i = 0; i < count; ++i) {
        text.append(symbols[i]).append("\n");
    }
    std::free(static_cast<void*>(symbols));
    return text;
}

// Never waits for the child: its status belongs to who started it.
void ZlErrorService::signalHandlerChild(int /*signal*/, siginfo_t* info, void* /*context*/)
{
    const KeptErrno kept;
    ZL_TRACE();
    analyseSiginfo(info);
    if ((controlFlags & CHILD_IS_DAEMON) != 0) {
        errorServiceP->pushDebugMsg("ZlErrorService::signalHandlerChild: set alarm(10).");
        alarm(10);
    } else {
        errorServiceP->pushDebugMsg(
            "ZlErrorService::signalHandlerChild: child is not daemon. Ignore signal.");
    }
}

void ZlErrorService::signalHandlerAlarm(int /*signal*/, siginfo_t* info, void* /*context*/)
{
    ZL_TRACE();
    const std::string reason = "Terminate because alarm signal was received.";
    analyseSiginfo(info);
    errorServiceP->pushDebugMsg("ZlErrorService::signalHandlerAlarm: " + reason);
    errorServiceP->writeTrace();
    std::cout << reason << std::endl;
    std::exit(1);
}

void ZlErrorService::signalHandlerUSR1(int signal, siginfo_t* info, void* /*context*/)
{
    const KeptErrno kept;
    ZL_TRACE();
    analyseSiginfo(info);
    if ((controlFlags & CHILD_IS_DAEMON) != 0) {
        const int32_t peer = signalPid > 0 ? signalPid : signalValue;
        const std::string text =
            "Process (" + toString(peer) + ") runs as deamon. Terminate without response.";
        // Support scripts match the other handler's name here.
        errorServiceP->pushNewMsg(text + "\nInterrupt signal " + nameAndNumber(signal) +
                                  " received.\n Terminate from ZlErrorService::signalHandlerChild");
        errorServiceP->writeTrace();
        std::cout << text << std::endl;
        std::exit(0);
    }
    const std::string report = "ZlErrorService::signalHandlerUSR1: signal = " + signalNames[signal] + "(" +
                               toString(signal) + "), si_signo = " + toString(info->si_signo) +
                               ", si_pid = " + toString(info->si_pid) +
                               " si_info = " + toString(info->si_value.sival_int);
    std::cout << report << std::endl;
    errorServiceP->pushDebugMsg(report);
    sigval answer{};
    answer.sival_int = getpid();
    sigqueue(info->si_pid, info->si_signo, answer);
}
