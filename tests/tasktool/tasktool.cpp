// tasktool MODE NAME ID [ACTION...]: a command that declares a lock, which no verb of zelfhome does. The
// cluster tests run it on the lab's nodes.
//
// MODE is "node" or "cluster", NAME the task's name. The task takes its actions in order:
//   out=TEXT  err=TEXT   print a line
//   note=FILE            add the local node's name and the process id to a file
//   sleep=SECONDS        sleep
//   wait=FILE            wait until the file is there
//   fail=STATUS          end here, with this result
#include <cerrno>
#include <chrono>
#include <fstream>
#include <iostream>
#include <thread>
#include <unistd.h>

#include "cli/zlcli.h"
#include "cluster/zlclusterinfo.h"
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
        command("ACTION", ZlCmd::ANY_INFINITE, false, emptyStrg, nullptr, 0);
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
    for (size_t i = 1; i < cliP->cmdOptions.size(); ++i) {
        const std::string& action = cliP->cmdOptions[i];
        const std::string kind = action.substr(0, action.find('='));
        const std::string value = action.substr(kind.size() + 1);
        if (kind == "out") {
            std::cout << value << std::endl;
        } else if (kind == "err") {
            std::cerr << value << std::endl;
        } else if (kind == "note") {
            std::ofstream(value, std::ios::app)
                << ZlClusterInfo::getLocalNodeName() << " " << getpid() << "\n";
        } else if (kind == "sleep") {
            std::this_thread::sleep_for(std::chrono::duration<double>(std::stod(value)));
        } else if (kind == "wait") {
            while (access(value.c_str(), F_OK) != 0) {
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        } else {
            return std::stoi(value);
        }
    }
    return 0;
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
