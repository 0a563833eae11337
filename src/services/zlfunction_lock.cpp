// The lock of a task: its value, who may write it, and where it is kept. No verb has one; it stands ready for
// other commands.
//
// The value is "<node>,<pid>,<state>,<task id>". It has no colon, since the reply of the CCR is cut at
// colons.
#include "services/zlfunction.h"

#include <cstdlib>

#include "cluster/zlclusterinfo.h"
#include "services/executecmd.h"
#include "services/zlccrservice.h"
#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlutils.h"

namespace {

struct StateName {
    ZlFunction::STATES state;
    const char* name;
};

constexpr StateName STATE_NAMES[] = {
    {ZlFunction::STATE_SUCCESS, "success"},
    {ZlFunction::STATE_FAILED, "failed"},
    {ZlFunction::STATE_LOCKED_BY_PARENT, "locked_by_parent"},
    {ZlFunction::STATE_LOCKED_BY_CHILD, "locked_by_child"},
};

ZlFunction::STATES toState(const std::string& text)
{
    for (const StateName& row : STATE_NAMES) {
        if (text == row.name) {
            return row.state;
        }
    }
    return ZlFunction::STATE_NONE;
}

int32_t toNumber(const std::string& text)
{
    return static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10));
}

// Without a word for the state, the value does not parse.
std::string lockValue(ZlFunction::STATES state, int32_t pid, unsigned long id)
{
    std::string value = ZlClusterInfo::getLocalNodeName() + "," + toString(pid);
    for (const StateName& row : STATE_NAMES) {
        if (state == row.state) {
            value = value + "," + row.name + ",";
        }
    }
    return value + toString(id);
}

std::string lockFile(const std::string& key)
{
    return "/var/zelf/ces/" + key;
}

} // namespace

void ZlFunction::getLockData()
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlFunction::getLockData: begin");
    const auto [readVersion, value] = locksInCluster() ? ZlCcrService::getKeyValue(key) : getKeyValue(key);
    lockEntryText = "key: " + key + "    value: " + value;
    lockVersion = readVersion;
    lockState = STATE_NONE;
    if (state == STATE_FREE) {
        state = STATE_LOCKED_BY_PARENT;
        version = readVersion;
    }
    if (readVersion == -1) {
        return;
    }
    const std::vector<std::string> fields = split(value, ",");
    if (fields.size() != 4) {
        errorServiceP->pushDebugMsg("ZlFunction::getLockData: invalid value format: key " + key +
                                    " version " + toString(version) + " ccr value " + value + " data size " +
                                    toString(fields.size()) + " numbers 4");
        return;
    }
    errorServiceP->pushDebugMsg("ZlFunction::getLockData: lock value has valid structur.");
    lockNode = fields[0];
    lockPid = toNumber(fields[1]);
    lockStateText = fields[2];
    lockId = toNumber(fields[3]);
    lockState = toState(lockStateText);
    errorServiceP->pushDebugMsg("ZlFunction::getLockData: state = " + lockStateText + "end");
}

// Asks the holder's node for the process. True when it has died, which any other answer denies.
bool ZlFunction::askForHolder()
{
    ZL_TRACE();
    const std::string pidText = toString(lockPid);
    errorServiceP->pushDebugMsg("ZlFunction::analyseLock: check process: " + lockNode + ":" + pidText);
    std::vector<std::string> reply;
    _executeCMD("/opt/zelf/bin/zelfrun on1 " + lockNode + " pid " + pidText, &reply);
    std::string answer = reply.empty() ? emptyStrg : reply[0];
    trim(answer, whitespace);
    if (answer == "died") {
        errorServiceP->pushDebugMsg("ZlFunction::analyseLock: died");
        return true;
    }
    errorServiceP->pushDebugMsg("ZlFunction::analyseLock: alive");
    reason = "Lock: " + lockStateText + " process still alive.";
    return false;
}

ZlFunction::STATES ZlFunction::analyseLock()
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlFunction::analyseLock: begin");
    getLockData();
    errorServiceP->pushDebugMsg("ZlFunction::analyseLock: lock data: version=" + toString(version) +
                                " state " + toString(static_cast<int>(lockState)));
    STATES result = STATE_FREE;
    if (lockState == STATE_LOCKED_BY_PARENT || lockState == STATE_LOCKED_BY_CHILD) {
        // Only a process that has not forked is a stranger to the lock, and asks about its holder.
        const bool isFree = childPid == -1 ? askForHolder() : lockPid == parentPid || lockPid == childPid;
        result = isFree ? STATE_FREE : lockState;
    } else if (lockState != STATE_NONE && static_cast<unsigned long>(lockId) == id) {
        reason = "current process state: " + lockStateText + ". But specified ID is equel lock ID.";
        result = lockState;
    }
    errorServiceP->pushDebugMsg("ZlFunction::analyseLock: done lock status = " +
                                toString(static_cast<int>(result)));
    return result;
}

int ZlFunction::setLock()
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlFunction::setLock: for " + key + " at state " +
                              toString(static_cast<int>(state)) + " for version " + toString(version));
    const STATES status = analyseLock();
    if (status != STATE_FREE) {
        errorServiceP->pushNewMsg("ZlFunction::setLock: Process locked by lock state: " + lockStateText);
        return status;
    }
    errorServiceP->pushNewMsg("ZlFunction::setLock: change lock: mode " +
                              toString(static_cast<int>(operationMode)) + " lock status " +
                              toString(static_cast<int>(state)) + " this pid " + toString(pid));
    const std::pair<std::string, std::string> entry(key, lockValue(state, pid, id));
    const auto [result, text] =
        locksInCluster() ? ZlCcrService::setKeyValue(entry, version) : setKeyValue(entry, version);
    // Never beyond the type's end: execute() restarts the versions when it is near.
    version = version < INT32_MAX ? version + 1 : version;
    errorServiceP->pushNewMsg("ZlFunction::setLock: done with: " + text);
    return result;
}

std::pair<int, std::string> ZlFunction::getKeyValue(const std::string& lockKey)
{
    ZL_TRACE();
    ZlFileIO file(lockFile(lockKey));
    errorServiceP->pushDebugMsg("ZlFunction::getKeyValue: file =" + file.getFileName());
    if (file.statFile() != 0) {
        errorServiceP->pushNewMsg("ZlFunction::getKeyValue no file " + file.getFileName());
        return {-1, emptyStrg};
    }
    const int result = file.readFile();
    std::string text;
    file.getData(&text);
    errorServiceP->pushDebugMsg("ZlFunction::getKeyValue: get from file =" + file.getFileName() + " " + text +
                                " with rc=" + toString(result));
    const auto entry = parseVersionedEntry(text);
    if (!entry) {
        errorServiceP->pushNewMsg("ZlFunction::getKeyValue invalid response " +
                                  containerToString(split(text, ":"), emptyStrg));
        return {-1, emptyStrg};
    }
    return *entry;
}

std::pair<int, std::string> ZlFunction::setKeyValue(const std::pair<std::string, std::string>& pair,
                                                    int newVersion)
{
    ZL_TRACE();
    const auto& [lockKey, value] = pair;
    const std::string line = "vget:" + toString(newVersion) + ":" + value + "\n";
    ZlFileIO file(lockFile(lockKey));
    const int stored = file.setData(line);
    errorServiceP->pushDebugMsg("ZlFunction::setKeyValue: write to file =" + file.getFileName() + " " + line +
                                " with rc=" + toString(stored));
    const int result = file.writeFile();
    const std::string tail = "for (" + lockKey + ", " + value + ") rc = " + toString(result);
    if (result != 0) {
        errorServiceP->pushNewMsg("ZlFunction::setKeyValue failed wit rc = " + toString(result) + tail);
        return {result, "ccr vput failed " + tail};
    }
    errorServiceP->pushNewMsg("ZlFunction::setKeyValue success " + tail);
    return {0, "ccr vput success " + tail};
}

bool ZlFunction::delKey(const std::string& lockKey, int ofVersion)
{
    ZL_TRACE();
    ZlFileIO file(lockFile(lockKey));
    errorServiceP->pushDebugMsg("ZlFunction::delKey: file =" + file.getFileName() +
                                " version=" + toString(ofVersion));
    if (file.statFile() != 0) {
        errorServiceP->pushNewMsg("ZlFunction::delKey no file " + file.getFileName());
        return false;
    }
    file.removeFile();
    return true;
}
