#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

bool isOldMaster()
{
    ZL_TRACE();
    return chServiceP->getThisGroupMasterVersion() < ZelfVersion(MONITORING_ROUTE_VERSION) &&
           chServiceP->isCurrNodeInCallhomeGroup() != 0;
}

const std::string& requiredArgument(size_t place)
{
    ZL_TRACE();
    const std::vector<std::string>& args = chServiceP->getCmdOptionVector();
    if (place >= args.size()) {
        chServiceP->userResponse = ZlCmd::userResponseMissingArg;
        chServiceP->terminateProgram(1);
    }
    return args[place];
}

int forwardToHelper(const std::string& subject, const std::string& verb, const char* args)
{
    ZL_TRACE();
    return chServiceP->executeCHcmd(subject, verb, args, nullptr, emptyStrg);
}

int changeSettingsBasedOnOptions()
{
    ZL_TRACE();
    SettingsMap settings;
    const std::vector<std::string>& args = chServiceP->getCmdOptionVector();
    for (size_t i = 0; i < args.size(); i += 2) {
        // A word of less than two bytes raises a range error here.
        const std::string key = args[i].substr(2);
        if (i + 1 == args.size()) {
            break;
        }
        settings[key] = args[i + 1];
    }
    if (settings.empty()) {
        chServiceP->userResponse = "No parameters specified";
        chServiceP->execCmdRc = 2;
        return 2;
    }
    return changeSettingViaZelfmon(settings);
}

int changeSettingViaZelfmon(const SettingsMap& settings)
{
    ZL_TRACE();
    std::string command = "/opt/zelf/bin/zelfmonc callhome changeConfig";
    for (const auto& [key, value] : settings) {
        command += " '" + key + "' '" + replaceAllSubstrings(value, "'", "'\\''") + "'";
    }
    std::vector<std::string> reply;
    const int code = chServiceP->executeCMD(command, &reply);
    chServiceP->userResponse = containerToString(reply, emptyStrg);
    return code;
}

int changeSettingViaZelfmon(const std::string& key, const std::string& value)
{
    ZL_TRACE();
    return changeSettingViaZelfmon(SettingsMap{{key, value}});
}

PlainTable tableOfSections(
    const std::vector<std::string>& header,
    const std::function<void(const std::string& name, const SectionMap& section, PlainTable& rows)>& addRows)
{
    ZL_TRACE();
    PlainTable table = {header};
    PlainTable groupRows;
    for (const auto& [name, section] : chServiceP->config) {
        addRows(name, section, name == ZlCallhome::GLOBAL_LABEL ? table : groupRows);
    }
    table.insert(table.end(), groupRows.begin(), groupRows.end());
    return table;
}

std::string cell(const SectionMap& section, const std::string& key)
{
    const std::string* value = getValue(section, key);
    return value == nullptr ? emptyStrg : *value;
}

void showList(const PlainTable& table)
{
    ZL_TRACE();
    if (chServiceP->getMachineReadableOutput()) {
        machineReadableOutput(chServiceP->programName, chServiceP->subject, chServiceP->verb, table);
    } else {
        formatedOutput(table, '-');
    }
}

std::string replaceAllSubstrings(std::string text, const std::string& what, const std::string& by)
{
    ZL_TRACE();
    if (what.empty()) {
        return text;
    }
    for (size_t hit = text.find(what); hit != std::string::npos; hit = text.find(what, hit + by.size())) {
        text.replace(hit, what.size(), by);
    }
    return text;
}
