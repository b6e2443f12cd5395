#include <ketra/thermo/input/OptionalNode.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

namespace thermo::input {

void OptionalNode::failAbsent(const char* what)
{
    util::Log::errorf("THERMO", "Could not obtain %s: NULL pointer\n", what);
    failAbsent();
}

void OptionalNode::failAbsentUnit(const char* what)
{
    failAbsent((std::string(what) + " unit").c_str());
}

void OptionalNode::failAbsent() { throw Exception(codes::nullPointer); }

} // namespace thermo::input
