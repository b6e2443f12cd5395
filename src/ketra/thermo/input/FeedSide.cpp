#include <ketra/thermo/input/FeedSide.h>

#include <ketra/thermo/input/detail/OwnedMembers.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

void FeedSide::reset()
{
    parameters.reset();
    boostPump.reset();
    branches.clear();
}

void FeedSide::read(const Setting& parent)
{
    const char* key = getName().c_str();
    if (!parent.exists(key)) return;
    const Setting& group = parent[key];
    detail::readOwned(group, parameters, key);
    branches.read(group);
    if (feed == Feed::Pump && group.exists("boosterPump")) detail::readOwned(group, boostPump);
}

void FeedSide::write(Setting& parent, bool all)
{
    if (!parameters.isSet()) return;
    Setting& group = createGroup(parent, getName().c_str());
    detail::writeOwned(group, parameters, all);
    detail::writeOwned(group, boostPump, all);
    branches.write(group, all);
}

} // namespace thermo::input
