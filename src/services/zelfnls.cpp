#include "services/zelfnls.h"

#include <cstdarg>
#include <cstdio>

const char* CatGets(int /*set*/, int /*number*/, const char* text)
{
    return text;
}

void printCatMessage(int number, const char* text, ...)
{
    va_list values;
    va_start(values, text);
    std::vfprintf(stderr, CatGets(ZELFHOME_SET, number, text), values);
    va_end(values);
}
