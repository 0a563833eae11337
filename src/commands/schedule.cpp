// zelfhome schedule: the periodic gather and send tasks.
#include "commands/zlcallhome_excute.h"

#include <iostream>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// Switches the task of the command, on either route.
int switchTask(const char* verb, const char* state, char* args)
{
    if (isOldMaster()) {
        mapTaskWords(args);
        return forwardToHelper("schedule", verb, args);
    }
    return changeSettingViaZelfmon(requiredArgument(1), state);
}

} // namespace

int scheduleAdd(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return switchTask("add", "enabled", args);
}

int scheduleDelete(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return switchTask("delete", "disabled", args);
}

int scheduleList(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("schedule", "list", args);
    }
    if (!chServiceP->getMachineReadableOutput()) {
        std::cout << "=== List of registered schedule tasks ===\n\n";
    }
    PlainTable table = {{"group", "scheduleType", "isEnabled", "confFile"}};
    for (const auto& [name, section] : sectionsGlobalFirst()) {
        for (const std::string task : {ZlCallhome::DAILY, ZlCallhome::WEEKLY}) {
            if (const std::string* state = getValue(section, task)) {
                table.push_back({name, task, *state, task + ".conf"});
            }
        }
    }
    showList(*chServiceP, table);
    return 0;
}
