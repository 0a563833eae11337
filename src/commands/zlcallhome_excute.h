// The handlers of all verbs, and what they share. (The settings that the tool knows are in
// callhome/zlcallhomeexecute.h.)
//
// A handler returns its status and leaves its words in the userResponse of chServiceP, or ends the process.
// The arguments of the command are in the argument vector of chServiceP; `args`, the text after the verb, is
// empty unless subject and verb came in one word.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "callhome/zlcallhome.h"
#include "services/plaintable.h"

int groupList(char* prompt, char* args, bool interactive);
int groupAdd(char* prompt, char* args, bool interactive);
int groupDel(char* prompt, char* args, bool interactive);
int groupAuto(char* prompt, char* args, bool interactive);
int capabilityList(char* prompt, char* args, bool interactive);
int capabilityEnable(char* prompt, char* args, bool interactive);
int capabilityDisable(char* prompt, char* args, bool interactive);
int infoList(char* prompt, char* args, bool interactive);
int infoChange(char* prompt, char* args, bool interactive);
int proxyEnable(char* prompt, char* args, bool interactive);
int proxyDisable(char* prompt, char* args, bool interactive);
int proxyList(char* prompt, char* args, bool interactive);
int proxyChange(char* prompt, char* args, bool interactive);
int scheduleList(char* prompt, char* args, bool interactive);
int scheduleAdd(char* prompt, char* args, bool interactive);
int scheduleDelete(char* prompt, char* args, bool interactive);
int runGatherSend(char* prompt, char* args, bool interactive);
int runSendFile(char* prompt, char* args, bool interactive);
int statusList(char* prompt, char* args, bool interactive);
int statusDelete(char* prompt, char* args, bool interactive);
int testConnection(char* prompt, char* args, bool interactive);
int zelfmonQuery(char* prompt, char* args, bool interactive);

// Leaves the reason as the result message. Gives 1.
int fail(const std::string& reason);

// True when this node is in a group whose server is older than the monitoring service's requests: the command
// then goes to the helper program.
bool isOldMaster();

// Gives an argument by its place. Ends the process when it is missing, which no validated command lets
// happen: the dispatcher also takes subject and verb out of one word, and such a line has no arguments.
const std::string& requiredArgument(size_t place);

// Hands the command to the helper program on this node. Gives its exit code.
int forwardToHelper(const std::string& subject, const std::string& verb, const char* args);

// Hands the option and value pairs of the command to the monitoring service. 2: there are none.
int changeSettingsBasedOnOptions();

// Sends a request to the monitoring service by its client on this node. The answer becomes the result
// message. Gives the client's exit code.
int askMonitoringService(const std::string& request);

// Hand settings to the monitoring service, in the order of their keys.
int changeSettingViaZelfmon(const ZlCallhome::Section& settings);
int changeSettingViaZelfmon(const std::string& key, const std::string& value);

// Gives the sections of the configuration with their names: "global", then the groups in the order of theirs.
std::vector<std::pair<std::string, ZlCallhome::Section>> sectionsGlobalFirst();

// What a node outside every group hears.
constexpr const char* NO_CALLHOME_NODE =
    "Failed to obtain a valid call home node.\n"
    "A call home group for this node needs to be defined using group command.";

// Rewrites the task words in the text behind a verb as the helper program knows them.
void mapTaskWords(char* args);

// Tells whether a run may begin on this node: 0, or 1 with the reason as result message.
int runCmdPreCheck();

// Gives a copy of `text` with each `what` replaced; what was inserted is not searched again.
std::string replaceAllSubstrings(std::string text, const std::string& what, const std::string& by);
