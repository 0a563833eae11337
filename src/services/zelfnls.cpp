#include "services/zelfnls.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <langinfo.h>
#include <string>

#include "services/heldsignal.h"
#include "services/zelferrno.h"

nl_catd CatHandle = nullptr;

namespace {

// The answer items: of the system (YESSTR and NOSTR), and of the file system's programs.
constexpr int SYSTEM_YES = 0x50002;
constexpr int SYSTEM_NO = 0x50003;
constexpr int ZELF_YES = 46;
constexpr int ZELF_NO = 47;

} // namespace

void InitZelfNLS()
{
    setlocale(LC_ALL, "");
    const nl_catd catalogue = catopen("zelf.cat", NL_CAT_LOCALE);
    // catopen() says -1 where this layer says null.
    CatHandle = reinterpret_cast<intptr_t>(catalogue) == -1 ? nullptr : catalogue;
    setvbuf(stdout, nullptr, _IOLBF, 0);
    setvbuf(stderr, nullptr, _IOLBF, 0);
}

void CleanupZelfNLS()
{
    if (CatHandle != nullptr) {
        catclose(CatHandle);
    }
    CatHandle = nullptr;
}

const char* CatGets(int set, int number, const char* text)
{
    if (CatHandle == nullptr) {
        return text;
    }
    const Errno saved = errno != 0 ? ZelfErrnoFull(errno) : 0;
    const char* message = nullptr;
    {
        const HeldSignal answers(SIGUSR1);
        message = catgets(CatHandle, set, number, text);
    }
    errno = saved != 0 ? ZelfToSystemErrnoFull(saved) : 0;
    return message;
}

void printCatMessage(int number, const char* text, ...)
{
    const char* const format = CatGets(ZELFHOME_SET, number, text);
    va_list values;
    va_start(values, text);
    va_list again;
    va_copy(again, values);
    std::string message(static_cast<size_t>(std::max(std::vsnprintf(nullptr, 0, format, values), 0)), '\0');
    std::vsnprintf(message.data(), message.size() + 1, format, again);
    va_end(again);
    va_end(values);
    // Not stdio: a task's own error file takes the place of this stream.
    std::cerr << message;
}

const char* openFailedText()
{
    return CatGets(ZELFHOME_SET, MSG_OPEN_FAILED, "Open file failed: errno = ");
}

const char* readFailedText()
{
    return CatGets(ZELFHOME_SET, MSG_READ_FAILED, "Read from file failed: errno = ");
}

const char* programErrorText()
{
    return CatGets(ZELFHOME_SET, MSG_PROGRAM_ERROR, "Program error: ");
}

const char* new_nl_langinfo(int item)
{
    const char* answer = nl_langinfo(item);
    if ((item == SYSTEM_YES || item == SYSTEM_NO) && (answer == nullptr || *answer == '\0')) {
        return item == SYSTEM_YES ? "yes" : "no";
    }
    return answer;
}

int SystemToZelfNlsVal(int item)
{
    return item == SYSTEM_YES ? ZELF_YES : item == SYSTEM_NO ? ZELF_NO : item;
}

int ZelfToSystemNlsVal(int item)
{
    return item == ZELF_YES ? SYSTEM_YES : item == ZELF_NO ? SYSTEM_NO : item;
}
