// The command line, from argv to the last word said to the user. ZlCallhome derives from it.
//
// The object lives as long as the process. It ends in one of two ways: by its destructor, on the ordinary way
// through main(), or by terminateProgram(), which leaves it undestroyed. Both say what is to be said, once,
// and write the trace. Code that fails or finishes does not print: it stores a result message in
// `userResponse`, pushes further messages, and returns or terminates. What is printed on the way are usage
// texts, messages of the catalogue, tables, the output of commands as it arrives (executeCMD), and what
// --debug shows.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "cli/zlcmd.h"
#include "cli/zloption.h"
#include "cluster/nodelevel.h"
#include "services/zlerrorservice.h"
#include "services/zlfunction.h"
#include "services/zlutils.h"

class ZlClusterInfo;

// What the parser found on the command line. The value 8 is free.
enum PARSER_BITS : uint64_t {
    PARSER_HELP = 1,
    PARSER_ALL_NODES = 2,
    PARSER_NODE_LIST = 4,
    PARSER_INTERACTIVE = 16,
    PARSER_MACHINE_READABLE = 32,
    PARSER_BAD_ARGS = 64,
    PARSER_DRY_RUN = 128,
    PARSER_DRY_RUN_STOP = 256,
    PARSER_TOKEN_CASE = 512,
    PARSER_DISPLAY_TABLE = 1024,
    PARSER_DISPLAY_LIST = 2048,
};

class ZlCli {
public:
    // Starts the trace of the run, with what the cluster says of itself. When the last argument is
    // "--fullDecode" all arguments are decoded in place first: the line comes from another node.
    ZlCli(int argc, char** argv, std::string helperCmd, std::string remotePreCmd, std::string remotePostCmd);
    ZlCli(const ZlCli&) = delete;
    ZlCli& operator=(const ZlCli&) = delete;

    // Checks what the tool needs on this node; ends the process when it is missing. Gives 0.
    virtual int checkEnvironment() = 0;

    // --- parsing (zlcli_parse.cpp) ---------------------------------------------------------------------

    // Splits the command line into subject, verb, arguments and framework options. Gives the number of kinds
    // of bad options. Ends the process at an illegal character.
    int parseCmdLine(int argc, char** argv);

    // Resolves a node definition into the valid and invalid nodes of ZlClusterInfo, with a message for
    // each word that is no node.
    void resolveNodeDefinition(const char* text);

    uint64_t getParserBits() const { return ZL_TRACE(), parserResult; }
    uint64_t getParserResultBit(uint64_t bit) const { return ZL_TRACE(), parserResult & bit; }
    bool hasAnyParserResultBits(uint64_t mask) const { return ZL_TRACE(), (parserResult & mask) != 0; }
    void setParserResultBit(uint64_t bits) { ZL_TRACE(), parserResult |= bits; }
    void unsetParserResultBit(uint64_t bits) { ZL_TRACE(), parserResult &= ~bits; }
    void setMachineReadableOutput(bool value);
    bool getMachineReadableOutput() const
    {
        return ZL_TRACE(), hasAnyParserResultBits(PARSER_MACHINE_READABLE);
    }

    // --- arguments -------------------------------------------------------------------------------------

    std::string getCmdOptions() const { return ZL_TRACE(), containerToString(cmdOptions, " "); }
    const std::vector<std::string>& getCmdOptionVector() const { return ZL_TRACE(), cmdOptions; }
    void clearCmdOptions() { ZL_TRACE(), cmdOptions.clear(); }
    void appendCmdOptions(const std::string& text) { ZL_TRACE(), cmdOptions.push_back(text); }
    const std::vector<std::string>& getCmdLineArgs() const { return ZL_TRACE(), cmdLineArgs; }
    void setCmdLineArgs(const std::vector<std::string>& args) { ZL_TRACE(), cmdLineArgs = args; }
    const std::string& getShellCmd() const { return ZL_TRACE(), shellCmd; }
    bool helpRequest() const { return ZL_TRACE(), helpRequested; }
    bool getInteractive() const { return ZL_TRACE(), interactive; }
    void setRemoteExecution(bool value) { ZL_TRACE(), remoteExecution = value; }
    bool doRemoteExecution() const { return ZL_TRACE(), remoteExecution; }

    // --- messages and the end (zlcli_messages.cpp) -----------------------------------------------------

    // Adds a line to the block "Additional messages:".
    void pushMessage(const std::string& text) { ZL_TRACE(), msgs.push_back(text); }

    // Writes result message, additional messages and bad arguments. 0: no additional message was there.
    int createMessages(std::ostream& out);

    // Calls createMessages on standard output for the result code 0, on standard error for any other.
    void showMessages();

    // Ends the process: shows the messages ("Success" or "Failed" when there is none), writes the trace.
    [[noreturn]] void terminateProgram(int status);

    // Ends the process with status 1. Without a response it says "Failed"; the message goes to the block
    // "Additional messages:".
    [[noreturn]] void giveUp(const std::string& response, const std::string& message = emptyStrg);

    // Reduces the commands to the one at `keep`; ends the process when that is none of them.
    void cleanupCmds(std::vector<ZlCmd>::iterator keep);

    // --- other nodes (zlcli_remote.cpp) ----------------------------------------------------------------

    // Gives subject, verb and arguments as one quoted, percent-encoded shell word.
    std::string getEncodedCmdLine();

    // Gives the shell command that runs an encoded command line on a node; the local node has the helper
    // program run it. Ends the process when either node is unknown.
    const std::string constructCmd(const std::string& encoded, const std::string& node);

    // Runs any shell text, see _executeCMD(). The code becomes the result code.
    int executeCMD(const std::string& cmd, std::vector<std::string>* lines);

    // For other commands; none of this tool runs on many nodes so.
    // Runs a remote command on all valid nodes of sufficient level. The output goes into *results by node
    // name, headers of colon records ahead of all nodes; without `results` to standard output.
    int executeCMDonAll(const std::string& remoteCmd, const std::string& options,
                        std::map<std::string, std::string>* results);

    // Percent-encodes tabs, newlines, blanks and ASCII punctuation; all other bytes stay.
    void fullEncode(std::string& out, const std::string& in) const;
    void decode(std::string& out, const std::string& in);
    void decode(std::vector<std::string>& out, const std::vector<std::string>& in);

    // Puts single quotes around each argument: in a copy in *out, or in place without `out`.
    void quoteOptions(std::vector<std::string>* out);

    std::string getShellCmdOptions() const;

    // Ends the process when the node definition of the command line came to nothing, or had a bad word.
    void checkResolvedNodes(const std::string& text);

    // Adds a message for each word that is no node; gives their number.
    int processBadNodes(const std::set<std::string>* nodes);

    // Tells whether two names name one node. Ends the process when one names none.
    int areNodesEqual(const std::string& a, const std::string& b);

    const std::string& getLocalNodeName() const;

    // --- releases (zlcli_release.cpp) ------------------------------------------------------------------

    // Gives level and version of the cluster's minimum release. 1: unknown.
    int getClusterMinReleaseLevel(nodeLevel_t* level, std::string* version) const;
    std::string getClusterMinReleaseVersion() const;
    nodeLevel_t getClusterMinReleaseLevel() const;
    std::string getNodeReleaseVersion() const;
    nodeLevel_t getNodeReleaseLevel() const;

    // Tells whether a node has at least a level; 0 stands for the tool's minimum level.
    bool ensureMinReleaseLevel(const std::string& node, nodeLevel_t level) const;

    nodeLevel_t getMinReleaseLevel() const { return ZL_TRACE(), minReleaseLevel; }
    void setMinReleaseLevel(nodeLevel_t level) { ZL_TRACE(), minReleaseLevel = level; }
    nodeLevel_t getMinRemoteNodeLevel() const { return ZL_TRACE(), minRemoteNodeLevel; }
    void setMinRemoteNodeLevel(nodeLevel_t level) { ZL_TRACE(), minRemoteNodeLevel = level; }

    // --- daemon and CCR --------------------------------------------------------------------------------

    bool get_zelfdRunning() const { return ZL_TRACE(), zelfdRunning; }
    int isCCrEnabled() const;

    inline static const std::string optstring = "-:N:aI?hHYv";
    inline static const std::string REMOTE_ONE1 = "/opt/zelf/bin/zelfrun on1 ";
    inline static const std::string REMOTE_ONALL = "/opt/zelf/bin/zelfrun onall ";
    // What runs an encoded command line on the other node.
    inline static const std::string REMOTE_ENTRY = "execzelfhome_2";
    // An older form of the dispatch, no longer used.
    inline static const std::string REMOTE_PRE_CMD = " execzelfhome $(/opt/zelf/bin/zelfadm fullEncode '";
    inline static const std::string REMOTE_POST_CMD = "' ) 2>&1";
    static ZlErrorService* errorServiceP;

    // The state of the run. `subject`, `verb` and `cmdOptions` are the command as validated and mapped,
    // `savedCmdOptions` the arguments as they stood ahead of that: option names in lower case, framework
    // options taken off.
    std::string nodeDefinition; // the last value of -N, "all" for -a
    std::string remoteOption;   // "-a" or "-N", whichever came last
    bool showAdditionalMessages = true;
    std::vector<std::string> cmdLineArgs;
    std::string verb;
    std::string subject;
    std::vector<std::string> cmdOptions;
    std::vector<std::string> savedCmdOptions;
    std::string shellCmd; // helper text of the command
    std::string usageText;
    ZlCmd* cmdP = nullptr; // the command, an element of `cmds`
    std::vector<ZlCmd> cmds;
    std::string programName; // file part of argv[0]
    std::vector<std::string> repeatedRemoteOptions;
    std::vector<ZlFunction> functions;
    int execCmdRc = 1;                 // result code: the stream and the exit status
    bool fullDecode;                   // the line comes from another node
    std::string illegalChars = "*;\\"; // refused in any argument
    std::string helperCmd;             // may be swapped for one call
    const std::string defaultHelperCmd;
    std::string closingErrorMsg;
    std::map<std::string, std::vector<char>> badArgs; // option characters by kind
    std::list<std::string> msgs;                      // additional messages
    std::string remotePreCmd;
    std::string remotePostCmd;
    std::string userResponse; // result message; "silent" for none

protected:
    // The ordinary end: shows the messages and writes the trace. Not virtual: the derived object is deleted
    // as what it is.
    ~ZlCli();

private:
    void set_zelfdRunningState();
    void takeFrameworkOption(int argc, char** argv, size_t& letter);
    void takeNodeOption(const char* definition, const std::string& option, uint64_t bit);

    bool remoteExecution = false;
    bool helpRequested = false;
    bool interactive = false;
    nodeLevel_t minRemoteNodeLevel = 0;
    uint64_t parserResult = 0;
    nodeLevel_t minReleaseLevel = 0;
    bool zelfdRunning = false;
    ZlClusterInfo* clusterInfoP; // owned
};
