#include "commands/zlcallhome_excute.h"

#include <algorithm>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

bool isOldMaster()
{
    ZL_TRACE();
    const ZelfVersion version = chServiceP->getThisGroupMasterVersion();
    return version < ZelfVersion(MONITORING_ROUTE_VERSION) && chServiceP->isCurrNodeInCallhomeGroup() != 0;
}

int fail(const std::string& reason)
{
    ZL_TRACE();
    chServiceP->userResponse = reason;
    return 1;
}

const std::string& requiredArgument(size_t place)
{
    ZL_TRACE();
    const std::vector<std::string>& args = chServiceP->getCmdOptionVector();
    if (place >= args.size()) {
        chServiceP->giveUp(ZlCmd::userResponseMissingArg);
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
    ZlCallhome::Section settings;
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

int askMonitoringService(const std::string& request)
{
    ZL_TRACE();
    std::vector<std::string> reply;
    const int code = chServiceP->executeCMD(MONITORING_CLIENT + request, &reply);
    chServiceP->userResponse = containerToString(reply, emptyStrg);
    return code;
}

int changeSettingViaZelfmon(const ZlCallhome::Section& settings)
{
    ZL_TRACE();
    std::string request = "changeConfig";
    for (const auto& [key, value] : settings) {
        request += " '" + key + "' '" + replaceAllSubstrings(value, "'", "'\\''") + "'";
    }
    return askMonitoringService(request);
}

int changeSettingViaZelfmon(const std::string& key, const std::string& value)
{
    ZL_TRACE();
    return changeSettingViaZelfmon(ZlCallhome::Section{{key, value}});
}

std::vector<std::pair<std::string, ZlCallhome::Section>> sectionsGlobalFirst()
{
    ZL_TRACE();
    const auto& config = chServiceP->config;
    std::vector<std::pair<std::string, ZlCallhome::Section>> sections(config.begin(), config.end());
    // Not std::ranges::stable_partition: clang 14 cannot compile what it returns.
    std::stable_partition(sections.begin(), sections.end(),
                          [](const auto& section) { return section.first == ZlCallhome::GLOBAL_LABEL; });
    return sections;
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
