// What the unit tests share.
#pragma once

#include <functional>
#include <tuple>

#include "callhome/zlcallhome.h"
#include "cli/zlcli.h"
#include "cluster/zlclusterinfo.h"
#include "services/zlerrorservice.h"
#include "services/zlutils.h"
#include "support/files.h"

using Words = std::vector<std::string>;
using Names = std::set<std::string>;
using Info = ZlClusterInfo;

const std::string TMP = "/var/zelf/tmp/";

// Puts a shell script at /opt/zelf/bin/`name`. calls() gives the calls since it was last asked, one a line.
void install(const std::string& name, const std::string& script);
std::string calls();

std::string printed(const std::function<void()>& action); // on standard output

// Expects that `action` ends the process with this status and exactly these words.
void expectEnd(const std::function<void()>& action, int status, const std::string& out,
               const std::string& err);

// The same for the way in which the framework gives up.
void expectFailure(const std::function<void()>& action, const std::string& response,
                   const std::string& message = "");

// `names`: daemon short name, daemon address, admin long name, daemon long name, admin short name.
std::string member(int number, const std::string& names, int level = 1900, const std::string& roles = "M");

// Until the end of the test.
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

// The objects live as long as the test program: their destructor would take the cluster along.
TestCli& makeCli(const Words& line = {});
ZlCallhome& makeCallhome(const Words& line);

// Each test finds /opt/zelf/bin and /var/zelf/tmp empty, the cluster of node1 to node4 with node1 as local
// node, nothing traced and no error number.
class ZelfTest : public testing::Test {
protected:
    ZelfTest() { ZelfTest::SetUp(); } // before the commands that a test's own objects run
    void SetUp() override;
    static std::string usage() { return "Usage"; }

    ZlErrorService& service = *ZlErrorService::errorServiceP;
};
