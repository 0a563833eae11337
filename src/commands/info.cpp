// zelfhome info: the customer's details.
#include "commands/zlcallhome_excute.h"

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

int infoList(char* /*prompt*/, char* /*args*/, bool /*interactive*/)
{
    ZL_TRACE();
    const ZlCallhome::Section& global = chServiceP->config[ZlCallhome::GLOBAL_LABEL];
    const PlainTable table = {
        {"group", "customerName", "customerID", "email", "countryCode"},
        {ZlCallhome::GLOBAL_LABEL, valueOr(global, "customer-name"), valueOr(global, "customer-id"),
         valueOr(global, "email"), valueOr(global, "country-code")},
    };
    showList(*chServiceP, table);
    return 0;
}

int infoChange(char* /*prompt*/, char* args, bool /*interactive*/)
{
    ZL_TRACE();
    return isOldMaster() ? forwardToHelper("info", "change", args) : changeSettingsBasedOnOptions();
}
