#include "services/zlerrorservice.h"

#include <iostream>

#include "services/kepterrno.h"
#include "services/logfile.h"
#include "services/zltime.h"

ZlErrorService::ZlErrorService()
{
    // The handlers need it from here on.
    errorServiceP = this;
    // A handler appends in the midst of anything: hardly ever may a list have to move then.
    for (std::string* list : {&errorTrace, &debugTrace, &functionTrace}) {
        list->reserve(1024 * 1024);
    }
    ZL_TRACE();
    for (const int signal : {SIGHUP, SIGQUIT, SIGILL, SIGTRAP, SIGSEGV, SIGABRT, SIGTERM, SIGINT}) {
        addSignal(signal, signalHandler);
    }
    addSignal(SIGCHLD, signalHandlerChild);
    addSignal(SIGUSR1, signalHandlerUSR1);
    addSignal(SIGALRM, signalHandlerAlarm);
    // A write beyond the limit of a file's size fails like one on a full disk, and does not kill the run. The
    // commands of the run, which would inherit SIG_IGN, die of the signal as ever.
    std::signal(SIGXFSZ, [](int) {});
    signalNames = {
        {1, "SIGHUP"},  {2, "SIGINT"},   {3, "SIGQUIT"},  {4, "SIGILL"},   {5, "SIGTRAP"},  {6, "SIGABRT"},
        {9, "SIGKILL"}, {10, "SIGUSR1"}, {11, "SIGSEGV"}, {14, "SIGALRM"}, {15, "SIGTERM"}, {17, "SIGCHLD"},
    };
    startTime = ZlTime::TimestampISO8601();
}

ZlErrorService* ZlErrorService::getInstance()
{
    ZL_TRACE();
    return errorServiceP;
}

namespace {

void pushLine(std::string& list, std::string_view line)
{
    list.append(line).push_back('\n');
}

} // namespace

void ZlErrorService::pushFuncName(std::string_view name)
{
    pushLine(functionTrace, name);
}

void ZlErrorService::pushNewMsg(std::string_view text)
{
    ZL_TRACE();
    pushLine(errorTrace, text);
    pushLine(debugTrace, text);
    functionTrace.push_back('\t');
    pushLine(functionTrace, text);
}

void ZlErrorService::pushDebugMsg(std::string_view text)
{
    ZL_TRACE();
    if ((controlFlags & DEBUG_TO_STDOUT) != 0) {
        const KeptErrno kept;
        std::cout << text << std::endl;
    }
    pushLine(debugTrace, text);
    functionTrace.push_back('\t');
    pushLine(functionTrace, text);
}

int ZlErrorService::getLastError(std::string* out)
{
    ZL_TRACE();
    if (out == nullptr) {
        lastError = "getLastError failed. Parameter is NULL.";
        pushNewMsg(lastError);
        return 1;
    }
    out->append(lastError);
    return 0;
}

void ZlErrorService::fullLog()
{
    ZL_TRACE();
    errorTrace = debugTrace;
}

void ZlErrorService::writeTrace()
{
    ZL_TRACE();
    if (logFileName.empty()) {
        logFileName = DEFAULT_LOG;
    }
    const std::string endTime = ZlTime::TimestampISO8601();

    // The lists keep their room when they are emptied: the handler of SIGCHLD may come in the midst of an
    // allocation here, and must not need one.
    if (!errorTrace.empty()) {
        // Support scripts match "messager".
        const std::string section = "\nTrace messages start at: " + startTime + "\n" + errorTrace +
                                    "Trace messager end at: " + endTime + "\n";
        errorTrace.clear();
        appendToLog(logFilePath + logFileName, section, maxSizeLogfile);
    }
    if (!debugTrace.empty()) {
        const std::string text = "Debug Trace start at: " + startTime + "\n" + debugTrace +
                                 "\n#### function trace ####\n" + functionTrace +
                                 "Debug Trace end at: " + endTime + "\n";
        debugTrace.clear();
        functionTrace.clear();
        replaceLog(logFilePath + "debug" + logFileName, text);
    }
}

std::string ZlErrorService::getLogFileName()
{
    ZL_TRACE();
    return logFileName;
}

void ZlErrorService::setLogFileName(const std::string& name)
{
    ZL_TRACE();
    logFileName = name + ".log";
}
