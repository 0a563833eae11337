// Validation: the part of ZlCmd that checks the arguments of a real command line.
#include "cli/zlcmd.h"

#include <algorithm>
#include <cstdlib>

#include "cli/zlcli.h"
#include "cli/zloption.h"

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
    const std::string command = cliP->programName + " " + cliP->subject + " " + cliP->verb;
    const std::string invalidArgs = userResponseInvalidArg + "'" + containerToString(args, " ") + "'";
    if (options.empty() && !args.empty()) {
        terminateWithMessage("'" + command + "' does not allow any arguments.", invalidArgs, true);
    }
    if (cliP->hasAnyParserResultBits(PARSER_HELP)) {
        if (!options.contains(ZlOption(cliP, "--help", NO, false, emptyStrg, nullptr, 0))) {
            terminateWithMessage("'" + command + "' does not has any argument that ask for help.",
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

std::string ZlCmd::verifyAllArgs(std::vector<std::string>& args) const
{
    ZL_TRACE();
    ZlOption key(cliP, emptyStrg, NO, false, emptyStrg, nullptr, 0);
    const auto find = [&](const std::string& name, valueType type) {
        key(name, type, false, emptyStrg);
        const auto option = options.find(key);
        return option == options.end() ? nullptr : &*option;
    };
    std::set<ZlOption> mandatory = getMandatoryOptions();
    const ZlOption* current = nullptr;  // the option met last
    optionValue checkType = VALUE_NONE; // what it waits for
    int posIndex = 0;                   // the next positional
    bool infinitePosArgs = false;       // any number of further positionals may follow
    for (std::string& arg : args) {
        switch (checkType) {
        case VALUE_NONE:
            current = find(arg, NO);
            if (current != nullptr) {
                checkType = current->hasValue();
            } else {
                current = find("#" + toString(posIndex++) + "#", ANY);
                if (current == nullptr && !infinitePosArgs) {
                    terminateWithMessage(userResponseInvalidArg + "'" + arg + "'", emptyStrg, true);
                }
                infinitePosArgs = infinitePosArgs || current->getType() == ANY_INFINITE;
                arg = verifyType(arg, current != nullptr ? *current : key);
            }
            if (current != nullptr) {
                mandatory.erase(*current);
            }
            break;
        case VALUE_OPTIONAL:
        case VALUE_REQUIRED:
            // An optional value has no dashes. A word with dashes is passed over there, neither value nor
            // option: the framework's way with this one kind of option.
            if (checkType == VALUE_REQUIRED || !arg.starts_with("--")) {
                arg = verifyType(arg, *current);
            }
            checkType = VALUE_NONE;
            break;
        default:
            cliP->giveUp("Program error at ZlCmd::verifyAllArgs");
        }
    }
    if (checkType == VALUE_REQUIRED) {
        terminateWithMessage(userResponseMissingValue + "Option " + current->getName() +
                                 " needs a value of type: " + current->getTypeStrg(),
                             emptyStrg, true);
    }
    if (!mandatory.empty()) {
        std::vector<std::string> missing;
        for (const ZlOption& option : mandatory) {
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
    ZL_TRACE();
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
