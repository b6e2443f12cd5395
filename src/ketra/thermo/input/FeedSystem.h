#pragma once

#include <ketra/thermo/input/FeedSide.h>
#include <ketra/thermo/input/Section.h>

namespace thermo::input {

/// The two sides that every feed system has. A `set` operation takes ownership, and a null pointer
/// makes the member absent; a reference to a member is good until the member is replaced.
class KETRA_API FeedSystem : public Section
{
public:
    /// How the oxidizer reaches the chamber.
    bool isOxidizerFeedSystem() const { return oxidizer.parameters.isSet(); }
    ChamberFeedSubsystemParameters& getOxidizerFeedSystem()
    {
        return oxidizer.parameters.at("pOxidizerFeedSystem");
    }
    const ChamberFeedSubsystemParameters& getOxidizerFeedSystem() const
    {
        return oxidizer.parameters.at("pOxidizerFeedSystem");
    }
    void setOxidizerFeedSystem(ChamberFeedSubsystemParameters* given)
    {
        oxidizer.parameters.set(given);
    }
    void deleteOxidizerFeedSystem() { oxidizer.parameters.reset(); }

    /// Lines that branch off on the way of the oxidizer. The list owns them; `add` takes ownership.
    /// \throws std::out_of_range for an index beyond the list
    /// \throws Exception 2 when a null pointer is added
    unsigned int getOxidizerBranchesListSize() const { return oxidizer.branches.size(); }
    BranchParameters* getOxidizerBranch(unsigned int i) { return &oxidizer.branches.at(i); }
    const BranchParameters* getOxidizerBranch(unsigned int i) const
    {
        return &oxidizer.branches.at(i);
    }
    void addOxidizerBranch(BranchParameters* branch) { oxidizer.branches.add(branch, "branch"); }

    /// How the fuel reaches the chamber.
    bool isFuelFeedSystem() const { return fuel.parameters.isSet(); }
    ChamberFeedSubsystemParameters& getFuelFeedSystem()
    {
        return fuel.parameters.at("pFuelFeedSystem");
    }
    const ChamberFeedSubsystemParameters& getFuelFeedSystem() const
    {
        return fuel.parameters.at("pFuelFeedSystem");
    }
    void setFuelFeedSystem(ChamberFeedSubsystemParameters* given) { fuel.parameters.set(given); }
    void deleteFuelFeedSystem() { fuel.parameters.reset(); }

    /// Lines that branch off on the way of the fuel. The list owns them; `add` takes ownership.
    /// \throws std::out_of_range for an index beyond the list
    /// \throws Exception 2 when a null pointer is added
    unsigned int getFuelBranchesListSize() const { return fuel.branches.size(); }
    BranchParameters* getFuelBranch(unsigned int i) { return &fuel.branches.at(i); }
    const BranchParameters* getFuelBranch(unsigned int i) const { return &fuel.branches.at(i); }
    void addFuelBranch(BranchParameters* branch) { fuel.branches.add(branch, "branch"); }

protected:
    FeedSystem(const char* key, FeedSide::Feed kind)
        : Section(key), oxidizer("oxidizerFeedSystem", kind), fuel("fuelFeedSystem", kind)
    {
    }

    FeedSide oxidizer;
    FeedSide fuel;
};

} // namespace thermo::input
