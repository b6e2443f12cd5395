#include <ketra/thermo/input/UnitNode.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

bool UnitNode::readGroup(const Setting& parent, std::string& unitText)
{
    if (!parent.exists(getName())) return false;
    const Setting& group = getSettings(parent);
    value.read(group);
    DataValue<std::string> unit("unit", unitText);
    unit.read(group);
    unitText = unit.get();
    return true;
}

void UnitNode::writeGroup(Setting& parent, bool all, const char* unitText)
{
    Setting& group = createSettings(parent);
    value.write(group, all);
    // The text is default and value in one, so that it is there only if everything is to be.
    DataValue<std::string>("unit", unitText).write(group, all);
}

void UnitNode::failUnknown(const char* what, const char* text)
{
    util::Log::errorf("THERMO", "Could convert string to %s: unknown unit %s\n", what, text);
    throw Exception(codes::unknownWord, "Unknown");
}

} // namespace thermo::input
