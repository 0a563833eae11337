// All class-level data of the shared classes, from top to bottom in the order in which it comes up ahead of
// main(). One file defines them all, because each step leans on the ones above it: the trace must stand
// before anything traces, and the cluster definition is read at the very end.

// First of all: brings up the standard streams, which a signal handler may need as early as the lines below.
#include <iostream>

#include "callhome/zlcallhome.h"
#include "cli/zlcli.h"
#include "cli/zlcmd.h"
#include "cluster/zlclusterinfo.h"
#include "services/zlccrservice.h"
#include "services/zlcomparatorfactory.h"
#include "services/zlerrorservice.h"
#include "services/zlfileio.h"
#include "services/zlfunction.h"
#include "services/zltable.h"
#include "services/zlutils.h"

// --- text constants --------------------------------------------------------------------------------------

const std::string whitespace = " \t\n\v\f\r";
const std::string emptyStrg;

// --- the trace -------------------------------------------------------------------------------------------

// Never destroyed: a signal may come behind the last destructor.
std::map<int, std::string>& ZlErrorService::signalNames = *new std::map<int, std::string>;
ZlTraceLines& ZlErrorService::errorTrace = *new ZlTraceLines;
ZlTraceLines& ZlErrorService::debugTrace = *new ZlTraceLines;
ZlTraceLines& ZlErrorService::functionTrace = *new ZlTraceLines;
std::string& ZlErrorService::lastError = *new std::string;
std::string& ZlErrorService::logFileName = *new std::string;
const std::string& ZlErrorService::logFilePath = *new std::string("/var/zelf/tmp/");
std::string& ZlErrorService::startTime = *new std::string;
int32_t ZlErrorService::signalPid = -2;
int32_t ZlErrorService::signalValue = -2;
uint32_t ZlErrorService::controlFlags = 0;
ZlErrorService* ZlErrorService::errorServiceP = new ZlErrorService;

// --- the classes that report through it ------------------------------------------------------------------

ZlErrorService* ZlFileIO::errorServiceP = ZlErrorService::getInstance();
ZlErrorService* ZlCcrService::errorServiceP = ZlErrorService::getInstance();
ZlErrorService* ZlFunction::errorServiceP = ZlErrorService::getInstance();
ZlErrorService* ZlTable::errorServiceP = ZlErrorService::getInstance();
ZlErrorService* ZlComparatorFactory::errorServiceP = ZlErrorService::getInstance();
ZlErrorService* ZlCli::errorServiceP = ZlErrorService::getInstance();

// --- texts of the command framework and the configuration ------------------------------------------------

const std::string ZlCli::optstring = "-:N:aI?hHYv";
const std::string ZlCli::REMOTE_ONE1 = "/opt/zelf/bin/zelfrun on1 ";
const std::string ZlCli::REMOTE_ONALL = "/opt/zelf/bin/zelfrun onall ";
const std::string ZlCli::REMOTE_PRE_CMD = " execzelfhome $(/opt/zelf/bin/zelfadm fullEncode '";
const std::string ZlCli::REMOTE_POST_CMD = "' ) 2>&1";

const std::string ZlCmd::userResponseMissingValue = "Missing value. ";
const std::string ZlCmd::userResponseInvalidValue = "Invalid value: ";
const std::string ZlCmd::userResponseMissingArg = "Missing arguments. ";
const std::string ZlCmd::userResponseInvalidArg = "Invalid argument: ";
const std::string ZlCmd::userResponseInvalidLevel = "Invalid release:";
const std::string ZlCmd::userResponseIncorrectOption = "Incorrect option: ";

const std::string ZlCallhome::TOPOLOGY_LABEL = "topology";
const std::string ZlCallhome::GLOBAL_LABEL = "global";
const std::string ZlCallhome::GROUP_LABEL = "group";
const std::string ZlCallhome::ccrFile = "_callhomeconfig";

// --- the cluster -----------------------------------------------------------------------------------------

const std::string ZlClusterInfo::NODES_FILE_PATH = "/var/zelf/gen/nodeFiles/";
const std::string ZlClusterInfo::NODES_FILE_PREFIX = "zelf";
const std::string ZlClusterInfo::NODES_FILE_USER_PREFIX = "user";
const std::string ZlClusterInfo::NODES_FILE_IPA = ".ipa";
const std::string ZlClusterInfo::ZELFCRCLASS = "/opt/zelf/bin/zelfcrclass";
const std::string ZlClusterInfo::ZELFCHCLASS = "/opt/zelf/bin/zelfchclass";
const std::string ZlClusterInfo::ZELFDELCLASS = "/opt/zelf/bin/zelfdelclass";

ZlClusterInfo::NodeSet* ZlClusterInfo::nodesP = new NodeSet;
ZlClusterInfo::NameSet* ZlClusterInfo::nodeDefinitionP = new NameSet;
ZlClusterInfo::NameSet* ZlClusterInfo::validNodesP = new NameSet;
ZlClusterInfo::NameSet* ZlClusterInfo::allNodesP = new NameSet;
ZlClusterInfo::NameSet* ZlClusterInfo::invalidNodeDefinitionsP = new NameSet;
std::map<nodeLevel_t, std::string>* ZlClusterInfo::cluserLevelToNameP =
    new std::map<nodeLevel_t, std::string>;
std::map<std::string, std::string>* ZlClusterInfo::zelfcfgMapP = new std::map<std::string, std::string>;
ZlErrorService* ZlClusterInfo::errorServiceP = ZlErrorService::getInstance();
int32_t ZlClusterInfo::controlState = 1;
ZlMemberLines* ZlClusterInfo::memberLinesP = nullptr;
ZlClusterInfo::NameIndex* ZlClusterInfo::nameIndexP = nullptr;
// Reads the cluster definition; the process ends here when it cannot.
ZlClusterInfo* ZlClusterInfo::instanceP = new ZlClusterInfo;
