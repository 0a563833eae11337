// All class-level data of the shared classes but their texts, from top to bottom in the order in which it
// comes up before main(). One file defines them all, because each step leans on the ones above it: the trace
// must stand before anything traces, and the cluster definition is read at the very end.

// First of all: brings up the standard streams, which a signal handler may need as early as the lines below.
#include <iostream>

#include "cli/zlcli.h"
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
std::string& ZlErrorService::errorTrace = *new std::string;
std::string& ZlErrorService::debugTrace = *new std::string;
std::string& ZlErrorService::functionTrace = *new std::string;
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

// --- the cluster -----------------------------------------------------------------------------------------

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
// Reads the cluster definition; the process ends here when it cannot.
ZlClusterInfo* ZlClusterInfo::instanceP = new ZlClusterInfo;
