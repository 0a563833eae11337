// zelfhome proxy: the way to the outside through a proxy.
#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

bool isDefined(const char* key)
{
    return chServiceP->isConfigAttributeDefinedAndNotEmpty(ZlCallhome::GLOBAL_LABEL, key) != 0;
}

// Says what has to be defined first. Gives 1.
int refuse(const std::string& text)
{
    chServiceP->userResponse = text;
    return 1;
}

} // namespace

int proxyEnable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("proxy", "enable", args);
    }
    if (!isDefined("proxy-location")) {
        return refuse("Please define proxy-location prior to enabling proxy");
    }
    if (!isDefined("proxy-port")) {
        return refuse("Please define proxy-port prior to enabling proxy");
    }
    const bool withAuth = contains(chServiceP->getCmdOptionVector(), "--with-proxy-auth");
    if (withAuth) {
        if (!isDefined("proxy-username")) {
            return refuse("Please define proxy-username prior to enabling authenticated proxy");
        }
        // Unlike a user name, a password may be empty.
        if (chServiceP->getConfigAttribute(ZlCallhome::GLOBAL_LABEL, "proxy-password") == "unknown") {
            return refuse("Please define proxy-password prior to enabling authenticated proxy");
        }
    }
    return changeSettingViaZelfmon(
        {{"proxy-auth-enabled", withAuth ? "true" : "false"}, {"proxy-enabled", "true"}});
}

int proxyDisable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("proxy", "disable", args);
    }
    return changeSettingViaZelfmon({{"proxy-auth-enabled", "false"}, {"proxy-enabled", "false"}});
}

int proxyChange(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return isOldMaster() ? forwardToHelper("proxy", "change", args) : changeSettingsBasedOnOptions();
}

// The password is in no column.
int proxyList(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("proxy", "list", args);
    }
    showList(tableOfSections(
        {"group", "proxyAuthEnabled", "proxyEnabled", "proxyLocation", "proxyPort", "proxyUsername"},
        [](const auto& name, const auto& section, auto& rows) {
            if (section.count("proxy-username") != 0) {
                rows.push_back({name, cell(section, "proxy-auth-enabled"), cell(section, "proxy-enabled"),
                                cell(section, "proxy-location"), cell(section, "proxy-port"),
                                cell(section, "proxy-username")});
            }
        }));
    return 0;
}
