// The function of a command as a task: what to run, under which mode and name.
//
// Validation makes one for each command or option that is declared with a function.
#pragma once

#include <string>

class ZlErrorService;

class ZlFunction {
public:
    // How a task is guarded while it runs. Any value but the first locks.
    enum MODES {
        MODE_DEFAULT = 0,           // in this process, without a lock
        MODE_SINGLE_ON_NODE = 1,    // once at a time on this node
        MODE_SINGLE_IN_CLUSTER = 2, // once at a time in the cluster
    };

    ZlFunction(const std::string& option, const std::string& command, int (*work)());

    void setOperationMode(MODES mode);
    void setName(const std::string& text);
    void setID(unsigned long taskId);
    std::string getName() const;
    const std::string& getOptionName() const { return optionName; }
    const std::string& getCmdName() const { return cmdName; }
    MODES getOperationMode() const { return operationMode; }
    unsigned long getID() const { return id; }

    // The order of the functions' addresses.
    bool operator<(const ZlFunction& other) const;

    static ZlErrorService* errorServiceP;

private:
    std::string optionName;
    std::string cmdName;
    int (*function)();
    MODES operationMode = MODE_DEFAULT;
    std::string name;
    unsigned long id = 0;
};
