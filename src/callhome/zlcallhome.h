// The tool: the grammar of its commands, the call-home configuration, this node's place in the call-home
// groups, and the roads by which a request leaves this node.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/zlcli.h"
#include "cluster/zelfversion.h"
#include "services/plaintable.h"

class ZlCallhomeExecute;
class ZlCcrService;

// From this release of a group's server on, whole commands are forwarded to it, and settings go through the
// monitoring service. Older servers are reached through the helper program.
constexpr const char* MONITORING_ROUTE_VERSION = "4.2.3.7";

// The monitoring service's client on this node; a request follows.
constexpr const char* MONITORING_CLIENT = "/opt/zelf/bin/zelfmonc callhome ";

class ZlCallhome final : public ZlCli {
public:
    using Section = std::map<std::string, std::string>;

    // Bits of statusFlags.
    enum STATUS_FLAGS : uint64_t {
        STATUS_CURRENT = 1, // --current
        STATUS_VERBOSE = 2, // --verbose
    };

    // Reads and checks everything: the command line, the environment, the configuration. Ends the process
    // when one of them is not as it must be.
    ZlCallhome(int argc, char** argv);
    ~ZlCallhome();

    // Declares the grammar and validates the one command that the line gives (zlcallhome_grammar.cpp). Gives
    // 0.
    int parseCmdLine(int argc, char** argv);

    // Checks for the helper program, the CCR, and the configuration in the CCR.
    int checkEnvironment() override;

    // --- configuration (zlcallhome_config.cpp) ---------------------------------------------------------

    // Reads the configuration file of the CCR into `config`. Ends the process when it cannot.
    int parseConfig();

    // Writes the configuration file's text. 1: `config` is empty.
    unsigned getConfig(std::ostringstream& stream) const;

    // Gives the value, "unknown" for what is missing.
    std::string getConfigAttribute(const std::string& section, const std::string& key) const;

    // 1 for a value that is neither "unknown" nor empty.
    int isConfigAttributeDefinedAndNotEmpty(const std::string& section, const std::string& key) const;

    // Merges a section into `config`, in memory only. Empty means delete: an empty map the section, an empty
    // value the key. Gives 0.
    int setConfig(const std::pair<std::string, Section>& section);

    // Stores `config` in the CCR. 1: there is none. Ends the process when it cannot be stored.
    int writeConfig();

    // Removes the first argument equal to `name`, with `ignoreCase` in any case. 1: removed.
    int removeOption(std::string name, bool ignoreCase);

    // Has the monitoring service create the configuration file; ends the process when that fails.
    void ensureConfigInCCR();

    // Gives the commands that would set the section up elsewhere, as lists of words. With `parse`, reads the
    // configuration anew first. 0: no such section.
    int configSectionToCmds(const std::string& section, std::set<std::vector<std::string>>* cmds, bool parse);

    // --- call-home nodes (zlcallhome_nodes.cpp) --------------------------------------------------------

    // Reads the configuration anew and derives this node's place from it.
    void updateCallhomeNodes();

    // Gives the server of this node's group; empty outside every group's child list.
    std::string getCallhomeNode() const;

    // Give all servers and all children of all groups, read anew. No verb asks for the children yet.
    const std::set<std::string>& getCallhomeNodes();
    const std::set<std::string>& getCallhomeChilds();

    // 1 when this node is a server or a child of some group.
    int isCurrNodeInCallhomeGroup() const;

    bool isCapabilityEnabled() const;

    // Gives the release of this group's server, "0.0.0.0" when unknown.
    ZelfVersion getThisGroupMasterVersion() const;

    // Brings the node classes of servers and clients in line with the configuration.
    void setCallhomeNodeClasses();

    // --- progress records (zlcallhome_progress.cpp) ----------------------------------------------------

    // Adds a row for each run of the task to `rows`, the newest first: group, task, start time, status;
    // return code, data id and original file name with STATUS_VERBOSE; package file name. 1: the task's file
    // cannot be read. Throws std::out_of_range, without STATUS_VERBOSE, for a package not named by the
    // gathering tools.
    int readProgressFile(const std::string& task, PlainTable& rows) const;

    // --- roads to the monitoring service (zlcallhome_monitor.cpp) --------------------------------------

    // Runs a request of the monitoring client on this group's server. Gives the exit code of what was run.
    int runZelfmonCmdOnCallhomeNode(const std::string& command, std::vector<std::string>* output);

    // Runs the helper program, or the tool at `toolPath`, on this node. Empty words mean subject and verb of
    // the command. `buffer` counts only in a process started with -I; else the arguments of the command do,
    // which are quoted in place: do not call twice.
    int executeCHcmd(const std::string& subject, const std::string& verb, const char* buffer,
                     std::vector<std::string>* output, const std::string& toolPath);

    static constexpr const char* TOPOLOGY_LABEL = "topology";
    static constexpr const char* GLOBAL_LABEL = "global";
    static constexpr const char* GROUP_LABEL = "group";
    static constexpr const char* ccrFile = "_callhomeconfig";

    // Keys of the configuration. The settings of the info and proxy verbs are named by their options.
    static constexpr const char* CALLHOME_NODE = "callhomeNode";
    static constexpr const char* CALLHOME_CHILD_NODES = "callhomeChildNodes";
    static constexpr const char* MASTER_RELEASE_VERSION = "masterReleaseVersion";
    static constexpr const char* ENABLED = "enabled";
    static constexpr const char* PROXY_ENABLED = "proxy-enabled";
    static constexpr const char* PROXY_AUTH_ENABLED = "proxy-auth-enabled";
    static constexpr const char* DAILY = "daily";
    static constexpr const char* WEEKLY = "weekly";

    // What a value reads as when it is missing; a stored value of this text counts as missing too.
    static constexpr const char* UNKNOWN = "unknown";

    uint64_t statusFlags = 0;

    // Section name to keys and values: "global", and one section for each group.
    std::map<std::string, Section> config;

    std::string groupName;                // this node's group
    std::set<std::string> callhomeChilds; // all child nodes
    std::set<std::string> callhomeNodes;  // all servers

private:
    void checkForHelperScripts();
    void checkIfCCrIsEnabled();

    // Deleted from the last to the first.
    std::unique_ptr<ZlCallhomeExecute> execute;
    std::unique_ptr<ZlCcrService> ccrService;
    int32_t groupCount = 0; // groups that the last parseConfig() saw, for whoever looks with a debugger
    std::string callhomeNode;
};

// Gives the settings that "SUBJECT change" takes: its options without their dashes (zlcallhome_grammar.cpp).
std::set<std::string> settingsOf(const std::string& subject);

// The one object of the process, for the handlers.
extern ZlCallhome* chServiceP;
