#include "services/zlerrorservice.h"

#include <fstream>
#include <iostream>
#include <utility>

#include "services/zltime.h"

ZlErrorService::ZlErrorService()
{
    // The handlers need it from here on.
    errorServiceP = this;
    ZL_TRACE();
    for (const int signal : {SIGHUP, SIGQUIT, SIGILL, SIGTRAP, SIGSEGV, SIGABRT, SIGTERM, SIGINT}) {
        addSignal(signal, signalHandler);
    }
    addSignal(SIGCHLD, signalHandlerChild);
    addSignal(SIGUSR1, signalHandlerUSR1);
    addSignal(SIGALRM, signalHandlerAlarm);
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

void ZlErrorService::pushFuncName(std::string_view name)
{
    functionTrace.push(name);
}

void ZlErrorService::pushNewMsg(std::string_view text)
{
    ZL_TRACE();
    errorTrace.push(text);
    debugTrace.push(text);
    functionTrace.pushIndented(text);
}

void ZlErrorService::pushDebugMsg(std::string_view text)
{
    ZL_TRACE();
    if ((controlFlags & DEBUG_TO_STDOUT) != 0) {
        std::cout << text << std::endl;
    }
    debugTrace.push(text);
    functionTrace.pushIndented(text);
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

namespace {

// Cuts a log that has outgrown `limit` back to its last `limit` bytes, wherever that falls in a line.
void cutLogFile(const std::string& path, std::streamoff limit)
{
    std::ifstream log(path, std::ios::binary | std::ios::ate);
    if (!log || log.tellg() <= limit) {
        return;
    }
    std::string tail(static_cast<size_t>(limit), '\0');
    log.seekg(-limit, std::ios::end);
    log.read(tail.data(), limit);
    tail.resize(static_cast<size_t>(log.gcount()));
    log.close();
    std::ofstream(path, std::ios::binary | std::ios::trunc) << tail;
}

} // namespace

void ZlErrorService::writeTrace()
{
    ZL_TRACE();
    if (logFileName.empty()) {
        logFileName = DEFAULT_LOG;
    }
    const std::string endTime = ZlTime::TimestampISO8601();

    if (!errorTrace.empty()) {
        const std::string path = logFilePath + logFileName;
        const ZlTraceLines lines = std::exchange(errorTrace, {});
        cutLogFile(path, maxSizeLogfile);
        // Support scripts match "messager".
        std::ofstream(path, std::ios::binary | std::ios::app)
            << "\nTrace messages start at: " << startTime << "\n"
            << lines << "Trace messager end at: " << endTime << "\n";
    }
    if (!debugTrace.empty()) {
        const ZlTraceLines lines = std::exchange(debugTrace, {});
        const ZlTraceLines functions = std::exchange(functionTrace, {});
        std::ofstream(logFilePath + "debug" + logFileName, std::ios::binary | std::ios::trunc)
            << "Debug Trace start at: " << startTime << "\n"
            << lines << "\n#### function trace ####\n"
            << functions << "Debug Trace end at: " << endTime << "\n";
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
