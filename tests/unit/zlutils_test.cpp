// The edges of the text utilities that files, arguments and forwarded lines are built on.
#include "fixture.h"

#include <stdexcept>

#include "commands/zlcallhome_excute.h"

TEST(ZlUtils, TrimLeavesBlanksOnlyAndASingleFirstByteAlone)
{
    const Words cases[] = {// text, trimLeft, trimRight, trim
                           {"", "", "", ""},
                           {" a ", "a ", " a", "a "},
                           {"   ", "   ", "   ", "   "},
                           {"\t\n\v\f\r x y\r\f\v\n\t", "x y\r\f\v\n\t", "\t\n\v\f\r x y", "x y"}};
    for (const Words& texts : cases) {
        Words got(4, texts[0]);
        trimLeft(got[1], whitespace);
        trimRight(got[2], whitespace);
        trim(got[3], whitespace);
        EXPECT_EQ(got, texts);
    }
}

TEST(ZlUtils, CutsAtAnyByteOrAtTheWholeDelimiter)
{
    Words list = {"old"};
    // Any byte cuts, but the search resumes behind the hit by the delimiter's length.
    EXPECT_EQ(stringToVector(&list, "a; b;c", "; "), 0);
    EXPECT_EQ(list, (Words{"a", "b", ""}));
    stringListToContainer("a; b;c", "; ", &list); // goes behind what is there
    EXPECT_EQ(list, (Words{"a", "b", "", "a", "b;c"}));
    EXPECT_EQ(split(",a,,b,", ","), (Words{"", "a", "", "b", ""}));
    EXPECT_EQ(containerToString({}, ",") + containerToString({"", "b", ""}, ","), ",b,");
    EXPECT_EQ(linesOf("a\n\nb:c"), (Words{"a\n", "\n", "b:c"}));
    EXPECT_EQ(stringToVector(nullptr, "a", ",") + stringToSet(nullptr, "a", ",") +
                  stringListToContainer("a", ",", nullptr),
              3);
}

TEST(ZlUtils, KeysAndReplacements)
{
    std::string key = "-";
    std::string text = "-";
    EXPECT_EQ(stringToKeyValue(key, text, "kv", "=:"), 2);
    EXPECT_EQ(key + text, "--");
    EXPECT_EQ(stringToKeyValue(key, text, " key:=v= ", "=:"), 0);
    EXPECT_EQ(key + "|" + text, "key|=v=");
    EXPECT_EQ(replaceAllSubstrg(text = "XX", "X", "YY"), 1); // within the length on entry only
    EXPECT_EQ(text, "YYX");
    EXPECT_EQ(replaceAllSubstrg(text = "XXXXab", "XX", "") + replaceAllSubstrg(text, "", ""), 2);
    EXPECT_EQ(text, "ab");
    EXPECT_EQ(replaceAllSubstrings("XXX", "XX", "XXX") + replaceAllSubstrings("ab", "", "X"), "XXXXab");
}

TEST(ZlUtils, PercentCodec)
{
    std::string allBytes;
    for (int byte = 0; byte < 256; ++byte) {
        allBytes += static_cast<char>(byte);
    }
    std::string coded;
    std::string decoded = "old";
    percentEncode(coded, allBytes, allBytes);
    EXPECT_EQ(coded.substr(0, 6) + coded.substr(3 * 255), "%00%01%FF");
    percentDecode(decoded, coded);
    EXPECT_EQ(decoded, allBytes);
    Words list = {"old"};
    percentEncode(list, {"50% of\na:\xe9", ""}, "%:\n");
    EXPECT_EQ(list, (Words{"50%25 of%0Aa%3A\xe9", ""}));

    // No check: two bytes are what strtol(3) makes of them.
    percentDecode(decoded, "a%41%62%zzx%4gx%-1x% 7x%2520");
    EXPECT_EQ(decoded, std::string("aAb\0x\4x\xffx\7x%20", 14));
    EXPECT_THROW(percentDecode(decoded, "abc%"), std::out_of_range);
    EXPECT_THROW(percentDecode(decoded, "%41%4"), std::out_of_range);
}

TEST(ZlUtils, Predicates)
{
    // d: isDecimal, u: isUnsingedDecimal, i: isInt, a: isStringAlpha, p: isStringPMR.
    const std::pair<std::string, Words> cases[] = {
        {"dui", {"0", "2147483647"}},
        {"du", {"05", "1.5", ".5", "2147483648"}},
        {"di", {"-7", "-2147483648"}},
        {"d", {"+5", "-0", "-.5", "a12", "-2147483649"}}, // the first byte is not looked at
        {"da", {"a"}},
        {"a", {"", "abcXYZ", "TS"}},
        {"p", {"TS123456789", "TS.;-/ !\"#$", "12345.A1B.000", "90909.A9Z.090"}},
        {"",
         {"-", ".", "--5", "5 ", "1.", "1.5.5", "ab\xe9", "TS123", "TS1234567890", "12345.a1b.000",
          "1234A.A1B.000", "12345.A1B.00A", "12345-A1B-000", "12345.A1B.0000"}}};
    for (const auto& [expected, texts] : cases) {
        for (const std::string& text : texts) {
            const std::string got = std::string(isDecimal(text) != 0 ? "d" : "") +
                                    (isUnsingedDecimal(text) != 0 ? "u" : "") +
                                    (isInt(text) != 0 ? "i" : "") + (isStringAlpha(text) != 0 ? "a" : "") +
                                    (isStringPMR(text) != 0 ? "p" : "");
            EXPECT_EQ(got, expected) << text;
        }
    }
}
