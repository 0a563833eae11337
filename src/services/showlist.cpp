// Apart from the printer, which knows no command line.
#include "cli/zlcli.h"
#include "services/plaintable.h"
#include "services/zlerrorservice.h"

void showList(const ZlCli& cli, const PlainTable& table)
{
    ZL_TRACE();
    if (cli.getMachineReadableOutput()) {
        machineReadableOutput(cli.programName, cli.subject, cli.verb, table);
    } else {
        formatedOutput(table, '-');
    }
}
