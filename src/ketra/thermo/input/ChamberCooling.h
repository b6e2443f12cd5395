#pragma once

#include <ketra/thermo/input/ChannelJacketDesign.h>
#include <ketra/thermo/input/FilmSlot.h>
#include <ketra/thermo/input/HeatTransferParameters.h>
#include <ketra/thermo/input/RadiationCooling.h>
#include <ketra/thermo/input/SlotJacketDesign.h>
#include <ketra/thermo/input/TubularJacketDesign.h>

namespace thermo::input {

/// How the chamber wall is cooled: the model of the heat transfer, the sections along the chamber,
/// each cooled in one way, and the slots for films of coolant.
///
/// References to sections and slots are good until their list is cleared.
class KETRA_API ChamberCooling : public Node
{
public:
    ChamberCooling() : Node("chamberCooling") {}

    HeatTransferParameters& getHeatTransferParameters() { return heatTransfer; }
    const HeatTransferParameters& getHeatTransferParameters() const { return heatTransfer; }

    /// The sections. Their class says how they are cooled.
    unsigned int getSectionListSize() const { return sections.size(); }
    /// \throws std::out_of_range
    CoolingSection& getSection(unsigned int i) { return sections.at(i); }
    const CoolingSection& getSection(unsigned int i) const { return sections.at(i); }

    /// The slots.
    unsigned int getFilmSlotsListSize() const { return filmSlots.size(); }
    /// \throws std::out_of_range
    FilmSlot& getFilmSlot(unsigned int i) { return filmSlots.at(i); }
    const FilmSlot& getFilmSlot(unsigned int i) const { return filmSlots.at(i); }

    /// Appends a section at its defaults. \returns it
    RadiationCooling& addRadiationCoolingSection() { return addSection<RadiationCooling>(); }
    SlotJacketDesign& addSlotJacketSection() { return addSection<SlotJacketDesign>(); }
    ChannelJacketDesign& addChannelJacketSection() { return addSection<ChannelJacketDesign>(); }
    TubularJacketDesign& addTubularJacketSection() { return addSection<TubularJacketDesign>(); }
    /// Appends a slot at its defaults. \returns it
    FilmSlot& addFilmSlot() { return filmSlots.add(); }

    void clearSectionsList() { sections.clear(); }
    void clearFilmSlotsList() { filmSlots.clear(); }
    /// Clears both lists; the parameters of the heat transfer stay.
    void reset();
    /// Sections and slots in ascending order of their locations; those of one location keep theirs.
    void sortSections();

    void validate() override;
    /// Sections and slots are appended to what the lists hold already.
    /// \throws libconfig::SettingNotFoundException without the group or its "heatTransfer"
    /// \throws Exception 3 for a section of no known design, 4 for an unknown unit or word
    void read(const libconfig::Setting& parent) override;
    /// Sorts the lists, in memory too, and writes both, also empty ones.
    void write(libconfig::Setting& parent, bool all) override;

private:
    template <class Design> Design& addSection()
    {
        return sections.add(std::make_unique<Design>());
    }
    template <class Design> bool readSection(const libconfig::Setting& element);

    HeatTransferParameters heatTransfer{HeatTransferParameters::IEVLEV};
    List<CoolingSection> sections; // each in a group of its own, under the key of its class
    NodeList<FilmSlot> filmSlots{"filmSlots"};
};

} // namespace thermo::input
