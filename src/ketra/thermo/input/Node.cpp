#include <ketra/thermo/input/Node.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

namespace {

Setting& findOrAdd(Setting& parent, const char* key, Setting::Type type)
{
    return parent.exists(key) ? parent[key] : parent.add(key, type);
}

} // namespace

Node::Node(const char* key) : name(key != nullptr ? key : "") {}

const Setting& Node::getSettings(const Setting& parent, const char* key)
{
    // A parent that is no group has no keys either; asked directly, it would raise an exception of
    // another type.
    if (!parent.exists(key)) throw libconfig::SettingNotFoundException(parent, key);
    return parent[key];
}

const Setting& Node::getSettings(const Setting& parent) const
{
    return getSettings(parent, getName().c_str());
}

Setting& Node::createSettings(Setting& parent, const char* key)
{
    return findOrAdd(parent, key, Setting::TypeGroup);
}

Setting& Node::createSettings(Setting& parent) const
{
    return createSettings(parent, getName().c_str());
}

Setting& Node::createGroup(Setting& parent, const char* key)
{
    return findOrAdd(parent, key, Setting::TypeGroup);
}

Setting& Node::createArray(Setting& parent, const char* key)
{
    return findOrAdd(parent, key, Setting::TypeArray);
}

Setting& Node::createList(Setting& parent, const char* key)
{
    return findOrAdd(parent, key, Setting::TypeList);
}

void Node::failInvalid(const char* text)
{
    util::Log::errorf("THERMO", "%s\n", text);
    throw Exception(codes::invalidState, text);
}

} // namespace thermo::input
