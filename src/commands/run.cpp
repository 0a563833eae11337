// zelfhome run: the check before every run, and the gather and send run.
#include "commands/zlcallhome_excute.h"

#include "cli/cmdtable.h"
#include "services/zlerrorservice.h"

int runCmdPreCheck()
{
    ZL_TRACE();
    if (chServiceP->isCurrNodeInCallhomeGroup() == 0) {
        return chServiceP->execCmdRc = fail(NO_CALLHOME_NODE);
    }
    if (!chServiceP->isCapabilityEnabled()) {
        return chServiceP->execCmdRc = fail("Please enable capability prior to running data collection");
    }
    return 0;
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
