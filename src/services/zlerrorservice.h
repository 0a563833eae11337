// The trace of the running tool, and its end in the two log files.
//
// The service collects three lists of text in memory: messages for the log, messages for the debug log, and
// the functions entered, with the messages between them. Nothing is written while the tool works.
// writeTrace() empties the lists into two files below /var/zelf/tmp/: a bounded log that grows over many
// runs, and a debug log that holds the last run alone. A user who reports a failure hands in both, so their
// layout and the texts in them are an interface of the tool.
//
// The service exists before main(), see boot.cpp. All its data is class-level; the one object is empty and is
// never deleted, since even the last destructor of a run may trace.
#pragma once

#include <csignal>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

class ZlErrorService {
public:
    // Bits of controlFlags. Neither is ever cleared.
    enum CONTROL_FLAGS : uint32_t {
        DEBUG_TO_STDOUT = 1, // pushDebugMsg prints its text as well; set by --debug
        CHILD_IS_DAEMON = 2, // set for a command whose worker is a daemon
    };

    // Installs the signal handlers and takes the start time of the run.
    ZlErrorService();

    // Gives the singleton, and traces that it was asked for.
    static ZlErrorService* getInstance();

    // Appends the signature of an operation to the function trace. Use ZL_TRACE().
    void pushFuncName(std::string_view name);

    // Appends a message to the log, the debug log and, behind a tab, the function trace.
    void pushNewMsg(std::string_view text);

    // The same without the log; prints the text on standard output too when DEBUG_TO_STDOUT is set.
    void pushDebugMsg(std::string_view text);

    // Appends the last error to *out and gives 0. A null pointer gives 1, and becomes the last error itself.
    int getLastError(std::string* out);

    // Replaces the messages of the log by all messages of the debug log: a failed run logs its whole story.
    void fullLog();

    // Appends the messages to the log file and rewrites the debug log file, then forgets them. An empty list
    // leaves its file alone. A file that cannot be written loses its section without a word: a full disk must
    // not change the outcome of a run.
    void writeTrace();

    std::string getLogFileName();

    // Names the log file: `name` and ".log". Without it they are named after DEFAULT_LOG.
    void setLogFileName(const std::string& name);

    // --- signals (zlsignals.cpp) -----------------------------------------------------------------------
    //
    // The handlers run on the only thread, at any point, and use the trace, streams and exit() as they stand.
    // That is a deliberate trade: what matters is that the trace reaches the disk, even out of a crash.

    using SignalHandler = void (*)(int signal, siginfo_t* info, void* context);

    // Install a handler with sigaction(2). On failure the process ends with status 1.
    static void addSignal(int signal, SignalHandler handler);
    static void addSignal(int signal, void (*handler)(int));

    // Ends the run: trace to disk, one line on standard output, status 1. A crash is no exception.
    static void signalHandler(int signal, siginfo_t* info, void* context);

    // Answers a process that asks whether this one is alive, with this process' id as the value of the same
    // signal. A daemon ends instead.
    static void signalHandlerUSR1(int signal, siginfo_t* info, void* context);

    // Ends the process.
    static void signalHandlerAlarm(int signal, siginfo_t* info, void* context);

    // Gives the parent of a daemon ten seconds more, and does nothing otherwise. Each command that ends is a
    // child too.
    static void signalHandlerChild(int signal, siginfo_t* info, void* context);

    // Notes who sent a signal, in signalPid, or what sigqueue(3) sent along, in signalValue; -1 for the
    // other.
    static void analyseSiginfo(const siginfo_t* info);

    // Gives up to 20 frames, one a line.
    static std::string getStackTrace();

    static ZlErrorService* errorServiceP;
    // Data that a signal handler uses lives beyond the last destructor: handlers stay to the very end.
    static std::map<int, std::string>& signalNames;
    static int32_t signalPid;
    static int32_t signalValue;
    static uint32_t controlFlags;

private:
    static void dumpDebugTrace();

    // The three lists: plain text, each entry with its newline. A file send of 16,000 chunks takes 43 MB.
    static std::string& errorTrace;
    static std::string& debugTrace;
    static std::string& functionTrace;
    static std::string& lastError;
    static std::string& logFileName;
    static const std::string& logFilePath;
    static std::string& startTime;
    // Of a run that ends before it has named its log.
    static constexpr const char* DEFAULT_LOG = "zlCliLog.log";
    // Limit of the log file, in bytes, before a section is appended.
    static constexpr uint32_t maxSizeLogfile = 100000;
};

// The head of every operation of a shared class: its signature enters the function trace. Trivial inline
// accessors go without.
#define ZL_TRACE() ZlErrorService::errorServiceP->pushFuncName(__PRETTY_FUNCTION__)
