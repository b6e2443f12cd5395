#pragma once

#include <ketra/thermo/input/ConvectiveCooling.h>

namespace thermo::input {

/// A jacket whose coolant flows through one slot around the whole wall.
class KETRA_API SlotJacketDesign : public ConvectiveCooling
{
public:
    SlotJacketDesign() : ConvectiveCooling("slotJacketDesign") {}

    /// Height of the slot; in m if \p si, else as stated.
    double getHc(bool si) const { return hc.valueFor(si); }
    double getHc(Length::UNITS unit) const { return hc.get(unit); }
    Length::UNITS getHcUnit(bool si) const { return hc.unitFor(si); }
    void setHc(double height, Length::UNITS u, bool keepUnit) { hc.set(height, u, keepUnit); }

protected:
    void fields(Fields& walk) override;

private:
    Length hc{"height", 3.0, Length::MM};
};

} // namespace thermo::input
