// zelfhome proxy: the way to the outside through a proxy.
#include "commands/zlcallhome_excute.h"

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

bool isDefined(const char* key)
{
    return chServiceP->isConfigAttributeDefinedAndNotEmpty(ZlCallhome::GLOBAL_LABEL, key) != 0;
}

} // namespace

int proxyEnable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("proxy", "enable", args);
    }
    if (!isDefined("proxy-location")) {
        return fail("Please define proxy-location prior to enabling proxy");
    }
    if (!isDefined("proxy-port")) {
        return fail("Please define proxy-port prior to enabling proxy");
    }
    const bool withAuth = contains(chServiceP->getCmdOptionVector(), "--with-proxy-auth");
    if (withAuth) {
        if (!isDefined("proxy-username")) {
            return fail("Please define proxy-username prior to enabling authenticated proxy");
        }
        // Unlike a user name, a password may be empty.
        if (chServiceP->getConfigAttribute(ZlCallhome::GLOBAL_LABEL, "proxy-password") ==
            ZlCallhome::UNKNOWN) {
            return fail("Please define proxy-password prior to enabling authenticated proxy");
        }
    }
    return changeSettingViaZelfmon(
        {{ZlCallhome::PROXY_AUTH_ENABLED, withAuth ? "true" : "false"}, {ZlCallhome::PROXY_ENABLED, "true"}});
}

int proxyDisable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("proxy", "disable", args);
    }
    return changeSettingViaZelfmon(
        {{ZlCallhome::PROXY_AUTH_ENABLED, "false"}, {ZlCallhome::PROXY_ENABLED, "false"}});
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
    PlainTable table = {
        {"group", "proxyAuthEnabled", "proxyEnabled", "proxyLocation", "proxyPort", "proxyUsername"}};
    for (const auto& [name, section] : sectionsGlobalFirst()) {
        if (section.contains("proxy-username")) {
            table.push_back({name, valueOr(section, ZlCallhome::PROXY_AUTH_ENABLED),
                             valueOr(section, ZlCallhome::PROXY_ENABLED), valueOr(section, "proxy-location"),
                             valueOr(section, "proxy-port"), valueOr(section, "proxy-username")});
        }
    }
    showList(*chServiceP, table);
    return 0;
}
