#include <ketra/thermo/input/ChamberCooling.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

#include <compare>
#include <string>

using libconfig::Setting;

namespace thermo::input {

namespace {

constexpr const char* sectionsKey = "chamberCoolingSections";

// What a host sets can be no number, which has to have a place in the order too.
constexpr auto byLocation = [](const auto& a, const auto& b) {
    return std::weak_order(a.getLocation(Length::M), b.getLocation(Length::M)) < 0;
};

std::string contentOf(const Setting& element)
{
    if (!element.isGroup()) return "no group";
    std::string keys;
    for (int i = 0; i < element.getLength(); ++i)
        keys.append(i == 0 ? "" : ", ").append(element[i].getName());
    return keys.empty() ? "an empty group" : keys;
}

[[noreturn]] void failUnknownDesign(const Setting& element)
{
    util::Log::errorf("THERMO", "Could not obtain design of chamber cooling section: %s\n",
                      contentOf(element).c_str());
    throw Exception(codes::notFound);
}

} // namespace

void ChamberCooling::reset()
{
    clearSectionsList();
    clearFilmSlotsList();
}

void ChamberCooling::sortSections()
{
    sections.sort(byLocation);
    filmSlots.sort(byLocation);
}

void ChamberCooling::validate()
{
    heatTransfer.validate();
    for (unsigned int i = 0; i < sections.size(); ++i) sections.at(i).validate();
    filmSlots.validate();
}

// Each element of the list is a group that holds the section under the key of its design.
void ChamberCooling::read(const Setting& parent)
{
    const Setting& group = getSettings(parent);
    heatTransfer.read(group);
    if (group.exists(sectionsKey) && group[sectionsKey].isList()) {
        const Setting& list = group[sectionsKey];
        for (int i = 0; i < list.getLength(); ++i)
            if (!readSection<TubularJacketDesign>(list[i]) &&
                !readSection<ChannelJacketDesign>(list[i]) &&
                !readSection<SlotJacketDesign>(list[i]) && !readSection<RadiationCooling>(list[i]))
                failUnknownDesign(list[i]);
    }
    filmSlots.read(group);
}

template <class Design> bool ChamberCooling::readSection(const Setting& element)
{
    auto section = std::make_unique<Design>();
    if (!element.exists(section->getName())) return false;
    section->read(element);
    sections.add(std::move(section));
    return true;
}

void ChamberCooling::write(Setting& parent, bool all)
{
    Setting& group = createSettings(parent);
    heatTransfer.write(group, all);
    sortSections();
    Setting& list = createList(group, sectionsKey);
    for (unsigned int i = 0; i < sections.size(); ++i)
        sections.at(i).write(list.add(Setting::TypeGroup), all);
    filmSlots.write(group, all);
}

} // namespace thermo::input
