// A document from file to report through the flat functions: what a script binding or a program in
// another language needs.
//
// Usage: example_flat DOCUMENT [FOLDER OF THE SPECIES FILES]

#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>
#include <ketra/runtime/Exception.h>

#include <cstdio>
#include <exception>
#include <string>

namespace {

/// \returns whether the problem of the document has a solution
bool runAndPrint(const char* document)
{
    thermo::input::ConfigFile* const config = loadConfig(document);
    performance::TheoreticalPerformance* const performance = run(config);
    if (performance) performance->printResults(0);
    deletePerformance(performance);
    deleteConfig(config);
    return performance != nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: example_flat DOCUMENT [FOLDER]\n");
        return 2;
    }
    const std::string folder = argc > 2 ? argv[2] : "resources";
    bool solved = false;
    createConsoleLog("example"); // the report comes through the log
    try {
        loadThermodynamicsDatabase((folder + "/thermo.inp").c_str(), /*clear=*/true);
        loadPropertiesDatabase((folder + "/properties.inp").c_str());
        solved = runAndPrint(argv[1]);
    } catch (const runtime::Exception& e) {
        std::fprintf(stderr, "error %u: %s\n", e.getType(), e.getMessage());
    } catch (const std::exception& e) {
        std::fprintf(stderr, "error: %s\n", e.what());
    }
    closeLog();
    return solved ? 0 : 1;
}
