// The verbs whose handlers this build does not have yet. Each says so, and fails.
#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"

namespace {

int notInThisBuild()
{
    ZL_TRACE();
    chServiceP->userResponse = chServiceP->programName + " " + chServiceP->subject + " " + chServiceP->verb +
                               ": not available in this build.";
    return 1;
}

} // namespace

#define ZL_NOT_IN_THIS_BUILD(handler)                                                                        \
    int handler(char* /*prompt*/, char* /*args*/, bool /*interactive*/)                                      \
    {                                                                                                        \
        return notInThisBuild();                                                                             \
    }

ZL_NOT_IN_THIS_BUILD(groupList)
ZL_NOT_IN_THIS_BUILD(groupAdd)
ZL_NOT_IN_THIS_BUILD(groupDel)
ZL_NOT_IN_THIS_BUILD(groupAuto)
ZL_NOT_IN_THIS_BUILD(runSendFile)
