// A dotted version such as "4.2.3.7": the release of a node, the masterReleaseVersion of a group.
//
// All six operators are defined through operator<, in a way that makes == never and != always true, and at
// equality > true and <= false. Gates that exist rely on it: write new ones with < and >=, which answer as
// expected.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class ZelfVersion {
public:
    // A part counts by the digits at its beginning: "4.2.3-7" is 4, 2, 3; a part without digits is 0.
    explicit ZelfVersion(const std::string& version);

    const std::string& getText() const { return text; }

    // Compares over the parts of the left version. A part that the right one does not have counts as 0.
    bool operator<(const ZelfVersion& other) const;
    bool operator>(const ZelfVersion& other) const;
    bool operator==(const ZelfVersion& other) const;
    bool operator!=(const ZelfVersion& other) const;
    bool operator<=(const ZelfVersion& other) const;
    bool operator>=(const ZelfVersion& other) const;

    bool operator<(const std::string& other) const;
    bool operator>(const std::string& other) const;
    bool operator==(const std::string& other) const;
    bool operator!=(const std::string& other) const;
    bool operator<=(const std::string& other) const;
    bool operator>=(const std::string& other) const;

private:
    std::string text;
    std::vector<int32_t> numbers;
};
