// zelfhome capability: the master switch of call home.
#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"

int capabilityEnable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return isOldMaster() ? forwardToHelper("capability", "enable", args)
                         : changeSettingViaZelfmon("enabled", "true");
}

int capabilityDisable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return isOldMaster() ? forwardToHelper("capability", "disable", args)
                         : changeSettingViaZelfmon("enabled", "false");
}

int capabilityList(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("capability", "list", args);
    }
    showList(tableOfSections({"group", "callHomeNode", "status"}, [](const auto& name, const auto& section,
                                                                     auto& rows) {
        const auto enabled = section.find("enabled");
        if (enabled != section.end()) {
            rows.push_back({name, name == ZlCallhome::GLOBAL_LABEL ? " --- " : cell(section, "callhomeNode"),
                            enabled->second == "true" ? "enabled" : "disabled"});
        }
    }));
    return 0;
}
