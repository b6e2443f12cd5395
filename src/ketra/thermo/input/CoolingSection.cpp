#include <ketra/thermo/input/CoolingSection.h>

namespace thermo::input {

void CoolingSection::setWallMaterialName(const std::string& material)
{
    clear(lambda);
    wallMaterial.set(material);
}

void CoolingSection::setLambda(double conductivity, ThermalConductivity::UNITS unit, bool keepUnit)
{
    clear(wallMaterial);
    lambda.set(conductivity, unit, keepUnit);
}

void CoolingSection::read(const libconfig::Setting& parent)
{
    Section::read(parent);
    if (!isWallMaterialNameSet() && !isLambdaSet()) lambda.create();
}

void CoolingSection::fields(Fields& walk)
{
    walk.each(location, length, h, id);
    walk.oneOf(wallMaterial, lambda);
    walk.each(insLambda, insH);
}

} // namespace thermo::input
