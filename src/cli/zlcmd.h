// One command of the grammar: a subject, a verb, what may follow them, and how the command relates to other
// nodes.
//
// Commands are plain values. The grammar uses one as a stencil: it declares, copies, declares the next. A
// wrong declaration is a programming error and ends the process with a text that begins "Program error at".
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cluster/nodelevel.h"
#include "services/zlerrorservice.h"
#include "services/zlfunction.h"

class ZlCli;
class ZlOption;

class ZlCmd {
public:
    // The type of a value. ZlOption::getTypeStrg() holds the texts that the user sees.
    enum valueType : int {
        NO = 0,
        ANY = 1,
        ANY_INFINITE = 2,
        INT = 3,
        DECIMAL = 4,
        ALPHA = 5,
        IP = 6,
        EMAIL = 7,
        COUNTRY_CODE = 8,
        TOKEN_OPTION = 9,
        TOKEN = 10,
        TOKEN_AS_TYPE = 11,
        NODE = 12,
        CES_NODE = 13,
        NO_OR_ANY = 14,
        EXCLUSIV_CHAR = 15,
        TICKET_NUMBER = 16,
    };

    // Whether an option takes a value.
    enum optionValue : int { VALUE_NONE = 0, VALUE_OPTIONAL = 1, VALUE_REQUIRED = 2 };

    // What -a and -N mean for a command, and where it runs without them.
    enum remoteNodes : int {
        REMOTE_FORBIDDEN = 0,       // -a and -N are refused
        REMOTE_PASSTHROUGH = 1,     // -N and the resolved nodes become arguments
        REMOTE_NORMAL = 2,          // the default
        REMOTE_LOCAL_ONLY = 3,      // -a and -N are accepted and ignored
        REMOTE_CLUSTER_MANAGER = 4, // runs on the cluster manager
        REMOTE_COLLECTOR = 5,       // runs on the active collector node
    };

    using Function = int (*)();
    using UsageFunction = std::string (*)();

    // First words of result messages.
    inline static const std::string userResponseMissingValue = "Missing value. ";
    inline static const std::string userResponseInvalidValue = "Invalid value: ";
    inline static const std::string userResponseMissingArg = "Missing arguments. ";
    inline static const std::string userResponseInvalidArg = "Invalid argument: ";
    inline static const std::string userResponseInvalidLevel = "Invalid release:";
    inline static const std::string userResponseIncorrectOption = "Incorrect option: ";

    // --- declaration -----------------------------------------------------------------------------------

    // `cmdFunc` is dropped on purpose: a function reaches a command through operator() alone. A level of 0
    // stands for the tool's minimum level, here and below.
    ZlCmd(ZlCli* cli, const std::string& subject, const std::string& verb, const std::string& helperCmd,
          std::string (*usage)(), int (*cmdFunc)(), nodeLevel_t level);

    // Begins a new declaration. `verb` is one verb, or alternatives joined by " | ". The mode, the function
    // name and the daemon switch stay as they are.
    void reset(const std::string& subject, const std::string& verb, const std::string& helperCmd,
               int (*cmdFunc)(), std::string (*usage)(), nodeLevel_t level);
    void operator()(const std::string& subject, const std::string& verb, int (*cmdFunc)(),
                    std::string (*usage)(), nodeLevel_t level);
    void operator()(const std::string& subject, const std::string& verb, const std::string& helperCmd,
                    std::string (*usage)(), nodeLevel_t level);

    // Adds a named option, whose name begins with "--", or the next positional.
    void operator()(std::string name, valueType type, bool required, std::string token, int (*cmdFunc)(),
                    nodeLevel_t level);

    // Replace an argument, the verb, or for a verb the shell command, when validation has passed.
    void addMapping(const std::string& from, const std::string& to);
    void addVerbMapping(const std::string& from, const std::string& to);
    void addVerbToCmdMapping(const std::string& from, const std::string& to);

    void setRemoteNodeHandling(remoteNodes handling) { ZL_TRACE(), remoteHandling = handling; }
    remoteNodes getRemoteNodeHandling() const { return ZL_TRACE(), remoteHandling; }
    void setFunctionMode(ZlFunction::MODES mode, const std::string& name);
    void setChildAsDeamon(bool value) { ZL_TRACE(), childAsDeamon = value; }
    void disableValidation() { ZL_TRACE(), doValidation = false; }
    bool validationEnabled() const { return ZL_TRACE(), doValidation; }
    void displayAsList();
    void displayAsTable();

    // --- questions -------------------------------------------------------------------------------------

    std::string getUsage() const { return ZL_TRACE(), usageFn == nullptr ? std::string() : usageFn(); }
    Function getCmdFuncP() const { return ZL_TRACE(), cmdFunc; }
    const std::string& getCmd() const { return ZL_TRACE(), helperCmd; }
    const std::string& getVerb() const { return ZL_TRACE(), verb; }
    const std::string& getSubject() const { return ZL_TRACE(), subject; }
    nodeLevel_t getNodeLevel() const { return ZL_TRACE(), nodeLevel; }
    const std::set<ZlOption>& getOptions() const { return ZL_TRACE(), options; }
    std::set<ZlOption> getMandatoryOptions() const;
    // Gives subject, verb and options in one line, for the trace.
    std::string allNames() const;

    // True when the subjects are equal and the probe's verb is one of this command's alternatives.
    bool operator==(const ZlCmd& probe) const;
    // Descending by subject, then by verb, a shorter verb first. No strict weak order: verbs that share an
    // alternative count as equal, so two commands may equal a third and not each other. Keep no sorted
    // container of commands.
    bool operator<(const ZlCmd& other) const;

    // --- validation (zlcmd_validate.cpp) ---------------------------------------------------------------

    // Checks the arguments and rewrites them as the command's handler wants them. Gives true, or ends the
    // process with status 1.
    bool validate(std::string& cliCmd, std::string& verb, std::vector<std::string>& args) const;
    void processValidation(std::vector<std::string>& args) const;
    // Gives an empty text; any other is a failure.
    std::string verifyAllArgs(std::vector<std::string>& args) const;
    // Gives the checked value, which may have been rewritten.
    std::string verifyType(std::string& arg, const ZlOption& option) const;
    void processChildSpec() const;

    // Decides what -a, -N and the command's own node mean (zlcmd_remote.cpp).
    void processRemoteNodeHandling() const;

    // Ends the process with status 1. The usage is that of the command, where it has one.
    [[noreturn]] void terminateWithMessage(const std::string& response, const std::string& msg,
                                           bool showUsage) const;

private:
    void appendFunction(const std::string& name, const std::string& argument, Function function) const;
    void runOnClusterManager() const;
    void runOnCollector() const;

    ZlFunction::MODES operationMode = ZlFunction::MODE_DEFAULT;
    std::string functionName;
    ZlErrorService* errorServiceP;
    ZlCli* cliP;
    std::string subject;
    std::string verb;
    std::string helperCmd;
    UsageFunction usageFn = nullptr;
    Function cmdFunc = nullptr;
    std::set<ZlOption> options;
    std::map<std::string, std::string> optionMappings;
    std::map<std::string, std::string> verbMappings;
    std::map<std::string, std::string> verbToCmdMappings;
    nodeLevel_t nodeLevel = 0;
    remoteNodes remoteHandling = REMOTE_NORMAL;
    int positionalCount = 0;
    bool doValidation = true;
    uint64_t addParserResultFlags = 0;
    bool childAsDeamon = false;
};
