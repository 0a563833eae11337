#include "cli/zlcmd.h"

#include <algorithm>

#include "cli/zlcli.h"
#include "cli/zloption.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

std::string toString(ZlCmd::valueType value)
{
    return toString(static_cast<int>(value));
}

ZlCmd::ZlCmd(ZlCli* cli, const std::string& subjectText, const std::string& verbText,
             const std::string& helperText, std::string (*usage)(), int (* /*function*/)(), nodeLevel_t level)
    : errorServiceP(nullptr), cliP(cli)
{
    ZL_TRACE();
    errorServiceP = ZlErrorService::getInstance();
    reset(subjectText, verbText, helperText, nullptr, usage, level);
}

void ZlCmd::reset(const std::string& newSubject, const std::string& newVerb, const std::string& newHelperCmd,
                  int (*newCmdFunc)(), std::string (*usage)(), nodeLevel_t level)
{
    ZL_TRACE();
    if (level == 0) {
        level = cliP->getMinReleaseLevel();
    }
    subject = newSubject;
    verb = newVerb;
    options.clear();
    optionMappings.clear();
    verbMappings.clear();
    verbToCmdMappings.clear();
    positionalCount = 0;
    usageFn = usage;
    if (newCmdFunc != nullptr && !newHelperCmd.empty()) {
        errorServiceP->pushDebugMsg("ZlCmd::reset: invalid code: " + newHelperCmd);
        terminateWithMessage("helper script and function command is specified or non of them is specified.",
                             "invalid code", true);
    }
    cmdFunc = newCmdFunc;
    helperCmd = newCmdFunc != nullptr ? emptyStrg : newHelperCmd;
    remoteHandling = REMOTE_NORMAL;
    doValidation = true;
    addParserResultFlags = 0;
    nodeLevel = level;
    errorServiceP->pushDebugMsg("ZlCmd::reset: set command: " + allNames() + "->" +
                                (cmdFunc != nullptr ? "set function pointer" : "helperCmd = " + helperCmd));
    if (usageFn == nullptr) {
        errorServiceP->pushNewMsg("ZlCmd::reset: no usage specified.");
    }
}

void ZlCmd::operator()(const std::string& newSubject, const std::string& newVerb, int (*newCmdFunc)(),
                       std::string (*usage)(), nodeLevel_t level)
{
    ZL_TRACE();
    reset(newSubject, newVerb, emptyStrg, newCmdFunc, usage, level);
}

void ZlCmd::operator()(const std::string& newSubject, const std::string& newVerb,
                       const std::string& newHelperCmd, std::string (*usage)(), nodeLevel_t level)
{
    ZL_TRACE();
    reset(newSubject, newVerb, newHelperCmd, nullptr, usage, level);
}

void ZlCmd::operator()(std::string name, valueType type, bool required, std::string token, int (*function)(),
                       nodeLevel_t level)
{
    ZL_TRACE();
    if (!doValidation) {
        programError("Program error at  ZlCmd::operator()",
                     "Adding options is not allowed if validation is disabled.");
    }
    if (function == nullptr) {
        function = cmdFunc;
    }
    if (level == 0) {
        level = nodeLevel;
    }
    if (name.compare(0, 2, "--") != 0) {
        declarePositional(name, type, token);
    }
    std::vector<std::string> alternatives;
    stringListToContainer(name, " | ", &alternatives);
    for (const std::string& alternative : alternatives) {
        addOption(alternative, type, required, token, function, level);
    }
}

// Gives a positional its name, which is its place, and its display text, which is the token.
void ZlCmd::declarePositional(std::string& name, valueType& type, std::string& token)
{
    if (!name.empty() && !token.empty()) {
        programError("Program error at  ZlCmd::operator()",
                     "possitional parameter >" + name + "< cannot have token >" + token + "<");
    }
    if (token.empty()) {
        token = name;
        type = type == NO ? ANY : type;
    } else if (type == NO) {
        programError("Program error at  ZlCmd::operator() check type of token",
                     "A token must not have type ZlCMD::NO");
    }
    name = "#" + toString(positionalCount++) + "#";
}

void ZlCmd::addOption(const std::string& name, valueType type, bool required, const std::string& token,
                      Function function, nodeLevel_t level)
{
    if (!options.emplace(cliP, name, type, required, token, function, level).second) {
        // Named after addMapping since the first release; support scripts match it.
        programError("Program error at  ZlCmd::addMapping", "Verb " + name + " already replaced!");
    }
    errorServiceP->pushDebugMsg("ZlCmd::operator(): set option: " + name + " {" + token + "}" +
                                (required ? " is mandatory" : " not mandatory") + " type " + toString(type));
}

void ZlCmd::addMapping(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!optionMappings.emplace(from, to).second) {
        programError("Program error at  ZlCmd::addMapping", from + " already replaced");
    }
}

void ZlCmd::addVerbMapping(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!verbMappings.emplace(from, to).second) {
        programError("Program error at  ZlCmd::addVerbMapping", from + " already replaced");
    }
}

void ZlCmd::addVerbToCmdMapping(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!verbToCmdMappings.emplace(from, to).second) {
        programError("Program error at  ZlCmd::addVerbToCmdMapping", from + " already mapped");
    }
}

void ZlCmd::programError(const std::string& response, const std::string& text) const
{
    cliP->userResponse = response;
    cliP->pushMessage(text);
    cliP->terminateProgram(1);
}

void ZlCmd::setRemoteNodeHandling(remoteNodes handling)
{
    ZL_TRACE();
    remoteHandling = handling;
}

ZlCmd::remoteNodes ZlCmd::getRemoteNodeHandling() const
{
    ZL_TRACE();
    return remoteHandling;
}

void ZlCmd::setFunctionMode(ZlFunction::MODES mode, const std::string& name)
{
    ZL_TRACE();
    operationMode = mode;
    functionName = name;
}

void ZlCmd::setChildAsDeamon(bool value)
{
    ZL_TRACE();
    childAsDeamon = value;
}

void ZlCmd::disableValidation()
{
    ZL_TRACE();
    doValidation = false;
}

bool ZlCmd::validationEnabled() const
{
    ZL_TRACE();
    return doValidation;
}

void ZlCmd::displayAsList()
{
    ZL_TRACE();
    if (!cliP->helpRequest()) {
        addParserResultFlags |= PARSER_DISPLAY_TABLE | PARSER_DISPLAY_LIST;
    }
}

void ZlCmd::displayAsTable()
{
    ZL_TRACE();
    if (!cliP->helpRequest()) {
        addParserResultFlags |= PARSER_DISPLAY_TABLE;
        addParserResultFlags &= ~static_cast<uint64_t>(PARSER_DISPLAY_LIST);
    }
}

std::string ZlCmd::getUsage() const
{
    ZL_TRACE();
    return usageFn == nullptr ? emptyStrg : usageFn();
}

ZlCmd::Function ZlCmd::getCmdFuncP() const
{
    ZL_TRACE();
    return cmdFunc;
}

const std::string& ZlCmd::getCmd() const
{
    ZL_TRACE();
    return helperCmd;
}

const std::string& ZlCmd::getVerb() const
{
    ZL_TRACE();
    return verb;
}

const std::string& ZlCmd::getSubject() const
{
    ZL_TRACE();
    return subject;
}

nodeLevel_t ZlCmd::getNodeLevel() const
{
    ZL_TRACE();
    return nodeLevel;
}

const std::set<ZlOption>& ZlCmd::getOptions() const
{
    ZL_TRACE();
    return options;
}

std::set<ZlOption> ZlCmd::getMandatoryOptions() const
{
    ZL_TRACE();
    std::set<ZlOption> mandatory;
    std::copy_if(options.begin(), options.end(), std::inserter(mandatory, mandatory.end()),
                 [](const ZlOption& option) { return option.isRequired(); });
    return mandatory;
}

std::string ZlCmd::allNames() const
{
    ZL_TRACE();
    std::string text = subject + " - " + verb + ":";
    for (const ZlOption& option : options) {
        text += " " + option.getName();
        if (option.hasValue() != VALUE_NONE) {
            text += " " + option.getTypeStrg();
        }
    }
    return text;
}

bool ZlCmd::hasVerb(const std::string& name) const
{
    return contains(split(verb, " | "), name);
}

bool ZlCmd::operator==(const ZlCmd& probe) const
{
    ZL_TRACE();
    return subject == probe.subject && hasVerb(probe.verb);
}

bool ZlCmd::operator<(const ZlCmd& other) const
{
    ZL_TRACE();
    if (subject != other.subject) {
        return subject > other.subject;
    }
    if (hasVerb(other.verb) || other.hasVerb(verb)) {
        return false;
    }
    return verb.size() == other.verb.size() ? verb > other.verb : verb.size() < other.verb.size();
}
