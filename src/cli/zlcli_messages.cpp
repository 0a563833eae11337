// What the framework says to the user, and the end of the process.
#include "cli/zlcli.h"

#include <cstdlib>
#include <iostream>

namespace {

// Gives a kind of bad option and its characters: "invalid option: -x, -y".
std::string badArgsLine(const std::string& kind, const std::vector<char>& characters)
{
    std::vector<std::string> options;
    for (const char character : characters) {
        options.push_back(std::string("-") + character);
    }
    return kind + " " + containerToString(options, ", ");
}

} // namespace

int ZlCli::createMessages(std::ostream& out)
{
    ZL_TRACE();
    // One white-space character stands for no response.
    if (userResponse.size() > 1 || userResponse.find_first_not_of(whitespace) != std::string::npos) {
        trimRight(userResponse, whitespace);
        out << userResponse << std::endl;
    }
    if (msgs.empty() && badArgs.empty()) {
        errorServiceP->pushNewMsg("ZlCli::createMessages: msg and badArgs empy");
        out << closingErrorMsg;
        return 0;
    }
    if (showAdditionalMessages) {
        errorServiceP->pushNewMsg("ZlCli::createMessages: Additional messages:");
        out << std::endl << "Additional messages:" << std::endl;
        if (!msgs.empty()) {
            const std::string text = containerToString({msgs.begin(), msgs.end()}, "\n");
            errorServiceP->pushNewMsg(text);
            out << text << std::endl;
        }
        if (!badArgs.empty()) {
            errorServiceP->pushNewMsg("ZlCli::createMessages: bad arguments:");
            for (const auto& [kind, characters] : badArgs) {
                const std::string line = badArgsLine(kind, characters);
                errorServiceP->pushNewMsg("ZlCli::createMessages: " + line);
                out << "  " << line << std::endl;
            }
        }
    } else {
        errorServiceP->pushNewMsg("ZlCli::createMessages: show closingErrorMsg");
    }
    out << closingErrorMsg;
    return 1;
}

void ZlCli::showMessages()
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlCli::showMessages: execCmdRc = " + toString(execCmdRc));
    errorServiceP->pushDebugMsg("ZlCli::showMessages: userResponse: " + userResponse);
    errorServiceP->pushDebugMsg("ZlCli::showMessages: closingErrorMsg = " + closingErrorMsg);
    const bool dryRun = hasAnyParserResultBits(PARSER_DRY_RUN);
    if (dryRun || execCmdRc == 0 || helpRequested) {
        closingErrorMsg.clear();
        errorServiceP->pushDebugMsg(
            "ZlCli::showMessages: remove closing error msg. help = " + toString(helpRequested) +
            " dry run = " + toString(dryRun) + " execCmdRc = " + toString(execCmdRc));
    }
    createMessages(execCmdRc == 0 ? std::cout : std::cerr);
}

void ZlCli::terminateProgram(int status)
{
    ZL_TRACE();
    execCmdRc = status;
    if (userResponse.empty()) {
        userResponse = status == 0 ? "Success" : "Failed";
    }
    if (userResponse == "silent") {
        errorServiceP->pushDebugMsg("ZlCli::terminateProgram: silent");
        userResponse.clear();
    }
    showMessages();
    errorServiceP->pushNewMsg("ZlCli::terminateProgram: write traces and exit");
    if (status != 0) {
        errorServiceP->fullLog();
    }
    errorServiceP->writeTrace();
    std::exit(status);
}

void ZlCli::giveUp(const std::string& response, const std::string& message)
{
    ZL_TRACE();
    userResponse = response;
    if (!message.empty()) {
        pushMessage(message);
    }
    terminateProgram(1);
}

void ZlCli::cleanupCmds(std::vector<ZlCmd>::iterator keep)
{
    ZL_TRACE();
    if (keep >= cmds.begin() && keep < cmds.end()) {
        cmds = {*keep};
        return;
    }
    errorServiceP->pushNewMsg("ZlCli::cleanupCmds: remaining objects != 1: remaing = " +
                              toString(cmds.size()) + " it is valid = 0");
    giveUp("Command detection error.");
}
