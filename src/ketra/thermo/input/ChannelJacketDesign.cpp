#include <ketra/thermo/input/ChannelJacketDesign.h>

namespace thermo::input {

void ChannelJacketDesign::setN(int number)
{
    clear(b1, bmin, b2);
    n.set(number);
}

void ChannelJacketDesign::setB1(double b, Length::UNITS u, bool keepUnit)
{
    clear(n);
    b1.set(b, u, keepUnit);
}

void ChannelJacketDesign::setBmin(double b, Length::UNITS u, bool keepUnit)
{
    clear(n);
    bmin.set(b, u, keepUnit);
}

void ChannelJacketDesign::setB2(double b, Length::UNITS u, bool keepUnit)
{
    clear(n);
    b2.set(b, u, keepUnit);
}

void ChannelJacketDesign::setRibsMaterialName(const std::string& material)
{
    clear(ribsLambda);
    ribsMaterial.set(material);
}

void ChannelJacketDesign::setRibsLambda(double conductivity, ThermalConductivity::UNITS u,
                                        bool keepUnit)
{
    clear(ribsMaterial);
    ribsLambda.set(conductivity, u, keepUnit);
}

void ChannelJacketDesign::read(const libconfig::Setting& parent)
{
    ConvectiveCooling::read(parent);
    if (!isRibsMaterialNameSet() && !isRibsLambdaSet()) ribsLambda.create();
}

void ChannelJacketDesign::fields(Fields& walk)
{
    ConvectiveCooling::fields(walk);
    walk.each(hc1, hcmin, hc2, gamma, a1, amin, a2);
    if (!walk.field(n)) walk.each(b1, bmin, b2);
    walk.oneOf(ribsMaterial, ribsLambda);
}

} // namespace thermo::input
