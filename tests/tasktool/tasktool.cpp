// tasktool MODE NAME ID COMMAND: a command that declares a lock, which no verb of zelfhome does, for the
// cluster tests. MODE is "node" or "cluster", NAME the task's name; the status of the shell command is its
// result.
#include <cerrno>

#include "cli/zlcli.h"
#include "services/executecmd.h"
#include "services/zlutils.h"

namespace {

class TaskCli final : public ZlCli {
public:
    using ZlCli::ZlCli;
    int checkEnvironment() override { return 0; }
};

TaskCli* cliP = nullptr;

int work()
{
    return _executeCMD(cliP->cmdOptions[1], nullptr);
}

} // namespace

int main(int argc, char** argv)
{
    TaskCli cli(argc, argv, emptyStrg, emptyStrg, emptyStrg);
    cliP = &cli;
    cli.parseCmdLine(argc, argv);
    ZlCmd command(&cli, emptyStrg, emptyStrg, emptyStrg, nullptr, nullptr, 0);
    command(cli.subject, cli.verb, work, nullptr, 0);
    command("ID", ZlCmd::INT, true, emptyStrg, nullptr, 0);
    command("COMMAND", ZlCmd::ANY, true, emptyStrg, nullptr, 0);
    command.setRemoteNodeHandling(ZlCmd::REMOTE_LOCAL_ONLY);
    command.setFunctionMode(cli.subject == "cluster" ? ZlFunction::MODE_SINGLE_IN_CLUSTER
                                                     : ZlFunction::MODE_SINGLE_ON_NODE,
                            cli.verb);
    command.validate(cli.shellCmd, cli.verb, cli.cmdOptions);
    errno = 0; // a lock in a file takes a former error for its own
    cli.execCmdRc = cli.functions.front().execute();
    return cli.execCmdRc;
}
