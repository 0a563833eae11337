// zelfhome capability: the master switch of call home.
#include "commands/zlcallhome_excute.h"

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

int capabilityEnable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return isOldMaster() ? forwardToHelper("capability", "enable", args)
                         : changeSettingViaZelfmon(ZlCallhome::ENABLED, "true");
}

int capabilityDisable(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return isOldMaster() ? forwardToHelper("capability", "disable", args)
                         : changeSettingViaZelfmon(ZlCallhome::ENABLED, "false");
}

int capabilityList(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("capability", "list", args);
    }
    PlainTable table = {{"group", "callHomeNode", "status"}};
    for (const auto& [name, section] : sectionsGlobalFirst()) {
        if (const std::string* enabled = getValue(section, ZlCallhome::ENABLED)) {
            table.push_back(
                {name,
                 name == ZlCallhome::GLOBAL_LABEL ? " --- " : valueOr(section, ZlCallhome::CALLHOME_NODE),
                 *enabled == "true" ? "enabled" : "disabled"});
        }
    }
    showList(*chServiceP, table);
    return 0;
}
