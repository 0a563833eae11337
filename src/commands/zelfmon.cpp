// zelfhome zelfmon: the way in for requests that other nodes of the group send to the monitoring service
// here.
#include "commands/zlcallhome_excute.h"

#include <iostream>

#include "services/zlerrorservice.h"

int zelfmonQuery(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    const int code = askMonitoringService(requiredArgument(0));
    std::cout << chServiceP->userResponse;
    chServiceP->userResponse = "silent";
    chServiceP->terminateProgram(code);
}
