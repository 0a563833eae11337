// Predicates on strings and rows for ZlTable. They answer whether two texts are equal, never which is
// greater. They stand ready with it: no verb makes one.
#pragma once

#include <string>
#include <vector>

class ZlErrorService;

class ZlComparatorFactory {
public:
    enum FLAGS : unsigned long {
        IGNORE_CASE = 0, // as strcasecmp(3) does
        EXACT = 1,       // compare byte by byte
        INVERTED = 2,    // true for texts that differ
    };

    // Make a comparator of two rows by one column, or a predicate on one text. The caller deletes it.
    static ZlComparatorFactory* getVectorComparator(int column, unsigned long flags);
    static ZlComparatorFactory* getUnaryStrComp(const std::string& pattern, unsigned long flags);

    // Each form ends the run with status 1 when the object was made for the other one, or a row is too short.
    bool operator()(const std::vector<std::string>& rowA, const std::vector<std::string>& rowB) const;
    bool operator()(const std::string& text) const;

    bool stringComperator(const std::string& a, const std::string& b) const;

    // Ends the run with status 1, and the text in its full log.
    [[noreturn]] static void terminateProgram(const std::string& text);

    static ZlErrorService* errorServiceP;

private:
    ZlComparatorFactory(const std::string& text, unsigned long flagBits, int place);

    std::string pattern;
    unsigned long flags;
    bool resultIfDifferent;
    bool resultIfEqual;
    int column;
};
