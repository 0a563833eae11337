// The command line, from argv to the last word said to the user. ZlCallhome derives from it.
//
// The object lives as long as the process. It ends in one of two ways: by its destructor, on the ordinary way
// through main(), or by terminateProgram(), which leaves it undestroyed. Both say what is to be said, once,
// and write the trace. Nothing else prints words of the framework: code that fails or finishes stores a
// result message in `userResponse`, pushes further messages, and returns or terminates.
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
#include "services/zlfunction.h"

class ZlClusterInfo;
class ZlErrorService;

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

    uint64_t getParserBits() const;
    uint64_t getParserResultBit(uint64_t bit) const;
    bool hasAnyParserResultBits(uint64_t mask) const;
    void setParserResultBit(uint64_t bits);
    void unsetParserResultBit(uint64_t bits);
    void setMachineReadableOutput(bool value);
    bool getMachineReadableOutput() const;

    // --- arguments -------------------------------------------------------------------------------------

    std::string getCmdOptions() const;
    const std::vector<std::string>& getCmdOptionVector() const;
    void clearCmdOptions();
    void appendCmdOptions(const std::string& text);
    const std::vector<std::string>& getCmdLineArgs() const;
    void setCmdLineArgs(const std::vector<std::string>& args);
    const std::string& getShellCmd() const;
    bool helpRequest() const;
    bool getInteractive() const;
    void setRemoteExecution(bool value);
    bool doRemoteExecution() const;

    // --- messages and the end (zlcli_messages.cpp) -----------------------------------------------------

    // Adds a line to the block "Additional messages:".
    void pushMessage(const std::string& text);

    // Writes result message, additional messages and bad arguments. 0: no additional message was there.
    int createMessages(std::ostream& out);

    // Calls createMessages on standard output for the result code 0, on standard error for any other.
    void showMessages();

    // Ends the process: shows the messages ("Success" or "Failed" when there is none), writes the trace.
    [[noreturn]] void terminateProgram(int status);

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

    // Runs a remote command on all valid nodes of sufficient level. The output goes into *results by node
    // name, headers of colon records ahead of all nodes; without `results` to standard output.
    int executeCMDonAll(const std::string& remoteCmd, const std::string& options,
                        std::map<std::string, std::string>* results);

    // Percent-encodes everything but letters, digits and bytes that are no ASCII punctuation or blank.
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

    nodeLevel_t getMinReleaseLevel() const;
    void setMinReleaseLevel(nodeLevel_t level);
    nodeLevel_t getMinRemoteNodeLevel() const;
    void setMinRemoteNodeLevel(nodeLevel_t level);

    // --- daemon and CCR --------------------------------------------------------------------------------

    bool get_zelfdRunning() const;
    int isCCrEnabled() const;

    static const std::string optstring;
    static const std::string REMOTE_ONE1;
    static const std::string REMOTE_ONALL;
    // What runs an encoded command line on the other node.
    static const std::string REMOTE_ENTRY;
    // An older form of the dispatch, no longer used.
    static const std::string REMOTE_PRE_CMD;
    static const std::string REMOTE_POST_CMD;
    static ZlErrorService* errorServiceP;

    // The state of the run. `subject`, `verb` and `cmdOptions` are the command as validated and mapped,
    // `savedCmdOptions` the arguments as they were typed.
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
    void takeFrameworkOption(int argc, char** argv);
    void takeNodeOption(const char* definition, const std::string& option, uint64_t bit);
    void takeArgument(const std::string& arg);
    void recordBadArg(const std::string& kind);

    bool remoteExecution = false;
    bool helpRequested = false;
    bool interactive = false;
    nodeLevel_t minRemoteNodeLevel = 0;
    uint64_t parserResult = 0;
    nodeLevel_t minReleaseLevel = 0;
    bool zelfdRunning = false;
    ZlClusterInfo* clusterInfoP; // owned
};
