#include <ketra/thermo/input/ChoiceNode.h>

#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

namespace thermo::input {

std::string ChoiceNode::readText(const libconfig::Setting& parent, const char* assumed) const
{
    DataValue<std::string> text(getName(), assumed);
    text.read(parent);
    return text.get();
}

void ChoiceNode::writeText(libconfig::Setting& parent, bool all, const char* text) const
{
    DataValue<std::string>(getName(), text).write(parent, all);
}

void ChoiceNode::failUnknown(const char* what, const char* text)
{
    util::Log::errorf("THERMO", "Could convert string to %s: unknown type %s\n", what, text);
    throw Exception(codes::unknownWord, "Unknown");
}

} // namespace thermo::input
