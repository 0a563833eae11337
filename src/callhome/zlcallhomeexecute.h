// The settings that the tool knows by name. (The handlers are in commands/zlcallhome_excute.h.)
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

class ZlCallhome;
class ZlErrorService;

class ZlCallhomeExecute {
public:
    explicit ZlCallhomeExecute(ZlCallhome* callhome);

    // 0 when the setting is known.
    int validateOption(const std::string& name) const;

    // Only the names in `settings` are consulted. The rest is a record of where each setting belongs: to its
    // subject, and in the property files of the upload client, which the monitoring service maintains.
    ZlErrorService* errorServiceP;
    std::map<std::string, std::set<std::string>> subjectSettings;
    std::map<std::string, std::vector<std::string>> settings; // property file, then key and value in turn
    ZlCallhome* callhomeP;
};
