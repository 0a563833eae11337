#include "cluster/zlclusternode.h"

#include <cstdlib>

#include "services/zlerrorservice.h"
#include "services/zlutils.h"

namespace {

// Places of the fields in a member line, counted from 0. The others are not used here.
enum MEMBER_FIELDS : size_t {
    FIELD_NUMBER = 4,
    FIELD_DAEMON_SHORT_NAME = 5,
    FIELD_DAEMON_IP = 6,
    FIELD_ADMIN_LONG_NAME = 7,
    FIELD_ROLES = 9,
    FIELD_DAEMON_LONG_NAME = 14,
    FIELD_ADMIN_SHORT_NAME = 15,
    FIELD_LEVEL = 16,
    FIELD_RELEASE = 17,
};

int32_t toNumber(const std::string& text)
{
    return static_cast<int32_t>(std::strtol(text.c_str(), nullptr, 10));
}

} // namespace

ZlClusterNode::ZlClusterNode() : errorServiceP(ZlErrorService::errorServiceP)
{
    ZL_TRACE();
}

ZlClusterNode::ZlClusterNode(const std::vector<std::string_view>& memberFields)
    : errorServiceP(ZlErrorService::errorServiceP),
      level(static_cast<nodeLevel_t>(toNumber(std::string(memberFields.at(FIELD_LEVEL))))),
      release(memberFields.at(FIELD_RELEASE)), daemonShortName(memberFields.at(FIELD_DAEMON_SHORT_NAME)),
      daemonLongName(memberFields.at(FIELD_DAEMON_LONG_NAME)),
      adminShortName(memberFields.at(FIELD_ADMIN_SHORT_NAME)),
      adminLongName(memberFields.at(FIELD_ADMIN_LONG_NAME)), daemonIP(memberFields.at(FIELD_DAEMON_IP)),
      otherNodeRoles(memberFields.at(FIELD_ROLES)),
      number(toNumber(std::string(memberFields.at(FIELD_NUMBER))))
{
}

ZlClusterNode ZlClusterNode::operator=(const ZlClusterNode& source)
{
    ZL_TRACE();
    daemonIP = source.daemonIP;
    daemonShortName = source.daemonShortName;
    daemonLongName = source.daemonLongName;
    adminShortName = source.adminShortName;
    adminLongName = source.adminLongName;
    number = source.number;
    release = source.release;
    level = source.level;
    return *this;
}

nodeLevel_t ZlClusterNode::getLevel() const
{
    ZL_TRACE();
    return level;
}

void ZlClusterNode::setLevel(nodeLevel_t value)
{
    ZL_TRACE();
    level = value;
}

void ZlClusterNode::setLevel(const std::string& text)
{
    ZL_TRACE();
    level = static_cast<nodeLevel_t>(toNumber(text));
}

int32_t ZlClusterNode::getNumber() const
{
    ZL_TRACE();
    return number;
}

void ZlClusterNode::setNumber(int32_t value)
{
    ZL_TRACE();
    number = value;
}

void ZlClusterNode::setNumber(const std::string& text)
{
    ZL_TRACE();
    number = toNumber(text);
}

const std::string& ZlClusterNode::getRelease() const
{
    ZL_TRACE();
    return release;
}

void ZlClusterNode::setRelease(const std::string& text)
{
    ZL_TRACE();
    release = text;
}

const std::string& ZlClusterNode::getDaemonShortName() const
{
    ZL_TRACE();
    return daemonShortName;
}

void ZlClusterNode::setDaemonShortName(const std::string& text)
{
    ZL_TRACE();
    daemonShortName = text;
}

const std::string& ZlClusterNode::getDaemonLongName() const
{
    ZL_TRACE();
    return daemonLongName;
}

void ZlClusterNode::setDaemonLongName(const std::string& text)
{
    ZL_TRACE();
    daemonLongName = text;
}

const std::string& ZlClusterNode::getAdminShortName() const
{
    ZL_TRACE();
    return adminShortName;
}

void ZlClusterNode::setAdminShortName(const std::string& text)
{
    ZL_TRACE();
    adminShortName = text;
}

const std::string& ZlClusterNode::getAdminLongName() const
{
    ZL_TRACE();
    return adminLongName;
}

void ZlClusterNode::setAdminLongName(const std::string& text)
{
    ZL_TRACE();
    adminLongName = text;
}

const std::string& ZlClusterNode::getDaemonIP() const
{
    ZL_TRACE();
    return daemonIP;
}

void ZlClusterNode::setDaemonIP(const std::string& text)
{
    ZL_TRACE();
    daemonIP = text;
}

const std::string& ZlClusterNode::getOtherNodeRoles() const
{
    ZL_TRACE();
    return otherNodeRoles;
}

void ZlClusterNode::setOtherNodeRoles(const std::string& text)
{
    ZL_TRACE();
    otherNodeRoles = text;
}

bool ZlClusterNode::operator<(const ZlClusterNode& other) const
{
    ZL_TRACE();
    return number < other.number;
}

bool ZlClusterNode::operator<(int otherNumber) const
{
    ZL_TRACE();
    return number == otherNumber;
}

bool ZlClusterNode::operator<(const std::string& longName) const
{
    ZL_TRACE();
    return daemonLongName != longName;
}

bool ZlClusterNode::equal(const ZlClusterNode& other) const
{
    ZL_TRACE();
    return number == other.number;
}

bool ZlClusterNode::equal(int otherNumber) const
{
    ZL_TRACE();
    return number == otherNumber;
}

bool ZlClusterNode::equal(const std::string& name) const
{
    ZL_TRACE();
    return isNamed(name);
}

bool ZlClusterNode::isNamed(const std::string& name) const
{
    return name == daemonShortName || name == daemonLongName || name == adminShortName ||
           name == adminLongName || name == daemonIP || name == toString(number);
}

std::array<std::string, 6> ZlClusterNode::names() const
{
    return {daemonShortName, daemonLongName, adminShortName, adminLongName, daemonIP, toString(number)};
}
