#pragma once

#include <ketra/thermo/input/BoostPumpParameters.h>
#include <ketra/thermo/input/BranchParameters.h>
#include <ketra/thermo/input/ChamberFeedSubsystemParameters.h>
#include <ketra/thermo/input/NodeList.h>
#include <ketra/thermo/input/Owned.h>

namespace thermo::input {

/// One side of a feed system, the oxidizer's or the fuel's: the group that holds the parameters of
/// the feed, in a pump-fed system the boost pump, and the branches.
///
/// The document has a side only if it has its parameters; without them nothing of it is written.
class KETRA_API FeedSide : public Node
{
public:
    enum class Feed { Gas, Pump };

    FeedSide(const char* key, Feed kind) : Node(key), feed(kind) {}

    /// Makes everything absent.
    void reset();

    /// A side that the document does not have is passed over; branches are appended.
    /// \throws Exception 4 for an unknown unit
    void read(const libconfig::Setting& parent) override;
    void write(libconfig::Setting& parent, bool all) override;

    Owned<ChamberFeedSubsystemParameters> parameters;
    Owned<BoostPumpParameters> boostPump; // read from a pump-fed system only
    NodeList<BranchParameters> branches{"branches"};

private:
    Feed feed;
};

} // namespace thermo::input
