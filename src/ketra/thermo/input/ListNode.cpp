#include <ketra/thermo/input/ListNode.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

void ListNode::read(const Setting& parent)
{
    const char* key = getName().c_str();
    if (!parent.exists(key) || !parent[key].isList()) return;
    const Setting& list = parent[key];
    for (int i = 0; i < list.getLength(); ++i) readElement(list[i]);
}

void ListNode::write(Setting& parent, bool all)
{
    Setting& list = createList(parent, getName().c_str());
    for (unsigned int i = 0; i < size(); ++i)
        getElement(i).write(list.add(Setting::TypeGroup), all);
}

void ListNode::failNull(const char* element)
{
    util::Log::errorf("THERMO", "Could not add %s: NULL pointer\n", element);
    throw Exception(codes::nullPointer);
}

} // namespace thermo::input
