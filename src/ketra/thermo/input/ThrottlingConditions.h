#pragma once

#include <ketra/thermo/input/OptionalValue.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// How far the engine is throttled: one flow rate, or a range of flow rates. They are plain numbers
/// relative to the flow rate of the unthrottled engine.
class KETRA_API ThrottlingConditions : public Section
{
public:
    ThrottlingConditions() : Section("throttlingConditions") {}

    /// The one flow rate.
    bool isFixedFlowrateSet() const { return fixedFlowrate.isSet(); }
    double getFixedFlowrate() const { return fixedFlowrate.get(); }
    /// Drops the range.
    void setFixedFlowrate(double rate);
    void deleteFixedFlowrate() { fixedFlowrate.reset(); }

    /// Both ends of the range are set.
    bool isRangeFlowrateSet() const { return minFlowrate.isSet() && maxFlowrate.isSet(); }
    double getRangeFlowrateMin() const { return minFlowrate.get(); }
    double getRangeFlowrateMax() const { return maxFlowrate.get(); }
    /// Both drop the one flow rate.
    void setRangeFlowrateMin(double rate);
    void setRangeFlowrateMax(double rate);
    void deleteRangeFlowrate() { clear(minFlowrate, maxFlowrate); }

    /// The delivered performance is calculated at these flow rates.
    bool isDeliveredPerformance() const { return deliveredPerformance.get(); }
    void setDeliveredPerformance(bool calculate) { deliveredPerformance.set(calculate); }

    /// \throws Exception 7 if neither a flow rate nor a whole range is set
    void validate() override;

private:
    void fields(Fields& walk) override;

    OptionalValue<double> fixedFlowrate{"flowrate", 0.0, "flow rate for throttling conditions"};
    OptionalValue<double> minFlowrate{"minFlowrate", 0.0,
                                      "minimum flow rate for throttling conditions"};
    OptionalValue<double> maxFlowrate{"maxFlowrate", 0.0,
                                      "maximum flow rate for throttling conditions"};
    DataValue<bool> deliveredPerformance{"calculateDeliveredPerformance", true};
};

} // namespace thermo::input
