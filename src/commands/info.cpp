// zelfhome info: the customer's details.
#include "commands/zlcallhome_excute.h"

#include "callhome/zlcallhome.h"
#include "services/zlerrorservice.h"

int infoList(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    const SectionMap& global = chServiceP->config[ZlCallhome::GLOBAL_LABEL];
    const PlainTable table = {
        {"group", "customerName", "customerID", "email", "countryCode"},
        {ZlCallhome::GLOBAL_LABEL, cell(global, "customer-name"), cell(global, "customer-id"),
         cell(global, "email"), cell(global, "country-code")},
    };
    showList(table);
    return 0;
}

int infoChange(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    if (isOldMaster()) {
        return forwardToHelper("info", "change", args);
    }
    return changeSettingsBasedOnOptions();
}
