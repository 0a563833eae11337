// The function of a command as a task: run in this process, or detached in the background, once at a time.
//
// A task with a lock is handed from the process that the user started to a detached worker. The lock is one
// value under one key: in the CCR for the whole cluster, in a file below /var/zelf/ces/ for this node.
// Whoever comes later reads the value, sees who holds it, asks that node whether the process is alive, and
// takes over or gives up. Two that come at once are told apart by the version of the value, which a write in
// the CCR must match.
//
// Validation makes one for each command or option that is declared with a function. No verb declares a lock:
// all but the run without one stands ready for other commands.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

class ZlErrorService;

class ZlFunction {
public:
    // How a task is guarded while it runs. Each of the two low bits means a lock; only the last value uses
    // the CCR.
    enum MODES : int {
        MODE_DEFAULT = 0,           // in this process, without a lock
        MODE_SINGLE_ON_NODE = 1,    // once at a time on this node
        MODE_SINGLE_IN_CLUSTER = 2, // once at a time in the cluster
    };

    // State of a task, as its lock value tells it.
    enum STATES : int {
        STATE_SUCCESS = 1,
        STATE_FAILED = 2,
        STATE_LOCKED_BY_PARENT = 3,
        STATE_LOCKED_BY_CHILD = 4,
        STATE_FREE = 5, // nothing stands against a write
        STATE_NONE = 6, // nothing valid was read
    };

    ZlFunction(const std::string& option, const std::string& command, int (*work)());

    void setOperationMode(MODES mode);
    void setName(const std::string& text);
    void setID(unsigned long taskId);
    std::string getName() const;

    // The order of the functions' addresses.
    bool operator<(const ZlFunction& other) const;

    // Runs the task. Without a lock: gives the function's result. With one: starts a worker and gives 0, or
    // gives what setLock() refused it with. A worker ends the process here, unless its function gives -1,
    // which stands for the parent.
    int execute();

    // Forks. Gives the process id and -1 in the parent, or when fork(2) failed; the result of runChild() in
    // the worker.
    std::pair<int, int> runDetached();

    // Takes over the lock, goes to the background and calls the function. Gives the process id and its
    // result.
    std::pair<int, int> runChild();

    // Writes `state` into the lock when nothing stands against it. 0 for success, else what does, 1, or
    // what the write gave.
    int setLock();

    // Decides whether this process may write the lock: STATE_FREE, or what stands against it.
    STATES analyseLock();

    // Reads the lock into the `lock` fields.
    void getLockData();

    // The lock in a file. The same forms as in ZlCcrService, but no version is compared: nothing protects two
    // writers from each other here.
    std::pair<int, std::string> getKeyValue(const std::string& lockKey);
    std::pair<int, std::string> setKeyValue(const std::pair<std::string, std::string>& pair, int newVersion);
    bool delKey(const std::string& lockKey, int ofVersion);

    static ZlErrorService* errorServiceP;

private:
    bool locks() const { return (operationMode & 3) != 0; }
    bool locksInCluster() const { return operationMode == MODE_SINGLE_IN_CLUSTER; }
    bool askForHolder();
    void restartVersions();
    void lookForWorker(int parent);
    [[noreturn]] void endWorker(int status);

    // Where the task comes from. Nothing reads it but a debugger.
    std::string optionName;
    std::string cmdName;
    int (*function)();
    MODES operationMode = MODE_DEFAULT;
    STATES state = STATE_FREE; // what the next setLock() writes
    std::string name;          // also the key, and the base of the output files' names
    std::string key;
    int32_t version = -1; // what the next write must match
    int32_t pid = -1;     // holder of the lock, as this object sees it
    int32_t parentPid = -1;
    int32_t childPid = -1;
    unsigned long id = 0;
    std::string reason;        // why a lock was refused, for the user
    std::string lockEntryText; // what the lock holds, for the user
    int32_t lockVersion = -1;  // and on: what was read of the lock
    std::string lockNode;
    int32_t lockPid = -1;
    std::string lockStateText;
    int32_t lockId = 0;
    STATES lockState = STATE_NONE;
};
