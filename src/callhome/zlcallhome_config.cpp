// The call-home configuration: one text file in the CCR, read by every node, and written by the monitoring
// service and by "group auto --enable".
//
//   <callhomeTopology>
//       <callhomeGroup>
//           key = value
//       </callhomeGroup>
//   </callhomeTopology>
//   key = value
//
// The reader is looser than this: a mark counts wherever it stands in a line, and blanks around keys and
// values are trimmed.
#include "callhome/zlcallhome.h"

#include <algorithm>

#include "callhome/zlcallhomeexecute.h"
#include "services/executecmd.h"
#include "services/zlccrservice.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// Ends the process with 1, and leaves the reason in the log too.
[[noreturn]] void logAndGiveUp(ZlCallhome& callhome, const std::string& reason)
{
    ZlCallhome::errorServiceP->pushNewMsg(reason);
    callhome.giveUp(reason);
}

std::string mapToString(const ZlCallhome::Section& map, const std::string& between,
                        const std::string& separator)
{
    std::vector<std::string> pairs;
    for (const auto& [key, value] : map) {
        pairs.push_back(key + between + value);
    }
    return containerToString(pairs, separator);
}

} // namespace

int ZlCallhome::parseConfig()
{
    ZL_TRACE();
    if (ccrService->readCcrFile() != 0) {
        logAndGiveUp(*this, "Could not read the call home configuration from the CCR");
    }
    config.clear();
    groupCount = 0;
    std::vector<std::string> lines;
    ccrService->getCcrData(&lines);

    std::vector<std::string> labels = {GLOBAL_LABEL};
    Section global;
    Section group;
    const auto demand = [this](bool wellFormed) {
        if (!wellFormed) {
            logAndGiveUp(*this, "Call home CCR configuration parser is broken");
        }
    };
    for (const std::string& line : lines) {
        const auto has = [&line](const char* mark) { return line.find(mark) != std::string::npos; };
        if (has("<callhomeTopology>")) {
            labels.push_back(TOPOLOGY_LABEL);
        } else if (has("</callhomeTopology>")) {
            demand(labels.back() == TOPOLOGY_LABEL);
            labels.pop_back();
        } else if (has("<callhomeGroup>")) {
            labels.push_back(GROUP_LABEL);
            ++groupCount;
        } else if (has("</callhomeGroup>")) {
            demand(labels.back() == GROUP_LABEL);
            labels.pop_back();
            const std::string name = group["name"];
            config[name] = std::move(group);
            group.clear();
        } else {
            demand(labels.back() == GROUP_LABEL || labels.back() == GLOBAL_LABEL);
            // A value ends at the next "=".
            std::vector<std::string> pieces = split(line, "=");
            demand(pieces.size() > 1);
            trim(pieces[0], whitespace);
            trim(pieces[1], whitespace);
            Section& section = labels.back() == GROUP_LABEL ? group : global;
            section[pieces[0]] = std::move(pieces[1]);
        }
    }
    demand(labels.back() == GLOBAL_LABEL);
    config[GLOBAL_LABEL] = std::move(global);
    return 0;
}

unsigned ZlCallhome::getConfig(std::ostringstream& stream) const
{
    ZL_TRACE();
    if (config.empty()) {
        return 1;
    }
    stream << "<callhomeTopology>\n";
    for (const auto& [name, section] : config) {
        if (name == GLOBAL_LABEL) {
            continue;
        }
        stream << "    <callhomeGroup>\n";
        for (const auto& [key, value] : section) {
            stream << "        " << key << " = " << value << "\n";
        }
        stream << "    </callhomeGroup>\n";
    }
    stream << "</callhomeTopology>\n";
    const auto global = config.find(GLOBAL_LABEL);
    if (global != config.end()) {
        for (const auto& [key, value] : global->second) {
            stream << key << " = " << value << "\n";
        }
    }
    return 0;
}

std::string ZlCallhome::getConfigAttribute(const std::string& section, const std::string& key) const
{
    ZL_TRACE();
    const auto found = config.find(section);
    return found == config.end() ? UNKNOWN : valueOr(found->second, key, UNKNOWN);
}

int ZlCallhome::isConfigAttributeDefinedAndNotEmpty(const std::string& section, const std::string& key) const
{
    ZL_TRACE();
    const std::string value = getConfigAttribute(section, key);
    return value != UNKNOWN && !value.empty() ? 1 : 0;
}

int ZlCallhome::setConfig(const std::pair<std::string, Section>& section)
{
    ZL_TRACE();
    if (config.empty()) {
        errorServiceP->pushDebugMsg("ZlCallhome::setConfig: config empty");
        parseConfig();
    }
    const auto& [name, changes] = section;
    errorServiceP->pushDebugMsg("ZlCallhome::setConfig: " + name + ">>\n" +
                                mapToString(changes, " = ", "\n") + "<<\n");
    const auto stored = config.find(name);
    if (stored == config.end()) {
        config.emplace(name, changes);
        return 0;
    }
    if (changes.empty()) {
        config.erase(stored);
        return 0;
    }
    for (const auto& [key, value] : changes) {
        if (value.empty()) {
            stored->second.erase(key);
        } else {
            stored->second[key] = value;
        }
    }
    return 0;
}

int ZlCallhome::writeConfig()
{
    ZL_TRACE();
    std::ostringstream stream;
    if (getConfig(stream) == 1) {
        errorServiceP->pushNewMsg("ZlCallhome::writeConfig: No config available.");
        return 1;
    }
    if (ccrService->setCcr(stream.str()) != 0) {
        errorServiceP->pushNewMsg("ZlCallhome::writeConfig: cannot set config");
        terminateProgram(1);
    }
    if (ccrService->writeCcrFile() != 0) {
        errorServiceP->pushNewMsg("ZlCallhome::writeConfig: cannot write to ccr config");
        terminateProgram(1);
    }
    errorServiceP->pushNewMsg("ZlCallhome::writeConfig: success");
    return 0;
}

int ZlCallhome::removeOption(std::string name, bool ignoreCase)
{
    ZL_TRACE();
    const auto folded = [ignoreCase](std::string text) {
        if (ignoreCase) {
            toLower(text);
        }
        return text;
    };
    const auto found = std::ranges::find(cmdOptions, folded(std::move(name)), folded);
    if (found == cmdOptions.end()) {
        return 0;
    }
    cmdOptions.erase(found);
    return 1;
}

void ZlCallhome::ensureConfigInCCR()
{
    ZL_TRACE();
    std::vector<std::string> lines;
    const int code = _executeCMD(MONITORING_CLIENT + std::string("ensureConfigInCCR 2>&1"), &lines);
    if (code == 0) {
        return;
    }
    userResponse = containerToString(lines, emptyStrg);
    if (userResponse.find("The monitoring service is down and does not respond") != std::string::npos) {
        userResponse = "Call Home requires the monitoring service to run, however it is down and does not "
                       "respond.\nPlease restart the monitoring service using: zelfmoncontrol restart";
    }
    terminateProgram(code);
}

int ZlCallhome::configSectionToCmds(const std::string& name, std::set<std::vector<std::string>>* cmdSet,
                                    bool parse)
{
    ZL_TRACE();
    if (parse) {
        parseConfig();
    }
    const auto found = config.find(name);
    if (cmdSet == nullptr || found == config.end()) {
        return 0;
    }
    const Section& section = found->second;
    cmdSet->clear();
    std::vector<std::string> proxy = {"proxy", "change"};
    std::vector<std::string> info = {"info", "change"};
    for (const auto& [key, value] : section) {
        errorServiceP->pushNewMsg("ZlCallhome::configSectionToCmds keyValue:" + key + "=" + value);
        if (value == UNKNOWN) {
            continue;
        }
        if (execute->validateOption(key) != 0) {
            errorServiceP->pushNewMsg("ZlCallhome::configSectionToCmds failed validation:" + key + "=" +
                                      value);
            continue;
        }
        for (std::vector<std::string>* words : {&proxy, &info}) {
            if (settingsOf(words->front()).contains(key)) {
                words->insert(words->end(), {"--" + key, value});
            }
        }
        if (key == DAILY || key == WEEKLY) {
            std::string task = key;
            toUpper(task);
            cmdSet->insert({"schedule", value == "enabled" ? "add" : "delete", "--task", task});
        } else if (key == ENABLED) {
            cmdSet->insert({"capability", value == "true" ? "enable" : "disable"});
        }
    }
    for (const auto& words : {proxy, info}) {
        if (words.size() > 2) {
            cmdSet->insert(words);
        }
    }
    // The state of the proxy goes along even when nothing of a proxy is set.
    if (valueOr(section, PROXY_ENABLED, UNKNOWN) != "true") {
        cmdSet->insert({"proxy", "disable"});
    } else if (valueOr(section, PROXY_AUTH_ENABLED, UNKNOWN) == "true") {
        cmdSet->insert({"proxy", "enable", "--with-proxy-auth"});
    } else {
        cmdSet->insert({"proxy", "enable"});
    }
    for (const auto& words : *cmdSet) {
        errorServiceP->pushNewMsg("ZlCallhome::configSectionToCmds commands:" +
                                  containerToString(words, " "));
    }
    return 1;
}
