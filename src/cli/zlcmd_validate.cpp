// Validation: the part of ZlCmd that checks the arguments of a real command line.
#include "cli/zlcmd.h"

#include <algorithm>
#include <cstdlib>

#include "cli/zlcli.h"
#include "cli/zloption.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

const std::string ZlCmd::userResponseMissingValue = "Missing value. ";
const std::string ZlCmd::userResponseInvalidValue = "Invalid value: ";
const std::string ZlCmd::userResponseMissingArg = "Missing arguments. ";
const std::string ZlCmd::userResponseInvalidArg = "Invalid argument: ";
const std::string ZlCmd::userResponseInvalidLevel = "Invalid release:";
const std::string ZlCmd::userResponseIncorrectOption = "Incorrect option: ";

// Gives program, subject and verb, as result messages name a command.
std::string ZlCmd::commandText() const
{
    return cliP->programName + " " + cliP->subject + " " + cliP->verb;
}

bool ZlCmd::validate(std::string& cliCmd, std::string& cliVerb, std::vector<std::string>& args) const
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("ZlCmd::validate: cmd = " + cliCmd + " verb = " + cliVerb +
                              " args = " + containerToString(args, " "));
    if (cliVerb == "--help") {
        terminateWithMessage(emptyStrg, emptyStrg, true);
    }
    if (cliVerb.empty() && doValidation) {
        terminateWithMessage(cliP->programName + " " + cliP->subject + ": " + userResponseMissingArg,
                             emptyStrg, true);
    }
    processRemoteNodeHandling();
    processValidation(args);
    processChildSpec();
    for (const auto& [from, to] : verbMappings) {
        if (cliVerb == from) {
            cliVerb = to;
        }
    }
    for (const auto& [from, to] : optionMappings) {
        std::replace(args.begin(), args.end(), from, to);
    }
    for (const auto& [from, to] : verbToCmdMappings) {
        if (cliVerb == from) {
            cliCmd = to;
        }
    }
    errorServiceP->pushNewMsg("ZlCmd::validate: success ");
    return true;
}

void ZlCmd::processValidation(std::vector<std::string>& args) const
{
    ZL_TRACE();
    cliP->setParserResultBit(addParserResultFlags);
    if (!doValidation) {
        if (cmdFunc != nullptr) {
            appendFunction(cliP->subject, cliP->subject, cmdFunc);
        }
        return;
    }
    const std::string invalidArgs = userResponseInvalidArg + "'" + containerToString(args, " ") + "'";
    if (options.empty() && !args.empty()) {
        terminateWithMessage("'" + commandText() + "' does not allow any arguments.", invalidArgs, true);
    }
    if (cliP->hasAnyParserResultBits(PARSER_HELP)) {
        ZlOption help(cliP, "--help", NO, false, emptyStrg, nullptr, 0);
        if (options.count(help) == 0) {
            terminateWithMessage("'" + commandText() + "' does not has any argument that ask for help.",
                                 invalidArgs, true);
        }
        cliP->setRemoteExecution(false);
        cliP->cmdOptions = {"--help"};
        return;
    }
    const std::string failure = verifyAllArgs(args);
    if (!failure.empty()) {
        terminateWithMessage(failure, emptyStrg, true);
    }
}

// Where the walk over the arguments stands.
struct ZlCmd::Walk {
    ZlOption key;                       // what is looked for in the command's options
    std::set<ZlOption> mandatory;       // options not met so far
    optionValue checkType = VALUE_NONE; // what the option waits for
    const ZlOption* current = nullptr;  // the option met last
    int posIndex = 0;                   // the next positional
    bool infinitePosArgs = false;       // any number of further positionals may follow
};

std::string ZlCmd::verifyAllArgs(std::vector<std::string>& args) const
{
    ZL_TRACE();
    Walk walk{ZlOption(cliP, emptyStrg, NO, false, emptyStrg, nullptr, 0), getMandatoryOptions()};
    for (std::string& arg : args) {
        switch (walk.checkType) {
        case VALUE_NONE:
            takeOptionOrPositional(walk, arg);
            break;
        case VALUE_REQUIRED:
            arg = verifyType(arg, *walk.current);
            walk.mandatory.erase(*walk.current);
            walk.checkType = VALUE_NONE;
            break;
        case VALUE_OPTIONAL:
            // A word with dashes is passed over, neither value nor option: the framework's way with this one
            // kind of option.
            if (arg.compare(0, 2, "--") != 0) {
                arg = verifyType(arg, *walk.current);
            }
            walk.mandatory.erase(*walk.current);
            walk.checkType = VALUE_NONE;
            break;
        default:
            cliP->userResponse = "Program error at ZlCmd::verifyAllArgs";
            cliP->terminateProgram(1);
        }
    }
    if (walk.checkType == VALUE_REQUIRED) {
        terminateWithMessage(userResponseMissingValue + "Option " + walk.current->getName() +
                                 " needs a value of type: " + walk.current->getTypeStrg(),
                             emptyStrg, true);
    }
    if (!walk.mandatory.empty()) {
        std::vector<std::string> missing;
        for (const ZlOption& option : walk.mandatory) {
            missing.push_back(option.toStrg());
        }
        errorServiceP->pushDebugMsg("ZlCmd::verifyAllArgs: missing mandatory options: \n  " +
                                    containerToString(missing, "\n  "));
        terminateWithMessage(userResponseMissingArg, emptyStrg, true);
    }
    if (cmdFunc != nullptr && cliP->functions.empty()) {
        appendFunction(cliP->subject, cliP->subject, cmdFunc);
    }
    return emptyStrg;
}

void ZlCmd::takeOptionOrPositional(Walk& walk, std::string& arg) const
{
    walk.key(arg, NO, false, emptyStrg);
    const auto option = options.find(walk.key);
    if (option == options.end()) {
        walk.current = nullptr;
        takePositional(walk, arg);
        return;
    }
    walk.current = &*option;
    walk.checkType = option->hasValue();
    walk.mandatory.erase(*option);
}

void ZlCmd::takePositional(Walk& walk, std::string& arg) const
{
    walk.key("#" + toString(walk.posIndex) + "#", ANY, false, emptyStrg);
    const auto positional = options.find(walk.key);
    if (positional != options.end()) {
        walk.infinitePosArgs = walk.infinitePosArgs || positional->getType() == ANY_INFINITE;
        arg = verifyType(arg, *positional);
        walk.mandatory.erase(*positional);
    } else if (walk.infinitePosArgs) {
        arg = verifyType(arg, walk.key);
    } else {
        terminateWithMessage(userResponseInvalidArg + "'" + arg + "'", emptyStrg, true);
    }
    ++walk.posIndex;
}

std::string ZlCmd::verifyType(std::string& arg, const ZlOption& option) const
{
    ZL_TRACE();
    ZlOption copy = option;
    if (!copy.checkArgType(arg)) {
        const std::string quoted = "'" + arg + "'";
        std::string response = cliP->programName + " " + cliP->subject + ": ";
        if (copy.getName().empty()) {
            response += userResponseInvalidArg + quoted;
        } else if (copy.getType() == NODE || copy.getType() == CES_NODE) {
            response += "Invalid nodes definition: Can not resolve " + quoted;
        } else if (copy.getType() == TOKEN) {
            response += userResponseIncorrectOption + quoted;
        } else {
            response += userResponseInvalidValue + quoted;
        }
        terminateWithMessage(response, "Required argument type: " + copy.getTypeStrg(), true);
    }
    if (option.getCmdFuncP() != nullptr) {
        appendFunction(option.getName(), arg, option.getCmdFuncP());
    }
    return arg;
}

void ZlCmd::appendFunction(const std::string& name, const std::string& argument, Function function) const
{
    ZlFunction task(name, argument, function);
    task.setOperationMode(operationMode);
    task.setName(functionName);
    if (!cliP->cmdOptions.empty()) {
        task.setID(static_cast<unsigned long>(std::strtol(cliP->cmdOptions[0].c_str(), nullptr, 10)));
    }
    cliP->functions.push_back(task);
}

void ZlCmd::processChildSpec() const
{
    ZL_TRACE();
    if (childAsDeamon) {
        ZlErrorService::controlFlags |= ZlErrorService::CHILD_IS_DAEMON;
    }
}
