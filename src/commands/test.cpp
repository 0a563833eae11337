// zelfhome test: can the call home node reach the support service?
#include "commands/zlcallhome_excute.h"

#include <ctime>

#include "services/executecmd.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

const char* const TEST_CLIENT = "/opt/zelf/java/jre/bin/java"
                                " -classpath "
                                "/opt/zelf/bin/upl/:/opt/zelf/bin/upl/UPLBase/*"
                                " com/quorvex/upl/link/TestUPLConnections";

// Gives the time with the line end of ctime(3).
std::string timeLine()
{
    const time_t now = std::time(nullptr);
    return std::ctime(&now);
}

} // namespace

int testConnection(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    if (chServiceP->isCurrNodeInCallhomeGroup() == 0) {
        return chServiceP->execCmdRc = fail(NO_CALLHOME_NODE);
    }
    std::string report = "## Starting connectivity test between the call home node and Quorvex\n";
    report += "Call home node: " + chServiceP->getCallhomeNode() + "\n";
    report += "Starting time: " + timeLine() + "\n";
    std::vector<std::string> lines;
    _executeCMD(TEST_CLIENT, &lines);
    report += containerToString(lines, emptyStrg);
    report += "End time: " + timeLine();
    chServiceP->userResponse = report;
    return report.find("NOT OK") != std::string::npos ? 1 : 0;
}
