#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <documents/Folder.h>
#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/DocumentFacts.h>
#include <unit/thermo_input/Settings.h>

#include <gtest/gtest.h>

#include <locale.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>

using ketra_test::exact;
using ketra_test::factsOf;
using ketra_test::Folder;
using ketra_test::LogCapture;
using ketra_test::Settings;
using namespace thermo::input;

namespace {

TEST(WrittenDocument, FreshOneHoldsItsVersionAndNothingElse)
{
    const Folder folder;
    ConfigFile config;
    config.write(folder.at("a.cfg").c_str(), false);
    Settings settings(folder.read("a.cfg"));
    EXPECT_EQ(static_cast<double>(settings["version"]), 1.2);
    EXPECT_EQ(ketra_test::countScalars(settings.root()), 1);
    const char* groups[] = {
        "version",    "generalOptions", "combustionChamberConditions", "nozzleFlow",
        "propellant", "engineSize",     "propelantFeedSystem"};
    ASSERT_EQ(settings.root().getLength(), 7);
    for (int i = 0; i < 7; ++i) EXPECT_STREQ(settings.root()[i].getName(), groups[i]);
}

TEST(WrittenDocument, OnlyWhatDiffersFromTheDefaults)
{
    const Folder folder;
    ConfigFile config;
    config.setName("x");
    config.getGeneralOptions().setIons(false);
    config.getCombustionChamberConditions().setPressure(50.0, Pressure::BAR, false);
    config.write(folder.at("a.cfg").c_str(), false);
    Settings settings(folder.read("a.cfg"));
    EXPECT_EQ(ketra_test::countScalars(settings.root()), 4);
    EXPECT_TRUE(settings.has("name"));
    EXPECT_FALSE(static_cast<bool>(settings["generalOptions.ions"]));
    EXPECT_EQ(static_cast<double>(settings["combustionChamberConditions.pressure.value"]), 50.0);
}

TEST(WrittenDocument, EveryScalarOnDemand)
{
    const Folder folder;
    ConfigFile config;
    config.write(folder.at("a.cfg").c_str(), true);
    EXPECT_EQ(folder.read("a.cfg"), R"(version = 1.2;
name = "";
info = "";
generalOptions :
{
  multiphase = true;
  ions = true;
  flowSeparation = true;
};
combustionChamberConditions :
{
  pressure :
  {
    value = 0.0;
    unit = "MPa";
  };
};
nozzleFlow :
{
  calculateNozzleFlow = true;
  nozzleStations = ();
};
propellant :
{
  components :
  {
    ratio :
    {
      value = 0.0;
      unit = "O/F";
    };
    oxidizer = ();
    fuel = ();
  };
};
engineSize :
{
  chambersNo = 1;
};
propelantFeedSystem :
{
  estimateDryMass = false;
};
)");
}

TEST(WrittenDocument, GroupsStandInTheOrderOfTheFormat)
{
    const Folder folder;
    ConfigFile config(KETRA_SOURCE_DIR "/tests/documents/whole.cfg");
    config.read(nullptr);
    config.write(folder.at("a.cfg").c_str(), true);
    Settings settings(folder.read("a.cfg"));
    const char* keys[] = {
        "version",    "name",       "info",       "generalOptions", "combustionChamberConditions",
        "nozzleFlow", "propellant", "engineSize", "chamberCooling", "propelantFeedSystem"};
    ASSERT_EQ(settings.root().getLength(), 10);
    for (int i = 0; i < 10; ++i) EXPECT_STREQ(settings.root()[i].getName(), keys[i]);
}

TEST(WrittenDocument, WholeOneIsReadBackAsItWas)
{
    const Folder folder;
    ConfigFile config(KETRA_SOURCE_DIR "/tests/documents/whole.cfg"), again;
    config.read(nullptr);
    ketra_test::Facts expected = factsOf(config);
    config.write(folder.at("a.cfg").c_str(), true);
    again.read(folder.at("a.cfg").c_str());
    // -182.98 C stays below the zero of its scale, and what is below is left out.
    ASSERT_EQ(expected["propellant/oxidizer[0]/T/unit"], "1");
    expected["propellant/oxidizer[0]/T/unit"] = "0";
    expected["propellant/oxidizer[0]/T/value"] = exact(0.0);
    EXPECT_EQ(factsOf(again), expected);
    again.write(folder.at("b.cfg").c_str(), true);
    EXPECT_EQ(folder.read("b.cfg"), folder.read("a.cfg"));
}

double readBack(double x)
{
    const Folder folder;
    ConfigFile config, again;
    config.getCombustionChamberConditions().setPressure(x, Pressure::PA, false);
    config.getPropellant().setRatio(0.0, Ratio::MIXTURE);
    config.write(folder.at("a.cfg").c_str(), true);
    again.read(folder.at("a.cfg").c_str());
    return again.getCombustionChamberConditions().getPressure(false);
}

TEST(WrittenDocument, EveryNumberIsReadBackBitByBit)
{
    using Limits = std::numeric_limits<double>;
    const double numbers[] = {
        0.0,
        -0.0,
        1.0,
        -1.0,
        0.1,
        1.0 / 3.0,
        1e22,
        1e23,
        123456789.0,
        1e-7,
        -2.5e-300,
        0.30000000000000004,
        5e-324,
        Limits::min(),
        Limits::max(),
        1e15,
        1e16,
        9007199254740993.0,
        1e100,
        -Limits::max(),
        101325.0,
        2.2250738585072011e-308,
        4.35,
        6894.75729316836,
        Limits::infinity(),
        -Limits::infinity(),
    };
    for (const double x : numbers) EXPECT_EQ(exact(readBack(x)), exact(x));
}

TEST(WrittenDocument, EveryTextIsReadBack)
{
    const Folder folder;
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    const std::string texts[] = {"plain",
                                 "a \"quoted\" word",
                                 "back\\slash \\n \\",
                                 "two\r\nlines\n",
                                 "tab\tfeed\f",
                                 "\xCE\xB1 \xE2\x82\x82 \xC2\xB5",
                                 "# // /* ; = {",
                                 "\x01\x7F"
                                 "A",
                                 "%s%n",
                                 all,
                                 std::string(100000, 'x')};
    for (const std::string& text : texts) {
        SCOPED_TRACE(text.substr(0, 40));
        ConfigFile config, again;
        config.setName(text.c_str());
        config.setInfo((text + text).c_str());
        config.getPropellant().addFuel(new Component(text.c_str()));
        config.write(folder.at("a.cfg").c_str(), true);
        again.read(folder.at("a.cfg").c_str());
        EXPECT_EQ(again.getName(), text);
        EXPECT_EQ(again.getInfo(), text + text);
        EXPECT_EQ(again.getPropellant().getFuel(0)->getName(), text);
    }
    ConfigFile config;
    config.setName(nullptr);
    config.setInfo(nullptr);
    EXPECT_EQ(config.getName() + config.getInfo(), "");
}

/// While it lives the thread writes numbers with a comma. The locale is made by the test itself,
/// since few machines have one installed.
class CommaLocale
{
public:
    CommaLocale()
    {
        // What localedef makes of the numbers of a locale: decimal "," and grouping ".".
        static constexpr unsigned char numeric[] = {
            0x14, 0x11, 0x03, 0x20, 0x06, 0, 0,    0,   0x20, 0,   0,    0, 0x22, 0,
            0,    0,    0x24, 0,    0,    0, 0x28, 0,   0,    0,   0x2c, 0, 0,    0,
            0x30, 0,    0,    0,    ',',  0, '.',  0,   3,    3,   0,    0, ',',  0,
            0,    0,    '.',  0,    0,    0, 'U',  'T', 'F',  '-', '8',  0};
        std::filesystem::create_directory(folder.at("comma"));
        folder.write("comma/LC_NUMERIC",
                     std::string(reinterpret_cast<const char*>(numeric), sizeof numeric));
        setenv("LOCPATH", folder.at("").c_str(), 1);
        comma = newlocale(LC_NUMERIC_MASK, "comma", nullptr);
        unsetenv("LOCPATH");
        if (comma != nullptr) previous = uselocale(comma);
    }
    ~CommaLocale()
    {
        if (comma == nullptr) return;
        uselocale(previous);
        freelocale(comma);
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    bool isInUse() const
    {
        char text[8];
        std::snprintf(text, sizeof text, "%.1f", 0.5);
        return std::string(text) == "0,5";
    }

private:
    Folder folder;
    locale_t comma = nullptr;
    locale_t previous = nullptr;
};

TEST(WrittenDocument, IsTheSameUnderALocaleWithACommaAndSoIsReading)
{
    const Folder folder;
    ConfigFile config(KETRA_SOURCE_DIR "/tests/documents/whole.cfg");
    config.read(nullptr);
    config.write(folder.at("point.cfg").c_str(), true);
    const std::string newer = folder.write("newer.cfg", "version = 1.3;");
    {
        const CommaLocale locale;
        ASSERT_TRUE(locale.isInUse());
        ConfigFile again(KETRA_SOURCE_DIR "/tests/documents/whole.cfg");
        again.read(nullptr);
        EXPECT_EQ(factsOf(again), factsOf(config));
        again.write(folder.at("comma.cfg").c_str(), true);

        const LogCapture log;
        KETRA_EXPECT_THROW_CODE(again.read(newer.c_str()), Exception, 1);
        EXPECT_EQ(log.errors(),
                  std::vector<std::string>{
                      "Incorrect version of configuration file 1.3; expected v.1.2\n"});
        EXPECT_TRUE(locale.isInUse()); // the thread's locale came back
    }
    EXPECT_EQ(folder.read("comma.cfg"), folder.read("point.cfg"));
}

TEST(WrittenDocument, PathIsStoredOnlyIfThereIsNone)
{
    const Folder folder;
    const std::string a = folder.at("a.cfg"), b = folder.at("b.cfg");
    ConfigFile config;
    config.write(a.c_str(), true);
    EXPECT_STREQ(config.getPath(), a.c_str());
    config.setName("second");
    config.write(b.c_str(), true);
    EXPECT_STREQ(config.getPath(), a.c_str());
    EXPECT_EQ(folder.read("a.cfg").find("second"), std::string::npos);
    EXPECT_NE(folder.read("b.cfg").find("second"), std::string::npos);
    config.write(nullptr, true);
    EXPECT_EQ(folder.read("a.cfg"), folder.read("b.cfg"));
    EXPECT_EQ(folder.countFiles(), 2u);
}

void expectNotWritten(ConfigFile& config, const std::string& path)
{
    const LogCapture log;
    KETRA_EXPECT_THROW_MESSAGE(config.write(path.empty() ? nullptr : path.c_str(), true), Exception,
                               0, "Could not write configuration file");
    ASSERT_FALSE(log.errors().empty());
    EXPECT_EQ(log.errors().back(), "Could not write configuration file " + path + "\n");
}

TEST(WrittenDocument, PlaceThatTakesNoFile)
{
    const Folder folder;
    ConfigFile config;
    expectNotWritten(config, "");
    expectNotWritten(config, folder.at("missing/a.cfg"));
    expectNotWritten(config, folder.at(""));
    expectNotWritten(config, "/dev/full"); // takes nothing, but can be opened
    EXPECT_EQ(folder.countFiles(), 0u);
}

TEST(WrittenDocument, ValueThatIsNoNumberIsRefusedBeforeTheFileIsTouched)
{
    const Folder folder;
    const std::string path = folder.write("a.cfg", "old");
    ConfigFile config;
    config.getCombustionChamberConditions().setPressure(std::numeric_limits<double>::quiet_NaN(),
                                                        Pressure::PA, false);
    expectNotWritten(config, path);
    EXPECT_EQ(folder.read("a.cfg"), "old");
    EXPECT_EQ(folder.countFiles(), 1u);
}

TEST(WrittenDocument, ReplacesAFileAndKeepsItsPermissions)
{
    namespace fs = std::filesystem;
    const Folder folder;
    const std::string path = folder.write("a.cfg", std::string(100000, 'x'));
    fs::permissions(path, fs::perms::owner_all);
    ConfigFile config;
    config.write(path.c_str(), true);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
    EXPECT_LT(fs::file_size(path), 1000u);
    EXPECT_EQ(folder.countFiles(), 1u);
}

} // namespace
