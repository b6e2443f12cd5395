#pragma once

#include "BombCommand.h"

namespace CLI {
class App;
}

namespace host {

/// The command "bomb", and where its words go.
class BombCommandLine
{
public:
    explicit BombCommandLine(CLI::App& parent);
    BombCommandLine(const BombCommandLine&) = delete;
    BombCommandLine& operator=(const BombCommandLine&) = delete;

    bool isCalled() const;
    ExitCode execute() const { return burnInVessel(options); }

private:
    CLI::App* command; // belongs to the parent
    BombOptions options;
};

} // namespace host
