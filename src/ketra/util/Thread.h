#pragma once

#include <ketra/util/Runnable.h>

#include <memory>
#include <string>

namespace util {

/// A runnable object with a thread of its own: start() runs its run() there.
///
/// The object must outlive the run. Since run() works on members of the subclass, a subclass that
/// may be destroyed during a run calls wait() at the beginning of its destructor.
class KETRA_API Thread : public Runnable
{
public:
    /// \param waits whether start() and restart() wait for a run that is still going on;
    ///              otherwise they fail
    /// \param stack stack of the thread, bytes; 0 stands for the platform's default
    Thread(bool waits, unsigned int stack);
    ~Thread() override;
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    /// Runs run() on a new thread.
    /// \throws runtime::Exception 0 if a run is going on and the thread is not patient, or if the
    ///         platform gives no thread
    void start();
    /// Runs run() again on a new thread after it has ended; otherwise as start().
    void restart();
    /// Waits for the end of the run, if there is one, and throws anew what run() has thrown.
    void join();
    /// Waits for the end of the run and drops what it has thrown.
    void wait() noexcept;
    bool isRunning() const;

    /// The work; does nothing by itself.
    void run() override;
    /// Called on the thread after run(), also if run() has thrown; does nothing by itself.
    virtual void cleanup();

    const std::string& getName() const { return name; }
    void setName(const std::string& newName) { name = newName; }

protected:
    /// What the thread does: run(), then cleanup().
    virtual void _run();

private:
    struct State;
    static void* enter(void* thread);

    std::unique_ptr<State> state;
    std::string name;
    bool patient;
    unsigned int stackSize; // bytes, 0: default
};

} // namespace util
