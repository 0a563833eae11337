#include "services/zlfunction.h"

#include <functional>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

ZlFunction::ZlFunction(const std::string& option, const std::string& command, int (*work)())
    : optionName(option), cmdName(command), function(work)
{
    ZL_TRACE();
    errorServiceP->pushDebugMsg("ZlFunction::ZlFunction: mode = " +
                                toString(static_cast<int>(operationMode)));
}

void ZlFunction::setOperationMode(MODES mode)
{
    ZL_TRACE();
    operationMode = mode;
    errorServiceP->pushDebugMsg("ZlFunction::setOperationMode: mode = " + toString(static_cast<int>(mode)));
}

void ZlFunction::setName(const std::string& text)
{
    ZL_TRACE();
    name = text;
}

void ZlFunction::setID(unsigned long taskId)
{
    ZL_TRACE();
    id = taskId;
}

std::string ZlFunction::getName() const
{
    ZL_TRACE();
    return name;
}

bool ZlFunction::operator<(const ZlFunction& other) const
{
    ZL_TRACE();
    return std::less<>()(function, other.function);
}
