#include "NewDocument.h"

namespace host {

const char* const smallDocument =
    R"cfg(# A rocket engine. Lines that begin with # are comments. Real numbers need a point: 7.0.
#
#   ketra check FILE      what is wrong with the document
#   ketra run FILE        the report
#   ketra new --full      all that a document can state

version = 1.2;
name = "LOX/LH2 engine";
info = "7 MPa, area ratio 15";

combustionChamberConditions:
{
    # "Pa", "MPa", "bar", "atm", "psia", "kg/cm2" ...
    pressure: { value = 7.0; unit = "MPa"; };
};

nozzleFlow:
{
    # Where the nozzle ends.
    nozzleExitConditions: { areaRatio = 15.0; };

    # What the surroundings are; without them the report is that of a vacuum.
    ambientConditions: { pressure: { value = 1.0; unit = "atm"; }; };
};

propellant:
{
    components:
    {
        # Mass of oxidizer over mass of fuel. { value = 0.75; unit = "alpha"; } is the excess
        # coefficient, { unit = "optimal"; } the ratio of the highest specific impulse.
        ratio: { value = 6.0; unit = "O/F"; };

        # "ketra species" lists the names. A temperature that is not stated is 298.15 K, or the
        # species' own; the mass fractions of a side add up to 1.
        oxidizer = (
            { name = "O2(L)"; massFraction = 1.0; T: { value = 90.17; unit = "K"; }; }
        );
        fuel = (
            { name = "H2(L)"; massFraction = 1.0; T: { value = 20.27; unit = "K"; }; }
        );
    };
};
)cfg";

const char* const fullDocument =
    R"cfg(# All that a document can state. Real numbers need a point: 7.0. A quantity is a group
# { value, unit }. What is commented out is a choice in place of what stands beside it.

version = 1.2;
name = "LOX/LH2 engine";
info = "every section of the format";

generalOptions:
{
    multiphase = true;      # with condensed products
    ions = true;            # with ions among the products
    flowSeparation = true;  # an over-expanded flow leaves the wall
};

combustionChamberConditions:
{
    # "Pa", "MPa", "bar", "atm", "psia", "kg/cm2" ...
    pressure: { value = 7.0; unit = "MPa"; };
};

nozzleFlow:
{
    calculateNozzleFlow = true;  # false: the chamber alone

    # Behind this section the composition stays as it is.
    # freezingConditions:
    # {
    #     calculate = true;
    #     expansionRatio = 4.0;  # its area ratio
    #     pressure: { value = 0.3; unit = "MPa"; };
    #     pressureRatio = 20.0;  # chamber pressure over its pressure
    # };

    # A chamber of finite area; without this group the gas rests in the chamber.
    nozzleInletConditions:
    {
        contractionAreaRatio = 3.0;  # chamber over throat
        # massFlux: { value = 1000.0; unit = "kg/(m2-s)"; };
    };

    nozzleExitConditions:
    {
        areaRatio = 40.0;
        supersonic = true;  # which of the two sections of that area ratio
        # pressureRatio = 500.0;
        # pressure: { value = 0.014; unit = "MPa"; };
    };

    # Losses of a real engine. What is not stated is estimated, but for the cycle.
    efficiencies:
    {
        apply = true;
        cycle = 0.98;
        reaction = 0.98;
        nozzle = 0.97;
        nozzleLength = 80.0;     # per cent of that of a cone of 15 degrees
        nozzleHalfAngle = 15.0;  # of a cone, degrees
    };

    ambientConditions:
    {
        pressure: { value = 1.0; unit = "atm"; };
        # minPressure: { value = 0.0; unit = "atm"; };
        # maxPressure: { value = 1.0; unit = "atm"; };
        calculateDeliveredPerformance = true;
    };

    # Mass flow over that of the design.
    throttlingConditions:
    {
        flowrate = 1.0;
        # minFlowrate = 0.5;
        # maxFlowrate = 1.0;
        calculateDeliveredPerformance = true;
    };

    # Further sections of the nozzle, each stated as the exit is.
    nozzleStations =
    (
        { stationConditions: { areaRatio = 10.0; supersonic = true; }; }
    );
};

propellant:
{
    components:
    {
        ratio: { value = 6.0; unit = "O/F"; };  # or "alpha"; "optimal" needs no value
        oxidizer =
        (
            {
                name = "O2(L)";
                massFraction = 1.0;
                T: { value = 90.17; unit = "K"; };
                p: { value = 0.1; unit = "MPa"; };
            }
        );
        fuel =
        (
            {
                name = "H2(L)";
                massFraction = 1.0;
                T: { value = 20.27; unit = "K"; };
                p: { value = 0.1; unit = "MPa"; };
            }
        );
    };
    # mixture: { species = ( { name = "N2H4(L)"; massFraction = 1.0; } ); };
};

# From here on the document keeps what it is told; "ketra run" calculates nothing of it.

engineSize:
{
    thrust: { value = 100000.0; unit = "N"; };
    ambientConditions: { value = 1.0; unit = "atm"; };  # at which the thrust is meant
    # flowrate: { value = 25.0; unit = "kg/s"; };
    # throatDiameter: { value = 0.1; unit = "m"; };
    chambersNo = 1;

    chamberGeometry:
    {
        length: { value = 1.0; unit = "m"; };
        characteristicLength = true;  # the length is volume over throat area
        contractionAngle = 30.0;      # degrees
        R1_to_Rt_ratio = 1.5;         # radii of the contour over that of the throat
        Rn_to_Rt_ratio = 0.382;
        R2_to_R2max_ratio = 0.5;

        TOC = false;  # a contour of highest thrust
        Tw_to_T0 = 0.3;
        TOC_applyEfficiency = false;
        # TOC_L = false;  # the same, of a given length
        # Le = 5.0;       # over the throat diameter
        # initialAngle = 30.0;  # a parabola, degrees
        # exitAngle = 8.0;
        # Le_to_Lc15 = 0.8;
    };
};

chamberCooling:
{
    heatTransfer:
    {
        relationsType = "Ievlev";  # or "Bartz", "combined"
        applyBLC = false;
        numberOfStations = 50;
        radiationHeatTransfer: { hotSideWallSurfaceEmissivity = 0.8; };
        wallLayerHeight = 0.05;
    };

    chamberCoolingSections =
    (
        {
            slotJacketDesign:
            {
                id = "slot";
                location: { value = 0.0; unit = "m"; };
                length: { value = 0.1; unit = "m"; };
                wallThickness: { value = 1.0; unit = "mm"; };
                wallMaterial = "copper";
                # wallConductivity: { value = 360.0; unit = "W/(m K)"; };
                thermalInsulationConductivity: { value = 3.0; unit = "W/(m K)"; };
                thermalInsulationThickness: { value = 0.2; unit = "mm"; };
                coolant = ( { name = "H2(L)"; massFraction = 1.0; } );
                # coolantFrom = "channel";  # the id of another section
                flowrate = 1.0;
                oppositeFlow = false;
                twoPass = false;
                height: { value = 3.0; unit = "mm"; };
            };
        },
        {
            channelJacketDesign:
            {
                id = "channel";
                location: { value = 0.1; unit = "m"; };
                length: { value = 0.1; unit = "m"; };
                wallThickness: { value = 1.0; unit = "mm"; };
                wallConductivity: { value = 360.0; unit = "W/(m K)"; };
                coolantFrom = "slot";
                flowrate = 1.0;
                oppositeFlow = false;
                twoPass = false;
                height1: { value = 4.0; unit = "mm"; };
                height_min: { value = 4.0; unit = "mm"; };
                height2: { value = 4.0; unit = "mm"; };
                gamma: { value = 90.0; unit = "deg"; };
                a1: { value = 2.0; unit = "mm"; };
                amin: { value = 1.0; unit = "mm"; };
                a2: { value = 2.0; unit = "mm"; };
                b1: { value = 1.0; unit = "mm"; };
                bmin: { value = 1.0; unit = "mm"; };
                b2: { value = 1.0; unit = "mm"; };
                # n = 100;  # number of channels, in place of their b
                ribsMaterial = "copper";
                # ribsConductivity: { value = 360.0; unit = "W/(m K)"; };
            };
        },
        {
            tubularJacketDesign:
            {
                id = "tubes";
                location: { value = 0.2; unit = "m"; };
                length: { value = 0.1; unit = "m"; };
                wallThickness: { value = 1.0; unit = "mm"; };
                wallMaterial = "copper";
                coolantFrom = "channel";
                flowrate = 1.0;
                oppositeFlow = false;
                twoPass = false;
                d: { value = 10.0; unit = "mm"; };
                dmin: { value = 10.0; unit = "mm"; };
                d2: { value = 10.0; unit = "mm"; };
                n = 100;
                helix = false;
            };
        },
        {
            radiationCooling:
            {
                id = "skirt";
                location: { value = 0.3; unit = "m"; };
                length: { value = 0.1; unit = "m"; };
                wallThickness: { value = 1.0; unit = "mm"; };
                wallMaterial = "copper";
                coldSideWallSurfaceEmissivity = 0.8;
            };
        }
    );

    filmSlots =
    (
        {
            location: { value = 0.0; unit = "m"; };
            flowrate = 0.0;
            coolant = ( { name = "H2(L)"; massFraction = 1.0; } );
        }
    );
};

propelantFeedSystem:  # one l: the format's own spelling
{
    turbopumpFeedSystem:
    {
        cycle = "gas generator";  # "staged combustion", "full-flow staged combustion", "expander"

        oxidizerFeedSystem:
        {
            inletPressure: { value = 0.3; unit = "MPa"; };
            inletVelocity: { value = 5.0; unit = "m/s"; };
            pumpEfficiency = 0.7;
            valvePressureDrop: { value = 0.0; unit = "MPa"; };
            # valveResistanceCoefficient = 0.7;  # is read from pumpEfficiency
            coolingPressureDrop: { value = 0.0; unit = "MPa"; };
            coolingTemperatureRise: { value = 0.0; unit = "K"; };
            injectorPressureDrop: { value = 0.0; unit = "MPa"; };
            injectorFlowCoefficient = 0.0;

            boosterPump:
            {
                inletPressure: { value = 0.3; unit = "MPa"; };
                dischargePressure: { value = 1.5; unit = "MPa"; };
                pumpEfficiency = 0.7;
                hydraulicTurbine = true;
                turbinePressureRatio = 5.0;
                turbineEfficiency = 0.7;
                rotationalSpeed: { value = 0.0; unit = "rad/s"; };
            };

            branches =
            (
                {
                    name = "branch";
                    flowrate = 0.0;
                    dischargePressure: { value = 0.0; unit = "MPa"; };
                    areaRatio = 0.0;
                    pumpEfficiency = 0.7;
                    valvePressureDrop: { value = 0.0; unit = "MPa"; };
                    # valveResistanceCoefficient = 0.7;  # is read from pumpEfficiency
                    coolingPressureDrop: { value = 0.0; unit = "MPa"; };
                    coolingTemperatureRise: { value = 0.0; unit = "K"; };
                    fixedPressureDrop: { value = 0.0; unit = "MPa"; };
                    fixedPressureRatio = 0.0;
                    connectTo = "";
                    dischargeTo = "";
                }
            );
        };

        fuelFeedSystem:  # the same keys
        {
            inletPressure: { value = 0.3; unit = "MPa"; };
            inletVelocity: { value = 5.0; unit = "m/s"; };
        };

        gasGenerators =
        (
            {
                ggType = "fuel-rich";  # or "oxidizer-rich"
                pressure: { value = 5.0; unit = "MPa"; };
                sigma = 0.9;
                maxTemperature: { value = 700.0; unit = "K"; };
                oxidizerFeedSystem:  # the keys of a branch, and
                {
                    name = "oxidizer";
                    pipeDp: { value = 0.0; unit = "MPa"; };
                    injectorPressureDrop: { value = 0.0; unit = "MPa"; };
                    injectorFlowCoefficient = 0.0;
                };
                fuelFeedSystem: { name = "fuel"; };
            }
        );

        turbines =
        (
            {
                ggType = "serial";  # "serial,ox-fuel", "serial,fuel-ox", "parallel"
                turbinePressureRatio = 2.0;
                turbineEfficiency = 0.7;
                rotationalSpeed: { value = 0.0; unit = "rad/s"; };
            }
        );
    };
    # gasPressurizedFeedSystem:
    # {
    #     type = "by stored gas";  # "by vaporized propellant", "by chemically generated gas"
    #     oxidizerFeedSystem: { inletPressure: { value = 0.3; unit = "MPa"; }; };
    #     fuelFeedSystem: { inletPressure: { value = 0.3; unit = "MPa"; }; };
    # };
    estimateDryMass = false;
};
)cfg";

} // namespace host
