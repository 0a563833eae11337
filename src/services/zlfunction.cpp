#include "services/zlfunction.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

#include "services/ownfile.h"
#include "services/zlccrservice.h"
#include "services/zlerrorservice.h"
#include "services/zltime.h"
#include "services/zlutils.h"

ZlFunction::ZlFunction(const std::string& option, const std::string& command, int (*work)())
    : optionName(option), cmdName(command), function(work)
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlFunction::ZlFunction: mode = " +
                                toString(static_cast<int>(operationMode)));
}

void ZlFunction::setOperationMode(MODES mode)
{
    ZL_TRACE();
    operationMode = mode;
    errorServiceP->pushDebugMsg("ZlFunction::setOperationMode: mode = " + toString(static_cast<int>(mode)));
}

void ZlFunction::setName(const std::string& text)
{
    ZL_TRACE();
    name = text;
}

void ZlFunction::setID(unsigned long taskId)
{
    ZL_TRACE();
    id = taskId;
}

std::string ZlFunction::getName() const
{
    ZL_TRACE();
    return name;
}

bool ZlFunction::operator<(const ZlFunction& other) const
{
    ZL_TRACE();
    return std::less<>()(function, other.function);
}

int ZlFunction::execute()
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlFunction::execute: mode = " + toString(static_cast<int>(operationMode)));
    if (!locks()) {
        const int result = function();
        errorServiceP->pushNewMsg("ZlFunction::execute: default mode rc=" + toString(result));
        return result;
    }
    errorServiceP->pushDebugMsg("ZlFunction::execute: perform single mode");
    parentPid = getpid();
    pid = parentPid;
    state = STATE_FREE;
    key = name;
    const int refusal = setLock();
    if (refusal != 0) {
        std::cout << "Lock request rejected.\nReason: " << reason << "\nccr entry: " << lockEntryText
                  << std::endl;
        return refusal;
    }
    restartVersions();
    const auto [holder, status] = runDetached();
    // The worker comes back from its function with a status; -1 is the parent's.
    if (status != -1) {
        endWorker(status);
    }
    lookForWorker(holder);
    return 0;
}

// Begins at version 0 again when the counter is close to its end.
void ZlFunction::restartVersions()
{
    ZL_TRACE();
    constexpr int32_t VERSION_LIMIT = 2147483600;
    if (version <= VERSION_LIMIT) {
        return;
    }
    if (locksInCluster()) {
        ZlCcrService::delKey(key, -1);
    } else {
        delKey(key, -1);
    }
    version = 0;
    setLock();
}

void ZlFunction::endWorker(int status)
{
    ZL_TRACE();
    if (status < -1) {
        setLock();
        std::exit(0);
    }
    errorServiceP->pushNewMsg("ZlFunction::execute: terminate child with rc = " + toString(status));
    if (status != 0) {
        errorServiceP->fullLog();
    }
    errorServiceP->writeTrace();
    std::exit(status);
}

// Notes whether the lock is the worker's already; if not, gives it half a second. The parent does not wait
// for its end.
void ZlFunction::lookForWorker(int parent)
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlFunction::execute: parent post process.");
    getLockData();
    if (lockPid == childPid) {
        getLockData();
    } else {
        usleep(500000);
    }
    // Support scripts know the two texts in this order.
    errorServiceP->pushNewMsg(
        lockPid == parent ? "ZlFunction::execute: parent post process. Terminate: child started."
                          : "ZlFunction::execute: parent post process. Terminate: child not started yet.");
}

std::pair<int, int> ZlFunction::runDetached()
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlFunction::runDetached: begin");
    // What stands in the streams' buffers belongs to the parent.
    std::fflush(nullptr);
    childPid = fork();
    if (childPid == -1) {
        const int number = errno;
        errorServiceP->pushNewMsg("ZlFunction::runDetached: fork failed");
        std::cout << "Fork Failed: " << number << std::endl;
        return {-1, -1};
    }
    if (childPid == 0) {
        return runChild();
    }
    pid = parentPid;
    errorServiceP->pushNewMsg("ZlFunction::runDetached: parent(" + toString(parentPid) + ") of child(" +
                              toString(childPid) + ")");
    std::cout << "Worker process started: " << childPid << " taskID = " << id << std::endl;
    return {pid, -1};
}

namespace {

// The name of the worker's log: "zelfhome.log" becomes "zelfhome.child", to which the trace adds ".log".
std::string childLogName(std::string logName)
{
    constexpr size_t ENDING_LENGTH = 5;
    const size_t ending = logName.rfind('.');
    if (ending != std::string::npos) {
        logName.replace(ending, ENDING_LENGTH, ".child");
    }
    return logName;
}

// Lets the tool's own streams read from /dev/null and write to two files, as long as it lives. The
// descriptors 0, 1 and 2 stay what they were.
class RedirectedStreams {
public:
    RedirectedStreams(const std::string& outFile, const std::string& errFile)
        : in("/dev/null"), out(outFile), err(errFile), formerIn(std::cin.rdbuf(in.rdbuf())),
          formerOut(std::cout.rdbuf(out.rdbuf())), formerErr(std::cerr.rdbuf(err.rdbuf()))
    {
    }
    ~RedirectedStreams()
    {
        std::cin.rdbuf(formerIn);
        std::cout.rdbuf(formerOut);
        std::cerr.rdbuf(formerErr);
    }
    RedirectedStreams(const RedirectedStreams&) = delete;
    RedirectedStreams& operator=(const RedirectedStreams&) = delete;

private:
    std::ifstream in;
    std::ofstream out;
    std::ofstream err;
    std::streambuf* formerIn;
    std::streambuf* formerOut;
    std::streambuf* formerErr;
};

} // namespace

std::pair<int, int> ZlFunction::runChild()
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlFunction::runChild: switch logging to child process with pid: " +
                              toString(childPid));
    errorServiceP->setLogFileName(childLogName(errorServiceP->getLogFileName()));
    errorServiceP->pushNewMsg("ZlFunction::runChild: parent: " + toString(parentPid) +
                              " child: " + toString(childPid));
    childPid = getpid();
    pid = childPid;
    state = STATE_LOCKED_BY_CHILD;
    const int refusal = setLock();
    const std::string outFile = "/var/zelf/tmp/" + name + ".stdout";
    const std::string errFile = "/var/zelf/tmp/" + name + ".stderr";
    if (refusal != 0) {
        std::cout << "Child did not get lock. Terminate process." << std::endl;
        return {childPid, 1};
    }
    std::cout << "Child got lock. Send to background. Output redirected to " << outFile << ", " << errFile
              << std::endl;
    umask(0);
    if (setsid() == -1 || chdir("/") != 0) {
        std::exit(1);
    }
    for (const std::string& file : {outFile, errFile}) {
        removeForeignFile(file);
    }
    const RedirectedStreams redirected(outFile, errFile);
    errorServiceP->pushNewMsg("ZlFunction::runChild: stdout -> " + outFile + " : stderr -> " + errFile);
    // The log readers expect the word "time" in the time's place.
    std::cout << "Worker process " << name << ": pid = " << pid << " func pointer " << (function != nullptr)
              << " is starting at time" << std::endl;
    errorServiceP->pushNewMsg("ZlFunction::runChild: execute function begin");
    ZlTime duration;
    duration.start();
    const int result = function();
    duration.stop();
    errorServiceP->pushNewMsg("ZlFunction::runChild: execute function stop");
    std::cout << "worker done with rc " << result << std::endl;
    std::cout << "workers execution time: " << duration.getTimeStr() << " seconds." << std::endl;
    state = result == 0 ? STATE_SUCCESS : STATE_FAILED;
    setLock();
    return {childPid, result};
}
