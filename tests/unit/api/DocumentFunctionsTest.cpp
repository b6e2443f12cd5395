#include <ketra/api/ketra.h>
#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include "TemporaryFolder.h"
#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

namespace {

using thermo::input::ConfigFile;
using thermo::input::Ratio;

struct Delete {
    void operator()(ConfigFile* config) const { deleteConfig(config); }
};
using Config = std::unique_ptr<ConfigFile, Delete>;

constexpr const char* small = "version = 1.2;\n"
                              "name = \"small\";\n"
                              "combustionChamberConditions = {\n"
                              "  pressure = { value = 2.5; unit = \"MPa\"; };\n"
                              "};\n"
                              "nozzleFlow = { calculateNozzleFlow = false; };\n"
                              "propellant = { mixture = { species = (\n"
                              "  { name = \"N2H4(L)\"; massFraction = 1.0; } ); }; };\n";

class DocumentFunctions : public testing::Test
{
protected:
    std::string write(const std::string& text) const
    {
        const std::filesystem::path path = folder.path() / "case.cfg";
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }

    ketra_test::TemporaryFolder folder;
};

TEST_F(DocumentFunctions, MakeADocumentThatKnowsItsPathAndIsNotRead)
{
    const std::string path = write(small);
    const Config config(newConfig(path.c_str()));
    ASSERT_NE(config, nullptr);
    EXPECT_EQ(std::string(config->getPath()), path);
    EXPECT_EQ(std::string(config->getName()), "");
    EXPECT_TRUE(config->getNozzleFlowOptions().isCalculateNozzleFlow());
}

TEST_F(DocumentFunctions, MakeADocumentWithoutAPath)
{
    const Config config(newConfig(static_cast<const char*>(nullptr)));
    ASSERT_NE(config, nullptr);
    EXPECT_EQ(std::string(config->getName()), "");
}

TEST_F(DocumentFunctions, LoadADocument)
{
    const Config config(loadConfig(write(small).c_str()));
    ASSERT_NE(config, nullptr);
    EXPECT_EQ(std::string(config->getName()), "small");
    EXPECT_EQ(config->getCombustionChamberConditions().getPressure(true), 2.5e6);
    EXPECT_EQ(config->getPropellant().getRatioType(), Ratio::MIXTURE);
    ASSERT_EQ(config->getPropellant().getSpeciesListSize(), 1U);
}

TEST_F(DocumentFunctions, SayWhyADocumentCannotBeLoaded)
{
    ketra_test::LogCapture capture;
    KETRA_EXPECT_THROW_MESSAGE(loadConfig("/nowhere/case.cfg"), thermo::input::Exception, 0,
                               "Could not load configuration file");
    ASSERT_EQ(capture.errors().size(), 1U);
    EXPECT_EQ(capture.errors()[0], "Could not load configuration file /nowhere/case.cfg\n");
    KETRA_EXPECT_THROW_CODE(loadConfig(nullptr), thermo::input::Exception, 0);
    KETRA_EXPECT_THROW_CODE(loadConfig(write("version = 1.3;\n").c_str()), thermo::input::Exception,
                            1);
}

TEST_F(DocumentFunctions, CopyADocumentDeeply)
{
    const Config config(loadConfig(write(small).c_str()));
    const Config copy(newConfig(config.get()));
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(copy, config);
    copy->setName("other");
    copy->getPropellant().reset();
    EXPECT_EQ(std::string(config->getName()), "small");
    EXPECT_EQ(config->getPropellant().getSpeciesListSize(), 1U);
}

TEST_F(DocumentFunctions, WriteADocumentToAPathOrToItsOwn)
{
    const std::string path = write(small);
    const Config config(loadConfig(path.c_str()));
    config->setName("changed");
    writeConfig(config.get(), nullptr, false);
    const Config again(loadConfig(path.c_str()));
    EXPECT_EQ(std::string(again->getName()), "changed");

    const std::string other = (folder.path() / "other.cfg").string();
    writeConfig(config.get(), other.c_str(), true);
    const Config full(loadConfig(other.c_str()));
    EXPECT_EQ(std::string(full->getName()), "changed");
    EXPECT_EQ(full->getCombustionChamberConditions().getPressure(true), 2.5e6);
}

TEST_F(DocumentFunctions, RefuseANullDocument)
{
    ketra_test::LogCapture capture;
    ConfigFile* none = nullptr;
    KETRA_EXPECT_THROW_CODE(newConfig(none), thermo::input::Exception, 2);
    KETRA_EXPECT_THROW_CODE(writeConfig(none, "case.cfg", true), thermo::input::Exception, 2);
    EXPECT_EQ(capture.errors().size(), 2U);
    deleteConfig(none);
}

} // namespace
