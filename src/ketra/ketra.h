#pragma once

// Everything that a host may use, lower layers first. Each header also stands alone.

#include <ketra/runtime/Exception.h>

#include <ketra/util/BufferLogger.h>
#include <ketra/util/ConsoleLogger.h>
#include <ketra/util/FileLogger.h>
#include <ketra/util/FileLoggerRunnable.h>
#include <ketra/util/Lent.h>
#include <ketra/util/Log.h>
#include <ketra/util/Logger.h>
#include <ketra/util/NetworkException.h>
#include <ketra/util/Runnable.h>
#include <ketra/util/String.h>
#include <ketra/util/System.h>
#include <ketra/util/Thread.h>
#include <ketra/util/concurrent/CriticalSection.h>
#include <ketra/util/concurrent/Mutex.h>
#include <ketra/util/concurrent/Outcome.h>
#include <ketra/util/concurrent/TaskGroup.h>
#include <ketra/util/concurrent/parallelFor.h>

#include <ketra/io/File.h>

#include <ketra/math/equation/Exception.h>
#include <ketra/math/equation/Function.h>
#include <ketra/math/equation/NewtonsRootFinder.h>
#include <ketra/math/equation/RootFinder.h>
#include <ketra/math/equation/SecantRootFinder.h>
#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/math/matrix/ColumnVector.h>
#include <ketra/math/matrix/Exception.h>
#include <ketra/math/matrix/LinearSystem.h>
#include <ketra/math/matrix/Matrix.h>
#include <ketra/math/matrix/RowVector.h>

#include <ketra/thermo/Atom.h>
#include <ketra/thermo/ChemicalElement.h>
#include <ketra/thermo/ChemicalFormula.h>
#include <ketra/thermo/Constants.h>
#include <ketra/thermo/Database.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/GasMixture.h>
#include <ketra/thermo/Loader.h>
#include <ketra/thermo/Mixture.h>
#include <ketra/thermo/Polynomial.h>
#include <ketra/thermo/Propellant.h>
#include <ketra/thermo/Species.h>
#include <ketra/thermo/StandardState.h>
#include <ketra/thermo/_Species.h>
#include <ketra/thermo/nasa9/NASA9Loader.h>
#include <ketra/thermo/nasa9/NASA9Polynomial.h>
#include <ketra/thermo/nasa9/NASA9Species.h>
#include <ketra/thermo/properties/PropertiesLoader.h>
#include <ketra/thermo/properties/TransportProperties.h>
#include <ketra/thermo/properties/TransportPropertiesCoefficients.h>
#include <ketra/thermo/properties/TransportPropertiesLoader.h>

#include <ketra/thermo/input/AmbientConditions.h>
#include <ketra/thermo/input/Angle.h>
#include <ketra/thermo/input/CombustionChamberConditions.h>
#include <ketra/thermo/input/Component.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/DataValue.h>
#include <ketra/thermo/input/EfficiencyFactors.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/Force.h>
#include <ketra/thermo/input/FreezingConditions.h>
#include <ketra/thermo/input/GeneralOptions.h>
#include <ketra/thermo/input/Length.h>
#include <ketra/thermo/input/List.h>
#include <ketra/thermo/input/MassFlowRate.h>
#include <ketra/thermo/input/MassFlux.h>
#include <ketra/thermo/input/Node.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>
#include <ketra/thermo/input/NozzleInletConditions.h>
#include <ketra/thermo/input/NozzleSectionConditions.h>
#include <ketra/thermo/input/Optional.h>
#include <ketra/thermo/input/OptionalNode.h>
#include <ketra/thermo/input/Pressure.h>
#include <ketra/thermo/input/Propellant.h>
#include <ketra/thermo/input/Ratio.h>
#include <ketra/thermo/input/RotationalSpeed.h>
#include <ketra/thermo/input/Section.h>
#include <ketra/thermo/input/Temperature.h>
#include <ketra/thermo/input/ThermalConductivity.h>
#include <ketra/thermo/input/ThrottlingConditions.h>
#include <ketra/thermo/input/UnitNode.h>
#include <ketra/thermo/input/UnitValue.h>
#include <ketra/thermo/input/Velocity.h>
#include <ketra/thermo/input/VolumetricMassDensity.h>

#include <ketra/gasdynamics/PI_Function.h>
#include <ketra/gasdynamics/Q_Function.h>
#include <ketra/gasdynamics/StandardAtmosphere.h>
#include <ketra/gasdynamics/gasdynamics.h>

#include <ketra/reaction/Derivatives.h>
#include <ketra/reaction/Equilibrium.h>
#include <ketra/reaction/Product.h>
#include <ketra/reaction/QuasiProduct.h>
#include <ketra/reaction/ReactingMixture.h>
#include <ketra/reaction/TransitionProduct.h>

#include <ketra/performance/SpecificImpulseFinder.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/performance/ThrottlingPerformance.h>
#include <ketra/performance/efficiency/CorrectionFactors.h>
#include <ketra/performance/equilibrium/Chamber.h>
#include <ketra/performance/equilibrium/Combustor.h>
#include <ketra/performance/equilibrium/CombustorFunction.h>
#include <ketra/performance/equilibrium/GasGenerator.h>
#include <ketra/performance/equilibrium/NozzleSectionConditions.h>
#include <ketra/performance/frozen/Chamber.h>
#include <ketra/performance/frozen/NozzleSectionConditions.h>

#include <ketra/api/ketra.h>
