// zelfhome info: the customer's details.
#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"
#include "services/zltable.h"
#include "services/zlutils.h"

int infoList(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    // A copy: asking it for a missing key adds nothing to the configuration.
    std::map<std::string, std::string> global = chServiceP->config[ZlCallhome::GLOBAL_LABEL];
    const PlainTable table = {
        {"group", "customerName", "customerID", "email", "countryCode"},
        {ZlCallhome::GLOBAL_LABEL, global["customer-name"], global["customer-id"], global["email"],
         global["country-code"]},
    };
    showList(table);
    return 0;
}

int infoChange(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return chServiceP->executeCHcmd("info", "change", args, nullptr, emptyStrg);
    }
    return changeSettingsBasedOnOptions();
}
