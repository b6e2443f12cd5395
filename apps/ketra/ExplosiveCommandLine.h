#pragma once

#include "ExplosiveCommand.h"

namespace CLI {
class App;
}

namespace host {

/// The command "explosive", and where its words go.
class ExplosiveCommandLine
{
public:
    explicit ExplosiveCommandLine(CLI::App& parent);
    ExplosiveCommandLine(const ExplosiveCommandLine&) = delete;
    ExplosiveCommandLine& operator=(const ExplosiveCommandLine&) = delete;

    bool isCalled() const;
    ExitCode execute() const { return explode(options); }

private:
    void addVessel();
    void addProducts();

    CLI::App* command; // belongs to the parent
    ExplosiveOptions options;
};

} // namespace host
