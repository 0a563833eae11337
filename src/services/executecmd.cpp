#include "services/executecmd.h"

#include <array>
#include <cstdio>
#include <iostream>

#include "services/zlerrorservice.h"
#include "services/zltime.h"
#include "services/zlutils.h"

int _executeCMD(const std::string& command, std::vector<std::string>* lines)
{
    ZL_TRACE();
    ZlErrorService* errorServiceP = ZlErrorService::errorServiceP;
    errorServiceP->pushNewMsg("_executeCMD cmd = " + command);

    ZlTime duration;
    duration.start();
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        errorServiceP->pushNewMsg("_executeCMD: popen failed");
        return 1;
    }

    std::array<char, 8196> buffer{};
    std::string response;
    if (lines != nullptr) {
        lines->clear();
        errorServiceP->pushDebugMsg("_executeCMD: dataP != NULL");
    } else {
        errorServiceP->pushDebugMsg("_executeCMD: dataP = NULL");
    }
    while (std::fgets(buffer.data(), buffer.size(), pipe) != nullptr) {
        if (lines != nullptr) {
            lines->emplace_back(buffer.data());
        } else {
            std::cout << buffer.data() << std::flush;
        }
        response += buffer.data();
    }

    const int code = (pclose(pipe) >> 8) & 0xff;
    duration.stop();
    errorServiceP->pushNewMsg("_executeCMD done with rc = " + toString(code) + " duration " +
                              duration.getTimeStr());

    if (!response.empty() && response.back() != '\n') {
        response += '\n';
    }
    errorServiceP->pushDebugMsg("_executeCMD: response:\n" + response + "\nresponse end");
    return code;
}
