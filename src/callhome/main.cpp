// zelfhome: one command line, one process.
#include <cerrno>
#include <string>

#include "callhome/zlcallhome.h"
#include "cli/cmdtable.h"
#include "services/zlerrorservice.h"

namespace {

// True when the server of this node's group has to run the command. What -a and -N said has no part in it.
bool belongsToServer(const ZlCallhome& callhome, const std::string& callhomeNode)
{
    if (callhomeNode.empty() || callhome.verb.empty() ||
        callhome.cmdP->getRemoteNodeHandling() != ZlCmd::REMOTE_NORMAL) {
        return false;
    }
    const ZelfVersion version = callhome.getThisGroupMasterVersion();
    return version >= ZelfVersion(MONITORING_ROUTE_VERSION) && callhome.getLocalNodeName() != callhomeNode;
}

int forward(ZlCallhome& callhome, const std::string& callhomeNode)
{
    // The other node maps the arguments by itself.
    callhome.cmdOptions = callhome.savedCmdOptions;
    const std::string encoded = callhome.getEncodedCmdLine();
    const std::string command = callhome.constructCmd(encoded, callhomeNode);
    ZlCallhome::errorServiceP->pushNewMsg("ZlCallhome::main remote cmd: " + command);
    return callhome.executeCMD(command, nullptr);
}

int runHere(ZlCallhome& callhome)
{
    progname = callhome.programName.c_str();
    std::string command = callhome.subject + " " + callhome.verb;
    ZlCallhome::errorServiceP->pushNewMsg("ZlCallhome::main local cmd: " + command);
    char prompt[] = "";
    return executeCommand(prompt, command.data(), cmdTable, false);
}

} // namespace

int main(int argc, char** argv)
{
    errno = 0;
    auto* callhome = new ZlCallhome(argc, argv);
    chServiceP = callhome;
    callhome->setRemoteExecution(false);
    const std::string callhomeNode = callhome->getCallhomeNode();
    if (belongsToServer(*callhome, callhomeNode)) {
        callhome->setRemoteExecution(true);
    }
    const int result = callhome->doRemoteExecution() ? forward(*callhome, callhomeNode) : runHere(*callhome);
    callhome->execCmdRc = result;
    delete callhome;
    chServiceP = nullptr;
    progname = nullptr;
    return result;
}
