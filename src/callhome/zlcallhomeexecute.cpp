#include "callhome/zlcallhomeexecute.h"

#include "services/zlerrorservice.h"

namespace {

const char* const CONNECT_PROPERTIES = "/opt/zelf/bin/upl/connectivity/uplConnect.properties";
const char* const MAIN_PROPERTIES = "/opt/zelf/data/callhome/etc/UPLmain.properties";

} // namespace

ZlCallhomeExecute::ZlCallhomeExecute(ZlCallhome* callhome) : errorServiceP(nullptr), callhomeP(callhome)
{
    ZL_TRACE();
    errorServiceP = ZlErrorService::getInstance();
    errorServiceP->pushNewMsg("Create ZlCallhomeExecute object.");
    subjectSettings = {
        {"proxy",
         {"proxy-location", "proxy-port", "proxy-username", "proxy-password", "proxy-auth-enabled",
          "proxy-enabled", "proxy-disabled", "proxy-enable", "proxy-auth-enable"}},
        {"info", {"customer-name", "customer-id", "email", "country-code"}},
        {"capability", {"enabled", "disabled"}},
    };
    // Property file, then key and value in turn.
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
        {"customer-name", {}},
        {"customer-id", {}},
        {"email", {}},
        {"country-code", {}},
        {"daily", {}},
        {"weekly", {}},
    };
    errorServiceP->pushNewMsg("ZlCallhomeExecute object created.");
}

int ZlCallhomeExecute::validateOption(const std::string& name) const
{
    ZL_TRACE();
    return settings.count(name) != 0 ? 0 : 1;
}
