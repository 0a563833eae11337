// What the framework says to the user, and the end of the process.
#include "cli/zlcli.h"

#include <cctype>
#include <cstdlib>
#include <iostream>

#include "cli/zlcmd.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

void ZlCli::pushMessage(const std::string& text)
{
    ZL_TRACE();
    msgs.push_back(text);
}

namespace {

bool isOneBlank(const std::string& text)
{
    return text.size() == 1 && std::isspace(static_cast<unsigned char>(text[0])) != 0;
}

// Gives a kind of bad option and its characters: "invalid option: -x, -y".
std::string badArgsLine(const std::string& kind, const std::vector<char>& characters)
{
    std::string line = kind + " -";
    for (size_t i = 0; i < characters.size(); ++i) {
        line += i == 0 ? "" : ", -";
        line += characters[i];
    }
    return line;
}

} // namespace

int ZlCli::createMessages(std::ostream& out)
{
    ZL_TRACE();
    if (!userResponse.empty() && !isOneBlank(userResponse)) {
        trimRight(userResponse, " \t\n\v\f\r");
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

void ZlCli::cleanupCmds(std::vector<ZlCmd>::iterator keep)
{
    ZL_TRACE();
    const bool isValid = keep >= cmds.begin() && keep < cmds.end();
    if (isValid) {
        cmds.erase(keep + 1, cmds.end());
        cmds.erase(cmds.begin(), keep);
        if (cmds.size() == 1) {
            return;
        }
    }
    errorServiceP->pushNewMsg("ZlCli::cleanupCmds: remaining objects != 1: remaing = " +
                              toString(cmds.size()) + " it is valid = " + toString(isValid));
    userResponse = "Command detection error.";
    terminateProgram(1);
}

void ZlCmd::terminateWithMessage(const std::string& response, const std::string& msg, bool showUsage) const
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlCmd::terminateWithMessage: response: " + response + " msg: " + msg);
    errorServiceP->pushDebugMsg("ZlCmd::terminateWithMessage: subject: " + cliP->subject +
                                " verb: " + cliP->verb + " options " + cliP->getCmdOptions());
    cliP->userResponse = response.empty() ? "silent" : response;
    if (!msg.empty()) {
        cliP->pushMessage(msg);
    }
    if (showUsage && usageFn != nullptr) {
        cliP->userResponse = (response.empty() ? emptyStrg : response + "\n") + getUsage();
    } else if (showUsage && !helperCmd.empty()) {
        errorServiceP->pushNewMsg("ZlCmd::terminateWithMessage: No help defined, use helper script.");
        cliP->executeCMD(helperCmd, nullptr);
    }
    // The trace says so of every failure.
    errorServiceP->pushDebugMsg("ZlCmd::terminateWithMessage: Bad command definition.");
    cliP->terminateProgram(1);
}
