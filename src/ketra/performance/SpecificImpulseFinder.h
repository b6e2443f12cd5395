#pragma once

#include <ketra/util/Thread.h>

#include <memory>

namespace thermo::input {
class ConfigFile;
} // namespace thermo::input

namespace performance {

class TheoreticalPerformance;

/// The effective vacuum specific impulse of a document's engine as a function of the oxidizer
/// excess coefficient: one point of a search.
///
/// The finder has a document and a performance of its own, so that several of them can work at the
/// same time: on the calling thread with `run(alpha)`, or each on its own thread with
/// `start(alpha)`, whose end `join()` waits for. Flow separation is left out of account; a point
/// that has no solution counts as one without impulse.
class KETRA_API SpecificImpulseFinder : public util::Thread
{
public:
    /// Takes ownership of \p document, also if the constructor throws, and switches its flow
    /// separation off.
    /// \throws thermo::Exception 4 for a species that the database does not know; 0 for no document
    explicit SpecificImpulseFinder(thermo::input::ConfigFile* document);
    /// Waits for a run that is going on.
    ~SpecificImpulseFinder() override;

    /// Solves at the oxidizer excess coefficient that was set; `isInvalid()` afterwards if there is
    /// no solution. Exceptions of other families than `thermo::Exception` pass.
    void run() override;
    /// Sets the oxidizer excess coefficient and solves on the calling thread.
    void run(double alpha);
    /// The same on a thread of the finder's own.
    /// \throws runtime::Exception 0 if a run is going on
    void start(double alpha);
    /// The same again, after a run that has ended.
    /// \throws runtime::Exception 0 if a run is going on
    void restart(double alpha);
    using util::Thread::restart;
    using util::Thread::start;

    /// Oxidizer excess coefficient of the next run. A premixed charge has none: that is logged as
    /// an error, and the next run is the same case again.
    void setAlpha(double alpha);

    /// Effective vacuum specific impulse of the last run, m/s: the ideal one times the efficiency
    /// of chamber and nozzle, 1 where the correlations give none. 0 without a solved nozzle exit.
    double getIs_v() const;

    /// The last run has failed.
    bool isInvalid() const { return invalid; }
    bool isValid() const { return !invalid; }

    /// Multiplier of the solver's own tolerances; the sign is dropped.
    double getRelativeTolerance() const;
    void setRelativeTolerance(double multiplier);

    /// Those of `TheoreticalPerformance`, for the engine of the finder.
    bool isPersistent() const;
    void setPersistent(bool persistent);
    bool isWarmStart() const;
    void setWarmStart(bool warmStart);

    /// Deletes performance and document; nothing can be run or set afterwards.
    void clear();

private:
    TheoreticalPerformance& requirePerformance() const;
    void requireIdle() const;

    bool invalid = false;
    std::unique_ptr<thermo::input::ConfigFile> data;
    std::unique_ptr<TheoreticalPerformance> performance; // refers to the document
};

} // namespace performance
