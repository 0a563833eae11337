// One thing that may follow a verb: a named option such as --task, or a positional argument "#n#".
#pragma once

#include <ostream>
#include <string>

#include "cli/zlcmd.h"
#include "cluster/nodelevel.h"
#include "services/zlerrorservice.h"

class ZlCli;

class ZlOption {
public:
    ZlOption(ZlCli* cli, const std::string& name, ZlCmd::valueType type, bool required,
             const std::string& token, int (*cmdFunc)(), nodeLevel_t level);

    // Rewrites these four fields; validation makes a search key so.
    void operator()(const std::string& name, ZlCmd::valueType type, bool required, const std::string& token);

    const std::string& getName() const { return ZL_TRACE(), name; }
    ZlCmd::valueType getType() const { return ZL_TRACE(), type; }
    bool isRequired() const { return ZL_TRACE(), required; }
    nodeLevel_t getNodeLevel() const { return ZL_TRACE(), nodeLevel; }
    ZlCmd::Function getCmdFuncP() const { return ZL_TRACE(), cmdFunc; }
    ZlCmd::optionValue hasValue() const;

    // Gives the type in the words that the user sees.
    std::string getTypeStrg() const;

    // Gives name, type and whether it is required, in words.
    std::string toStrg() const;

    // By name: a name is unique within a command.
    bool operator<(const ZlOption& other) const { return ZL_TRACE(), name < other.name; }

    // The `const` of the next three results says nothing to a caller, but it stands in the trace.

    // Tells whether the value fits the type. Rewrites node definitions to the names that they resolve to,
    // and may change the option's own type: call it on a copy.
    const bool checkArgType(std::string& arg);

    // True when the token, in any case, is one of the list "A | B".
    const bool verifyToken(std::string token) const;

    // True when the value holds no character of the token text.
    const bool verifyExclusiveChar(std::string& arg) const;

    // Turns a TOKEN_AS_TYPE with the token INT, DECIMAL or ALPHA into that type. False for a list of words.
    bool procesTokenAsType();

private:
    ZlCli* cliP;
    std::string name;
    ZlCmd::valueType type;
    bool required;
    std::string token;
    ZlErrorService* errorServiceP;
    nodeLevel_t nodeLevel;
    ZlCmd::Function cmdFunc;
};

std::ostream& operator<<(std::ostream& out, const ZlOption& option);

// True when `text` holds none of `chars`.
bool _verifyExclusiveChar(const std::string& chars, const std::string& text);
