// What the unit tests share: a clean installation for each test, scripted programs that note how they were
// called, standard output as text, the end of the process, and command line objects.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "callhome/zlcallhome.h"
#include "cli/zlcli.h"
#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"

using Words = std::vector<std::string>;
using Names = std::set<std::string>;
using Info = ZlClusterInfo;

const std::string TMP = "/var/zelf/tmp/";

std::string contentOf(const std::string& path); // empty for a missing file
void writeFile(const std::string& path, const std::string& text);

// Expects that a text, such as a file's content, has this part.
void expectIn(const std::string& text, const std::string& part);

// Puts a shell script at /opt/zelf/bin/`name`. calls() gives the calls so far, one a line with each argument
// in brackets, and forgets them.
void install(const std::string& name, const std::string& script);
std::string calls();

// Gives what `action` prints on standard output.
std::string printed(const std::function<void()>& action);

// Expects that `action` ends the process with this status and exactly these words.
void expectEnd(const std::function<void()>& action, int status, const std::string& out,
               const std::string& err);

// Gives a member line of the cluster definition file. `names` are daemon short name, daemon address, admin
// long name, daemon long name and admin short name, with blanks between them.
std::string member(int number, const std::string& names, int level = 1900, const std::string& roles = "M");

// Replace the nodes of the cluster, and /var/zelf/gen/zelf.cfg, until the end of the test.
void setCluster(const Names& lines);
void setZelfCfg(const std::string& text);

class TestCli final : public ZlCli {
public:
    TestCli(int argc, char** argv)
        : ZlCli(argc, argv, "/opt/zelf/bin/callhomeutils.pl", " execzelfhome_2 ", " ")
    {
        parseCmdLine(argc, argv);
    }
    int checkEnvironment() override { return 0; }
};

// Make a command line object for a subject and a verb. The objects live as long as the test program: their
// destructor would take the cluster along.
TestCli& makeCli(const Words& line = {});
ZlCallhome& makeCallhome(const Words& line);

// Each test finds /opt/zelf/bin and /var/zelf/tmp empty, the cluster of node1 to node4 with node1 as local
// node, nothing traced and no error number.
class ZelfTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    ZlErrorService& service = *ZlErrorService::errorServiceP;
};
