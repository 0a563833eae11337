#include "callhome/zlcallhome.h"

#include <cstdlib>
#include <sys/stat.h>

#include "callhome/zlcallhomeexecute.h"
#include "services/zelfnls.h"
#include "services/zlccrservice.h"
#include "services/zlerrorservice.h"

namespace {

constexpr const char* CALLHOME_VERSION = "4.2.3-7.000";
constexpr const char* CALLHOME_DATE = "20171114";

constexpr const char* HELPER_PROGRAM = "/opt/zelf/bin/callhomeutils.pl";

constexpr nodeLevel_t TOOL_MIN_LEVEL = 1600;

} // namespace

ZlCallhome* chServiceP = nullptr;

ZlCallhome::ZlCallhome(int argc, char** argv)
    : ZlCli(argc, argv, HELPER_PROGRAM, " " + REMOTE_ENTRY + " ", " ")
{
    ZL_TRACE();
    setMinReleaseLevel(TOOL_MIN_LEVEL);
    ccrService = std::make_unique<ZlCcrService>(ccrFile, "/var/zelf/tmp");
    execute = std::make_unique<ZlCallhomeExecute>(this);
    errorServiceP->pushNewMsg(CALLHOME_VERSION);
    errorServiceP->pushNewMsg(CALLHOME_DATE);
    parseCmdLine(argc, argv);
    if (subject == "--version") {
        userResponse = std::string("Version:") + CALLHOME_VERSION;
        terminateProgram(0);
    }
    // A request for help takes this way too: it needs a node on which call home could work.
    ZlCallhome::checkEnvironment();
    updateCallhomeNodes();
}

ZlCallhome::~ZlCallhome()
{
    ZL_TRACE();
}

int ZlCallhome::checkEnvironment()
{
    ZL_TRACE();
    checkForHelperScripts();
    checkIfCCrIsEnabled();
    ensureConfigInCCR();
    return 0;
}

void ZlCallhome::checkForHelperScripts()
{
    ZL_TRACE();
    struct stat status {};
    if (stat(HELPER_PROGRAM, &status) != 0) {
        printCatMessage(MSG_MISSING_COMPONENT,
                        "Missing component for software call home.\n"
                        "    Please install software call home on this node or execute this command\n"
                        "    from a node that has software call home installed.\n"
                        "RPMS:\n"
                        "    zelf.java, zelf.callhome-upl-client, zelf.callhome.\n");
        userResponse = "silent";
        terminateProgram(1);
    }
}

void ZlCallhome::checkIfCCrIsEnabled()
{
    ZL_TRACE();
    if (isCCrEnabled() == 0) {
        errorServiceP->pushNewMsg("CCR is not enabled. Terminate.");
        printCatMessage(MSG_CCR_NOT_ENABLED, "CCR not enabled. Please enable ccr before you use callhome.\n");
        errorServiceP->pushNewMsg("Terminate from ZlCallhome::checkIfCCrIsEnabled");
        errorServiceP->writeTrace();
        std::exit(1);
    }
}
