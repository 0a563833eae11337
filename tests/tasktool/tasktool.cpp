// tasktool MODE NAME ID COMMAND: a command that declares a lock, which no verb of zelfhome does. The cluster
// tests run it on the lab's nodes.
//
// MODE is "node" or "cluster", NAME the task's name. The task runs the shell command, and its status is its
// result.
#include <cerrno>

#include "cli/zlcli.h"
#include "services/executecmd.h"
#include "services/zlutils.h"

namespace {

int work();

class TaskCli final : public ZlCli {
public:
    TaskCli(int argc, char** argv) : ZlCli(argc, argv, emptyStrg, emptyStrg, emptyStrg)
    {
        parseCmdLine(argc, argv);
        ZlCmd command(this, emptyStrg, emptyStrg, emptyStrg, nullptr, nullptr, 0);
        command(subject, verb, work, nullptr, 0);
        command("ID", ZlCmd::INT, true, emptyStrg, nullptr, 0);
        command("COMMAND", ZlCmd::ANY, true, emptyStrg, nullptr, 0);
        command.setRemoteNodeHandling(ZlCmd::REMOTE_LOCAL_ONLY);
        command.setFunctionMode(subject == "cluster" ? ZlFunction::MODE_SINGLE_IN_CLUSTER
                                                     : ZlFunction::MODE_SINGLE_ON_NODE,
                                verb);
        command.validate(shellCmd, verb, cmdOptions);
    }
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
    TaskCli cli(argc, argv);
    cliP = &cli;
    errno = 0; // a lock in a file takes a former error for its own
    cli.execCmdRc = cli.functions.front().execute();
    return cli.execCmdRc;
}
