// zelfhome run: the check that goes ahead of every run, and the gather and send run.
#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "cli/cmdtable.h"
#include "services/zlerrorservice.h"

int runCmdPreCheck()
{
    ZL_TRACE();
    const char* reason = nullptr;
    if (chServiceP->isCurrNodeInCallhomeGroup() == 0) {
        reason = NO_CALLHOME_NODE;
    } else if (!chServiceP->isCapabilityEnabled()) {
        reason = "Please enable capability prior to running data collection";
    }
    if (reason == nullptr) {
        return 0;
    }
    chServiceP->userResponse = reason;
    chServiceP->execCmdRc = 1;
    return 1;
}

void mapTaskWords(char* args)
{
    ZL_TRACE();
    mapOption(args, "--task", "-F");
    mapOption(args, "DAILY", "daily");
    // A weekly request in this text becomes a daily one: callers that pass the text rely on it.
    mapOption(args, "WEEKLY", "daily");
}

int runGatherSend(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    mapTaskWords(args);
    if (runCmdPreCheck() != 0) {
        return 1;
    }
    // The helper program's spelling of the verb.
    return forwardToHelper("run", "gatherSend", args);
}
