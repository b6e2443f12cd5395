#include <ketra/io/File.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

TEST(File, HasAnEmptyPathAtFirst)
{
    EXPECT_STREQ(io::File().getPath(), "");
    EXPECT_STREQ(io::File(nullptr).getPath(), "");
}

TEST(File, KeepsACopyOfItsPath)
{
    std::string path = "resources/thermo.inp";
    io::File file(path.c_str());
    path = "other";
    EXPECT_STREQ(file.getPath(), "resources/thermo.inp");
    file.setPath("a");
    EXPECT_STREQ(file.getPath(), "a");
    file.setPath(nullptr);
    EXPECT_STREQ(file.getPath(), "");
}

TEST(File, MayBeGivenItsOwnPath)
{
    io::File file("resources/thermo.inp");
    file.setPath(file.getPath());
    EXPECT_STREQ(file.getPath(), "resources/thermo.inp");
}

TEST(File, ExistsWhenItIsThereAndNotAFolder)
{
    const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / "ketra-file-test";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    const std::string path = (folder / "there.txt").string();

    EXPECT_FALSE(io::File::exists(path.c_str()));
    std::ofstream(path) << "x";
    EXPECT_TRUE(io::File::exists(path.c_str()));
    EXPECT_FALSE(io::File::exists(folder.string().c_str()));
    EXPECT_FALSE(io::File::exists(""));
    EXPECT_FALSE(io::File::exists(nullptr));
    std::filesystem::remove_all(folder);
}

} // namespace
