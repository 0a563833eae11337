#include "cli/zlcmd.h"

#include <algorithm>

#include "cli/zlcli.h"
#include "cli/zloption.h"

namespace {

// Gives a positional its name, which is its place, and its display text, which is the token.
void declarePositional(ZlCli& cli, std::string& name, ZlCmd::valueType& type, std::string& token, int place)
{
    if (!name.empty() && !token.empty()) {
        cli.giveUp("Program error at  ZlCmd::operator()",
                   "possitional parameter >" + name + "< cannot have token >" + token + "<");
    }
    if (token.empty()) {
        token = name;
        type = type == ZlCmd::NO ? ZlCmd::ANY : type;
    } else if (type == ZlCmd::NO) {
        cli.giveUp("Program error at  ZlCmd::operator() check type of token",
                   "A token must not have type ZlCMD::NO");
    }
    name = "#" + toString(place) + "#";
}

} // namespace

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
        cliP->giveUp("Program error at  ZlCmd::operator()",
                     "Adding options is not allowed if validation is disabled.");
    }
    if (function == nullptr) {
        function = cmdFunc;
    }
    if (level == 0) {
        level = nodeLevel;
    }
    if (!name.starts_with("--")) {
        declarePositional(*cliP, name, type, token, positionalCount++);
    }
    std::vector<std::string> alternatives;
    stringListToContainer(name, " | ", &alternatives);
    for (const std::string& alternative : alternatives) {
        if (!options.emplace(cliP, alternative, type, required, token, function, level).second) {
            // Named after addMapping since the first release; support scripts match it.
            cliP->giveUp("Program error at  ZlCmd::addMapping", "Verb " + alternative + " already replaced!");
        }
        errorServiceP->pushDebugMsg("ZlCmd::operator(): set option: " + alternative + " {" + token + "}" +
                                    (required ? " is mandatory" : " not mandatory") + " type " +
                                    toString(type));
    }
}

void ZlCmd::addMapping(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!optionMappings.emplace(from, to).second) {
        cliP->giveUp("Program error at  ZlCmd::addMapping", from + " already replaced");
    }
}

void ZlCmd::addVerbMapping(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!verbMappings.emplace(from, to).second) {
        cliP->giveUp("Program error at  ZlCmd::addVerbMapping", from + " already replaced");
    }
}

void ZlCmd::addVerbToCmdMapping(const std::string& from, const std::string& to)
{
    ZL_TRACE();
    if (!verbToCmdMappings.emplace(from, to).second) {
        cliP->giveUp("Program error at  ZlCmd::addVerbToCmdMapping", from + " already mapped");
    }
}

void ZlCmd::setFunctionMode(ZlFunction::MODES mode, const std::string& name)
{
    ZL_TRACE();
    operationMode = mode;
    functionName = name;
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

std::set<ZlOption> ZlCmd::getMandatoryOptions() const
{
    ZL_TRACE();
    std::set<ZlOption> mandatory;
    std::ranges::copy_if(options, std::inserter(mandatory, mandatory.end()), &ZlOption::isRequired);
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

bool ZlCmd::operator==(const ZlCmd& probe) const
{
    ZL_TRACE();
    return subject == probe.subject && contains(split(verb, " | "), probe.verb);
}

bool ZlCmd::operator<(const ZlCmd& other) const
{
    ZL_TRACE();
    if (subject != other.subject) {
        return subject > other.subject;
    }
    if (contains(split(verb, " | "), other.verb) || contains(split(other.verb, " | "), verb)) {
        return false;
    }
    return verb.size() == other.verb.size() ? verb > other.verb : verb.size() < other.verb.size();
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
