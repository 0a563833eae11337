// zelfhome zelfmon: the way in for requests that other nodes of the group send to the monitoring service
// here.
#include "commands/zlcallhome_excute.h"

#include <iostream>

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

int zelfmonQuery(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    std::vector<std::string> lines;
    const int code = chServiceP->executeCMD("/opt/zelf/bin/zelfmonc callhome " + requiredArgument(0), &lines);
    std::cout << containerToString(lines, emptyStrg);
    chServiceP->userResponse = "silent";
    chServiceP->terminateProgram(code);
}
