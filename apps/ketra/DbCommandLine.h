#pragma once

#include "ExitCode.h"
#include "ExportCommand.h"
#include "ImportCommand.h"
#include "LintCommand.h"
#include "UserCommand.h"

namespace CLI {
class App;
}

namespace host {

/// The commands behind the word "db", and where their words go.
class DbCommandLine
{
public:
    explicit DbCommandLine(CLI::App& parent);
    DbCommandLine(const DbCommandLine&) = delete;
    DbCommandLine& operator=(const DbCommandLine&) = delete;

    bool isCalled() const;
    ExitCode execute() const;

private:
    void addLint();
    void addImport();
    void addExport();
    void addUser();

    CLI::App* db; // the commands belong to the parent
    CLI::App* lint = nullptr;
    CLI::App* importer = nullptr;
    CLI::App* exporter = nullptr;
    CLI::App* add = nullptr;
    CLI::App* remove = nullptr;
    LintOptions lintOptions;
    ImportOptions importOptions;
    ExportOptions exportOptions;
    UserOptions addOptions;
    UserOptions removeOptions;
};

} // namespace host
