// zelfhome schedule: the periodic gather and send tasks.
#include "commands/zlcallhome_excute.h"

#include <iostream>

#include "callhome/zlcallhome.h"
#include "cli/cmdtable.h"
#include "services/zlerrorservice.h"

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
    showList(
        tableOfSections({"group", "scheduleType", "isEnabled", "confFile"},
                        [](const auto& name, const auto& section, auto& rows) {
                            for (const char* task : {"daily", "weekly"}) {
                                const auto state = section.find(task);
                                if (state != section.end()) {
                                    rows.push_back({name, task, state->second, std::string(task) + ".conf"});
                                }
                            }
                        }));
    return 0;
}
