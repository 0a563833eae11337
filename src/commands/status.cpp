// zelfhome status: how the runs went.
#include "commands/zlcallhome_excute.h"

#include "cli/cmdtable.h"
#include "services/zlerrorservice.h"

namespace {

// Tasks that leave progress records, in the order of the list.
constexpr const char* TASKS[] = {"daily", "weekly", "sendfile", "sendpmrdata"};

// Lists the progress records of this node.
int listLocalProgress()
{
    std::vector<std::string> header = {"group", "task", "startTime", "status"};
    if ((chServiceP->statusFlags & ZlCallhome::STATUS_VERBOSE) != 0) {
        header.insert(header.end(), {"rc", "dataID", "originalFilename"});
    }
    header.emplace_back("packageFileName");
    PlainTable table = {header};
    bool found = false;
    for (const char* task : TASKS) {
        found = chServiceP->readProgressFile(task, table) == 0 || found;
    }
    if (!found) {
        chServiceP->pushMessage("No progress for task found.");
        return 1;
    }
    showList(*chServiceP, table);
    return 0;
}

} // namespace

int statusCmd(char* prompt, char* args, bool interactive)
{
    ZL_TRACE();
    // Help is given outside a group too.
    if (chServiceP->getCallhomeNode().empty() && !chServiceP->helpRequest() && !chServiceP->verb.empty()) {
        chServiceP->pushMessage("Execute this command on a node which is a member of a callhome group.");
        ZlCallhome::errorServiceP->pushNewMsg(
            "statusCmd: Execution not possible on a non callhome group member.");
        chServiceP->giveUp("This node is not a member of a callhome group. Cannot execute this command.");
    }
    helpMsg = statusHelpMsg;
    return executeCommand(prompt, args, statusCmdTable, interactive);
}

int statusList(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    // Colon records always come from the progress files, with all columns.
    if (chServiceP->getMachineReadableOutput()) {
        chServiceP->statusFlags |= ZlCallhome::STATUS_CURRENT | ZlCallhome::STATUS_VERBOSE;
    }
    if ((chServiceP->statusFlags & ZlCallhome::STATUS_CURRENT) != 0) {
        return listLocalProgress();
    }
    mapOption(args, "--verbose", "-v");
    mapOption(args, "DAILY", "daily");
    // As in mapTaskWords().
    mapOption(args, "WEEKLY", "daily");
    mapOption(args, "SENDFILE", "sendfile");
    mapOption(args, "SENDPMRDATA", "sendpmrdata");
    return forwardToHelper("status", "list", args);
}

int statusDelete(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    mapOption(args, "--StartTime", "--startTime");
    mapOption(args, "--StartTimeBefore", "--startTimeBefore");
    // Hits inside --starttimebefore too, and leaves --startTimebefore, which the next row does not find.
    mapOption(args, "--starttime", "--startTime");
    mapOption(args, "--starttimebefore", "startTimeBefore");
    return forwardToHelper("status", "delete", args);
}
