#pragma once

#include <ketra/thermo/input/Choice.h>
#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

struct HeatTransferRelations {
    enum TYPE : std::int32_t { IEVLEV, BARTZ, COMBINED };
    static constexpr const char* what = "heat trasfer relations type";
    static constexpr const char* assumed = "Ievlev";
    // clang-format off
    static constexpr Word<TYPE> table[] = {
        {IEVLEV,   {"Ievlev", "ievlev", "Iewlew", "iewlew"}},
        {BARTZ,    {"Bartz", "bartz"}},
        {COMBINED, {"combined", "Combined"}},
    };
    // clang-format on
};

/// How the heat that the flow gives to the chamber wall is found.
class KETRA_API HeatTransferParameters : public Section
{
public:
    using RELATIONS_TYPE = HeatTransferRelations::TYPE;
    using enum HeatTransferRelations::TYPE;

    explicit HeatTransferParameters(RELATIONS_TYPE type)
        : Section("heatTransfer"), relationsType("relationsType", type)
    {
    }

    /// The relations for the convective heat transfer.
    RELATIONS_TYPE getRelationsType() const { return relationsType.get(); }
    void setRelationsType(RELATIONS_TYPE type) { relationsType.set(type); }
    const char* getRawRelationsType() const { return relationsType.getRaw(); }
    /// \throws Exception 4 for an unknown word
    void setRawRelationsType(const char* text) { relationsType.setRaw(text); }
    static const char* relationsTypeToRaw(RELATIONS_TYPE type) { return Relations::toRaw(type); }
    /// Logs a text that it does not know.
    /// \throws Exception 4
    static RELATIONS_TYPE rawToRelationsType(const char* text) { return Relations::fromRaw(text); }

    /// The boundary layer correction is applied.
    bool isApplyBLC() const { return applyBLC.get(); }
    void setApplyBLC(bool apply) { applyBLC.set(apply); }

    /// Number of stations along the wall.
    int getNumberOfStations() const { return numberOfStations.get(); }
    void setNumberOfStations(int n) { numberOfStations.set(n); }

    /// The gas radiates to the wall. A document says so by the presence of a group.
    bool isRadiationHeatTransfer() const { return radiation.isOn; }
    void setRadiationHeatTransfer(bool radiates) { radiation.isOn = radiates; }

    /// Emissivity of the hot side of the wall; in a document only if there is radiation.
    double getWallSurfaceEmissivity() const { return radiation.emissivity.get(); }
    void setWallSurfaceEmissivity(double e) { radiation.emissivity.set(e); }

    /// Relative height of the layer of gas along the wall.
    double getWallLayerHeight() const { return wallLayerHeight.get(); }
    void setWallLayerHeight(double height) { wallLayerHeight.set(height); }

    /// A stated height of exactly 0 is replaced by the default.
    void read(const libconfig::Setting& parent) override;

private:
    using Relations = Choice<HeatTransferRelations>;

    /// The group "radiationHeatTransfer", whose presence is the flag.
    struct Radiation final : Node {
        Radiation() : Node("radiationHeatTransfer") {}
        void read(const libconfig::Setting& parent) override;
        void write(libconfig::Setting& parent, bool all) override;

        bool isOn = true;
        DataValue<double> emissivity{"hotSideWallSurfaceEmissivity", 0.8};
    };

    void fields(Fields& walk) override;

    Relations relationsType;
    DataValue<bool> applyBLC{"applyBLC", false};
    DataValue<int> numberOfStations{"numberOfStations", 50};
    Radiation radiation;
    DataValue<double> wallLayerHeight{"wallLayerHeight", 0.05};
};

} // namespace thermo::input
