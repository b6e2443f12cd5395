// The documents of the examples, read, written whole and read again.

#include <ketra/thermo/input/ConfigFile.h>

#include <documents/Folder.h>
#include <unit/thermo_input/Facts.h>

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

TEST(ExampleDocuments, LoseNothingWhenTheyAreWrittenWhole)
{
    const Folder folder;
    const std::vector<std::string> paths = examples();
    EXPECT_GE(paths.size(), 8u);
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        ConfigFile first(path.c_str());
        first.read(nullptr);
        EXPECT_NO_THROW(first.validate());
        first.write(folder.at("written.cfg").c_str(), /*all=*/true);
        ConfigFile second(folder.at("written.cfg").c_str());
        second.read(nullptr);
        EXPECT_EQ(factsOf(second), factsOf(first));
        EXPECT_FALSE(factsOf(first).empty());
    }
}

} // namespace
