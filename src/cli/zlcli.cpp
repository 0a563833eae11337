#include "cli/zlcli.h"

#include <cstring>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "cluster/zlclusterinfo.h"
#include "services/executecmd.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

constexpr const char* ZLUTILS_VERSION = "zlutils: 5.0.2-0.000";
constexpr const char* ZLUTILS_DATE = "zlutils: 20180621";

std::string fileOf(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

} // namespace

ZlCli::ZlCli(int argc, char** argv, std::string helper, std::string preCmd, std::string postCmd)
    : programName(argc > 0 ? fileOf(argv[0]) : "zelfhome"),
      fullDecode(argc > 0 && std::string_view(argv[argc - 1]) == "--fullDecode"), helperCmd(helper),
      defaultHelperCmd(std::move(helper)), remotePreCmd(std::move(preCmd)), remotePostCmd(std::move(postCmd)),
      clusterInfoP(nullptr)
{
    ZL_TRACE();
    clusterInfoP = ZlClusterInfo::getInstance();
    std::string commandLine = programName;
    for (int i = 1; i < argc; ++i) {
        if (fullDecode) {
            std::string decoded;
            decode(decoded, argv[i]);
            std::strncpy(argv[i], decoded.c_str(), std::strlen(argv[i]));
        }
        commandLine.append("\n").append(argv[i]);
    }
    errorServiceP->setLogFileName(programName);
    errorServiceP->pushNewMsg(commandLine);
    errorServiceP->pushNewMsg("ZlCli created.");
    errorServiceP->pushNewMsg(ZLUTILS_VERSION);
    errorServiceP->pushNewMsg(ZLUTILS_DATE);
    errorServiceP->pushNewMsg("pid: " + toString(getpid()));
    errorServiceP->pushNewMsg("cluster min release level  = " + toString(getClusterMinReleaseLevel()));
    errorServiceP->pushNewMsg("cluster min release version = " + getClusterMinReleaseVersion());
    errorServiceP->pushNewMsg("node release level = " + toString(getNodeReleaseLevel()));
    errorServiceP->pushNewMsg("node version    = " + getNodeReleaseVersion());
    set_zelfdRunningState();
}

ZlCli::~ZlCli()
{
    ZL_TRACE();
    if (userResponse == "silent") {
        userResponse.clear();
    }
    showMessages();
    errorServiceP->pushNewMsg("Terminate from ZlCli::~ZlCli");
    errorServiceP->writeTrace();
    delete clusterInfoP;
}

void ZlCli::set_zelfdRunningState()
{
    ZL_TRACE();
    zelfdRunning = _executeCMD("/opt/zelf/bin/zelfctl nqStatus -q >/dev/null 2>&1", nullptr) == 0;
}

int ZlCli::isCCrEnabled() const
{
    ZL_TRACE();
    const std::string* value = getValue(ZlClusterInfo::getZelfCfg(), "ccrEnabled");
    if (value != nullptr && *value == "yes") {
        return 1;
    }
    // Said when it is not enabled: support scripts match this wording.
    errorServiceP->pushDebugMsg(" ZlCli::isCCrEnabled: CCR enabled.");
    return 0;
}
