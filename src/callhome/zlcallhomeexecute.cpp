#include "callhome/zlcallhomeexecute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"

namespace {

const char* const CONNECT_PROPERTIES = "/opt/zelf/bin/upl/connectivity/uplConnect.properties";
const char* const MAIN_PROPERTIES = "/opt/zelf/data/callhome/etc/UPLmain.properties";

} // namespace

ZlCallhomeExecute::ZlCallhomeExecute(ZlCallhome* callhome)
    : errorServiceP(ZlErrorService::errorServiceP), callhomeP(callhome)
{
    ZL_TRACE();
    errorServiceP->pushNewMsg("Create ZlCallhomeExecute object.");
    subjectSettings = {
        {"proxy",
         {"proxy-auth-enabled", "proxy-enabled", "proxy-disabled", "proxy-enable", "proxy-auth-enable"}},
        {"capability", {"enabled", "disabled"}},
    };
    settings = {
        {"proxy-location", {CONNECT_PROPERTIES, "CUSTOMER_SUPPLIED_HTTP_PROXY_LOCATION_1"}},
        {"proxy-port", {CONNECT_PROPERTIES, "CUSTOMER_SUPPLIED_HTTP_PROXY_PORT_1"}},
        {"proxy-username", {CONNECT_PROPERTIES, "CUSTOMER_SUPPLIED_HTTP_PROXY_USERID_1"}},
        {"proxy-password", {MAIN_PROPERTIES, "ProxyPassword"}},
        {"proxy-auth-enable", {MAIN_PROPERTIES, "UseProxyAuthentication"}},
        {"proxy-enable",
         {CONNECT_PROPERTIES, "CUSTOMER_SUPPLIED_HTTP_PROXY_ENABLED", "YES", "DIRECT_LAN_CONNECT_ALLOWED",
          "NO"}},
        {"proxy-disable",
         {"CUSTOMER_SUPPLIED_HTTP_PROXY_ENABLED", "NO", "DIRECT_LAN_CONNECT_ALLOWED", "YES"}},
        {"enabled", {MAIN_PROPERTIES, "EnableCallHome", "true"}},
        {"disabled", {MAIN_PROPERTIES, "EnableCallHome", "false"}},
        {"list", {}},
        {"proxy-enabled", {}},
        {"proxy-auth-enabled", {}},
        {"daily", {}},
        {"weekly", {}},
    };
    // What an option changes is known, whether it has a property or not.
    for (const char* subject : {"proxy", "info"}) {
        for (const std::string& name : settingsOf(subject)) {
            subjectSettings[subject].insert(name);
            settings[name];
        }
    }
    errorServiceP->pushNewMsg("ZlCallhomeExecute object created.");
}

int ZlCallhomeExecute::validateOption(const std::string& name) const
{
    ZL_TRACE();
    return settings.contains(name) ? 0 : 1;
}
