// The documents of the examples, read, written whole and read again.

#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/FreezingConditions.h>
#include <ketra/thermo/input/NozzleFlowOptions.h>

#include <documents/Folder.h>
#include <unit/thermo_input/DocumentFacts.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using ketra_test::factsOf;
using ketra_test::Folder;
using thermo::input::ConfigFile;

std::vector<std::string> examples()
{
    std::vector<std::string> paths;
    for (const auto& file : std::filesystem::directory_iterator(KETRA_SOURCE_DIR "/examples"))
        if (file.path().extension() == ".cfg") paths.push_back(file.path().string());
    return paths;
}

// A freezing pressure that is stated as a ratio is read and written; the format's own validation
// asks for an area ratio or a pressure, and leaves it to the host to resolve the ratio.
bool freezesAtARatio(const ConfigFile& document)
{
    const auto& flow = document.getNozzleFlowOptions();
    return flow.isFreezingConditionsSet() && flow.getFreezingConditions().isPressureRatioSet();
}

TEST(ExampleDocuments, LoseNothingWhenTheyAreWrittenWhole)
{
    const Folder folder;
    const std::vector<std::string> paths = examples();
    EXPECT_GE(paths.size(), 20u);
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        ConfigFile first(path.c_str());
        first.read(nullptr);
        if (freezesAtARatio(first))
            EXPECT_THROW(first.validate(), thermo::input::Exception);
        else
            EXPECT_NO_THROW(first.validate());
        first.write(folder.at("written.cfg").c_str(), /*all=*/true);
        ConfigFile second(folder.at("written.cfg").c_str());
        second.read(nullptr);
        EXPECT_EQ(factsOf(second), factsOf(first));
        EXPECT_FALSE(factsOf(first).empty());
    }
}

} // namespace
