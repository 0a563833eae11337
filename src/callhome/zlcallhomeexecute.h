// The settings that the tool knows by name.
//
// Only the names are consulted here. The values record where each setting lands in the property files of the
// upload client, which the monitoring service maintains.
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

    const std::map<std::string, std::set<std::string>>& getSubjectSettings() const { return subjectSettings; }
    const std::map<std::string, std::vector<std::string>>& getSettings() const { return settings; }
    ZlCallhome* getCallhome() const { return callhomeP; }

private:
    ZlErrorService* errorServiceP;
    std::map<std::string, std::set<std::string>> subjectSettings;
    std::map<std::string, std::vector<std::string>> settings;
    ZlCallhome* callhomeP;
};
