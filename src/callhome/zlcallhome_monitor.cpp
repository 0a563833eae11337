// The roads to the monitoring service: its client on this node or on the group's server, and the helper
// program for servers that are older than its requests.
#include "callhome/zlcallhome.h"

#include "services/executecmd.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

int ZlCallhome::runZelfmonCmdOnCallhomeNode(const std::string& command, std::vector<std::string>* output)
{
    ZL_TRACE();
    const std::string server = getCallhomeNode();
    if (getLocalNodeName() == server) {
        return executeCMD(MONITORING_CLIENT + command, output);
    }
    std::string encoded;
    fullEncode(encoded, command);
    return _executeCMD(REMOTE_ONE1 + server + remotePreCmd + quoteForBothSides("zelfmon query " + encoded),
                       output);
}

int ZlCallhome::executeCHcmd(const std::string& requestSubject, const std::string& requestVerb,
                             const char* buffer, std::vector<std::string>* output,
                             const std::string& toolPath)
{
    ZL_TRACE();
    if (!toolPath.empty()) {
        helperCmd = toolPath;
    }
    std::string options;
    if (buffer == nullptr || !getInteractive()) {
        options = (requestSubject.empty() ? subject : requestSubject) + " " +
                  (requestVerb.empty() ? verb : requestVerb);
        for (std::string& option : cmdOptions) {
            option = "'" + option + "'";
            options += " " + option;
        }
        errorServiceP->pushDebugMsg("ZlCli::executeCMD: options from args = " + options);
    } else {
        options = std::string(" ") + buffer;
        errorServiceP->pushDebugMsg("ZlCli::executeCMD: options from buffer = " + options);
    }
    const int code = executeCMD(constructCmd(options, emptyStrg), output);
    helperCmd = defaultHelperCmd;
    return code;
}
