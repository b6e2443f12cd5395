#include <ketra/thermo/input/ChamberGeometry.h>

namespace thermo::input {

void ChamberGeometry::setTOC(bool is)
{
    input::clear(initialAngle, exitAngle, TOC_L, Le);
    TOC.set(is);
}

void ChamberGeometry::setTOC_L(bool is)
{
    input::clear(initialAngle, exitAngle, TOC);
    TOC_L.set(is);
}

void ChamberGeometry::clear()
{
    length.set(1.0, Length::M, /*keepUnit=*/false);
    contractionAngle.set(contractionAngle.getDefault());
    R1ToRt.set(R1ToRt.getDefault());
    RnToRt.set(RnToRt.getDefault());
    R2ToR2max.set(R2ToR2max.getDefault());
    input::clear(TOC, TOC_L, initialAngle, exitAngle, LeToLc15, TwToT0, Le, applyEfficiency);
}

// What a document holds is read, whichever contour it belongs to; one contour is written.
void ChamberGeometry::fields(Fields& walk)
{
    walk.each(length, characteristicLength, contractionAngle, R1ToRt, RnToRt, R2ToR2max);
    if (walk.isReading())
        walk.each(TOC, TOC_L, initialAngle, exitAngle, LeToLc15, TwToT0, Le, applyEfficiency);
    else if (TOC.isSet())
        walk.each(TOC, TwToT0, applyEfficiency);
    else if (TOC_L.isSet())
        walk.each(TOC_L, Le, TwToT0, applyEfficiency);
    else
        walk.each(initialAngle, exitAngle, LeToLc15);
}

} // namespace thermo::input
