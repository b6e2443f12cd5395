#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <documents/Folder.h>
#include <support/CapturingLogger.h>
#include <support/Failures.h>
#include <unit/thermo_input/DocumentFacts.h>

#include <gtest/gtest.h>

#include <libconfig.h++>

#include <filesystem>

using ketra_test::factsOf;
using ketra_test::Folder;
using ketra_test::LogCapture;
using ketra_test::smallest;
using namespace thermo::input;

namespace {

const std::string wholeDocument = KETRA_SOURCE_DIR "/tests/documents/whole.cfg";

TEST(ReadDocument, TakesEveryGroupAndPassesOverOthers)
{
    const LogCapture log;
    ConfigFile config;
    config.read(wholeDocument.c_str());
    EXPECT_TRUE(log.lines().empty());

    EXPECT_EQ(config.getVersion(), 1.2);
    EXPECT_EQ(config.getName(), "Vinci \"A\"");
    EXPECT_EQ(config.getInfo(), "LOX/LH2, \tupper stage\r\nsecond line, \xC2\xB5");
    const GeneralOptions& general = config.getGeneralOptions();
    EXPECT_FALSE(general.isMultiphase() || general.isIons() || general.isFlowSeparation());
    EXPECT_EQ(config.getCombustionChamberConditions().getPressure(true), 6.1e6);

    const NozzleFlowOptions& flow = config.getNozzleFlowOptions();
    EXPECT_FALSE(flow.isCalculateNozzleFlow());
    EXPECT_TRUE(flow.getFreezingConditions().isCalculate());
    EXPECT_EQ(flow.getFreezingConditions().getExpansionRatio(), 1.25);
    EXPECT_EQ(flow.getNozzleInletConditions().getMassFlux(false), 210.5);
    EXPECT_EQ(flow.getNozzleInletConditions().getMassFluxUnit(false), MassFlux::LBM_PER_FT2_S);
    EXPECT_EQ(flow.getNozzleExitConditions().getAreaRatio(), 240.0);
    EXPECT_TRUE(flow.getNozzleExitConditions().isSuperSonicAreaRatio());
    EXPECT_EQ(flow.getNozzleExitConditions().getName(), "nozzleExitConditions");
    const EfficiencyFactors& factors = flow.getEfficiencyFactors();
    EXPECT_FALSE(factors.isApplyEfficiencyFactors());
    EXPECT_EQ(factors.getCycleEfficiency(), 0.99);
    EXPECT_EQ(factors.getReactionEfficiency(), 0.98);
    EXPECT_EQ(factors.getNozzleEfficiency(), 0.97);
    EXPECT_EQ(factors.getNozzleLength(), 0.8);
    EXPECT_EQ(factors.getConeHalfAngle(), 15.0);
    const AmbientConditions& ambient = flow.getAmbientConditions();
    EXPECT_TRUE(ambient.isRangePressureSet());
    EXPECT_DOUBLE_EQ(ambient.getRangePressureMin(true), 10132.5);
    EXPECT_EQ(ambient.getRangePressureMaxUnit(false), Pressure::PSI);
    EXPECT_FALSE(ambient.isDeliveredPerformance());
    EXPECT_EQ(flow.getThrottlingConditions().getFixedFlowrate(), 0.75);
    EXPECT_FALSE(flow.getThrottlingConditions().isDeliveredPerformance());
    ASSERT_EQ(flow.getSectionListSize(), 3u);
    EXPECT_FALSE(flow.getSection(0).isSuperSonicAreaRatio());
    EXPECT_EQ(flow.getSection(1).getPressureRatio(), 20.0);
    EXPECT_EQ(flow.getSection(2).getPressure(true), 3.5 * 98066.5);

    const Propellant& propellant = config.getPropellant();
    EXPECT_EQ(propellant.getRatio(), 5.84);
    EXPECT_EQ(propellant.getRatioType(), Ratio::KM);
    ASSERT_EQ(propellant.getOxidizerListSize(), 1u);
    EXPECT_DOUBLE_EQ(propellant.getOxidizer(0)->getT(true), 273.15 - 182.98);
    ASSERT_EQ(propellant.getFuelListSize(), 2u);
    EXPECT_EQ(propellant.getFuel(0)->getT(true), 20.27);
    EXPECT_EQ(propellant.getFuel(1)->getT(true), 0.0);
    EXPECT_EQ(propellant.getFuel(1)->getP(true), 101325.0);

    const EngineSize& size = config.getEngineSize();
    EXPECT_EQ(size.getThrust(true), 180e3);
    EXPECT_DOUBLE_EQ(size.getAmbientPressure(true), 0.05 * 101325.0);
    EXPECT_EQ(size.getChambersNo(), 2);
    EXPECT_EQ(&config.getChamberGeometry(), &config.getEngineSize().getChamberGeometry());
    const ConfigFile& constant = config;
    EXPECT_EQ(&constant.getChamberGeometry(), &size.getChamberGeometry());
    EXPECT_DOUBLE_EQ(size.getChamberGeometry().getChamberLength(true), 0.762);
    EXPECT_TRUE(size.getChamberGeometry().isTOC_L());
    EXPECT_EQ(size.getChamberGeometry().getLe(), 6.5);

    ASSERT_TRUE(config.isChamberCooling());
    const ChamberCooling& cooling = config.getChamberCooling();
    EXPECT_EQ(cooling.getHeatTransferParameters().getRelationsType(),
              HeatTransferParameters::BARTZ);
    ASSERT_EQ(cooling.getSectionListSize(), 4u);
    EXPECT_EQ(cooling.getSection(0).getId(), "chamber");
    EXPECT_EQ(dynamic_cast<const ConvectiveCooling&>(cooling.getSection(1)).getCoolantFrom(),
              "chamber");
    EXPECT_EQ(dynamic_cast<const TubularJacketDesign&>(cooling.getSection(2)).getN(), 240.0);
    EXPECT_EQ(cooling.getFilmSlot(0).getMdot(), 0.02);

    const PropellantFeedSystem& feed = constant.getPropellantFeedSystem();
    EXPECT_TRUE(feed.isEstimateDryMass());
    EXPECT_EQ(feed.getTurbopumpFeedSystemCycle(), TurbopumpFeedSystem::EXPANDER);
    EXPECT_EQ(feed.getTurbopumpFeedSystem().getOxidizerBoostPump().getPumpEta(), 0.65);
    EXPECT_NO_THROW(config.validate());
}

TEST(ReadDocument, SmallestDocumentLeavesEverythingAtItsDefaults)
{
    const Folder folder;
    const std::string path = folder.write("a.cfg", smallest);
    ConfigFile config, fresh;
    config.read(path.c_str());
    fresh.getPropellant().setRatio(0.0, Ratio::MIXTURE);
    EXPECT_EQ(factsOf(config), factsOf(fresh));
    EXPECT_EQ(config.getVersion(), 1.2);
}

TEST(ReadDocument, NullPathMeansTheStoredOne)
{
    const Folder folder;
    const std::string path = folder.write("a.cfg", "name = \"stored\"; " + smallest);
    const std::string other = folder.write("b.cfg", "name = \"given\"; " + smallest);
    ConfigFile stored(path.c_str());
    EXPECT_EQ(stored.getName(), ""); // not read
    stored.read(nullptr);
    EXPECT_EQ(stored.getName(), "stored");
    EXPECT_STREQ(stored.getPath(), path.c_str());

    ConfigFile given(path.c_str());
    given.read(other.c_str());
    EXPECT_EQ(given.getName(), "given");
    EXPECT_STREQ(given.getPath(), other.c_str());
    given.read(given.getPath());
    EXPECT_STREQ(given.getPath(), other.c_str());
}

TEST(ReadDocument, IncludesAnotherFile)
{
    const Folder folder;
    const std::string part = folder.write("part.cfg", smallest);
    const std::string path = folder.write("a.cfg", "name = \"x\";\n@include \"" + part + "\"\n");
    ConfigFile config;
    config.read(path.c_str());
    EXPECT_EQ(config.getName(), "x");
    EXPECT_EQ(config.getPropellant().getRatioType(), Ratio::MIXTURE);
}

TEST(DocumentVersion, OlderOnesAreReadAndCountAsTheCurrentOne)
{
    const Folder folder;
    for (const char* version : {"", "version = 1.1;", "version = 1.2;", "version = 0.0;",
                                "version = -3.0;", "version = 2;", "version = \"9\";"}) {
        SCOPED_TRACE(version); // an integer or a text is no version, and passed over
        const LogCapture log;
        const std::string path = folder.write("a.cfg", version + smallest);
        ConfigFile config;
        config.read(path.c_str());
        EXPECT_EQ(config.getVersion(), 1.2);
        EXPECT_TRUE(log.lines().empty());
    }
}

TEST(DocumentVersion, NewerOnesAreRefused)
{
    const Folder folder;
    const std::pair<const char*, const char*> versions[] = {
        {"1.3", "1.3"}, {"2.0", "2.0"}, {"1.2000000000000002", "1.2"}, {"1.0e999", "inf"}};
    for (const auto& [version, shown] : versions) {
        SCOPED_TRACE(version);
        const LogCapture log;
        const std::string path =
            folder.write("a.cfg", std::string("version = ") + version + "; name = \"x\";");
        ConfigFile config;
        KETRA_EXPECT_THROW_MESSAGE(config.read(path.c_str()), Exception, 1, "Incorrect version");
        const std::string message =
            std::string("Incorrect version of configuration file ") + shown + "; expected v.1.2\n";
        EXPECT_EQ(log.errors(), std::vector<std::string>{message});
        EXPECT_EQ(log.tagOf(message), "THERMO");
        EXPECT_EQ(config.getName(), "");
    }
}

std::string warning(const std::string& path)
{
    return "Could not load configuration file " + path + ". Trying to repair it...\n";
}

TEST(RepairedDocument, GetsLineEndsEverywhereAndIsRead)
{
    // A comment in the last line needs a line end to be a comment.
    const Folder folder;
    const std::string text = "# first\n\n\r\nname = \"x\";\r\r\n" + smallest + "# last";
    const std::string path = folder.write("a.cfg", text);
    const LogCapture log;
    ConfigFile config;
    config.read(path.c_str());
    EXPECT_EQ(config.getName(), "x");
    EXPECT_EQ(log.warnings(), std::vector<std::string>{warning(path)});
    EXPECT_EQ(log.tagOf(warning(path)), "THERMO");
    EXPECT_EQ(log.lines().size(), 1u);
    const std::string line = smallest.substr(0, smallest.size() - 1);
    EXPECT_EQ(folder.read("a.cfg"),
              "# first\r\n\r\n\r\nname = \"x\";\r\n" + line + "\r\n# last\r\n");
    EXPECT_EQ(folder.countFiles(), 1u);

    ConfigFile again; // is whole now
    again.read(path.c_str());
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST(RepairedDocument, ErrorOfSyntaxIsRewrittenAndStillFails)
{
    const Folder folder;
    const std::string path = folder.write("a.cfg", "name = ;\nversion = 1.2;");
    const LogCapture log;
    ConfigFile config;
    KETRA_EXPECT_THROW_MESSAGE(config.read(path.c_str()), Exception, 0,
                               "Could not load configuration file");
    const std::string message = "Could not repair configuration file " + path + "\n";
    EXPECT_EQ(log.warnings(), std::vector<std::string>{warning(path)});
    EXPECT_EQ(log.errors(), std::vector<std::string>{message});
    EXPECT_EQ(log.tagOf(message), "THERMO");
    EXPECT_EQ(folder.read("a.cfg"), "name = ;\r\nversion = 1.2;\r\n");
    EXPECT_EQ(folder.countFiles(), 1u);
}

TEST(RepairedDocument, CarriageReturnsAloneAreNoLineEnds)
{
    // All of it is one line, and the comment at its begin the whole of the document.
    const Folder folder;
    const std::string path = folder.write("a.cfg", "# first\rname = \"x\";\r\r");
    const LogCapture log;
    ConfigFile config;
    EXPECT_THROW(config.read(path.c_str()), libconfig::SettingNotFoundException);
    EXPECT_EQ(log.warnings(), std::vector<std::string>{warning(path)});
    EXPECT_TRUE(log.errors().empty());
    EXPECT_EQ(folder.read("a.cfg"), "# first\rname = \"x\";\r\n");
}

TEST(RepairedDocument, KeepsItsPermissionsAndStaysBehindALink)
{
    namespace fs = std::filesystem;
    const Folder folder;
    const std::string path = folder.write("a.cfg", smallest + "# last");
    const auto permissions = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(path, permissions);
    fs::create_symlink("a.cfg", folder.at("link.cfg"));
    ConfigFile config;
    config.read(folder.at("link.cfg").c_str());
    EXPECT_TRUE(fs::is_symlink(folder.at("link.cfg")));
    EXPECT_EQ(folder.read("a.cfg").substr(smallest.size() - 1), "\r\n# last\r\n");
    EXPECT_EQ(fs::status(path).permissions(), permissions);
}

/// Permissions do not hold a privileged user back, who therefore is another one while this lives.
class OrdinaryUser
{
public:
    OrdinaryUser() : user(geteuid())
    {
        constexpr uid_t nobody = 65534;
        if (user == 0 && seteuid(nobody) != 0) std::abort();
    }
    ~OrdinaryUser()
    {
        if (user == 0 && seteuid(user) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    uid_t user;
};

TEST(RepairedDocument, FileThatCannotBeWrittenCountsAsAnEmptyDocument)
{
    namespace fs = std::filesystem;
    const Folder folder;
    const std::string text = smallest + "# last";
    const std::string path = folder.write("a.cfg", text);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    fs::permissions(folder.at(""), fs::perms::all);
    const LogCapture log;
    {
        const OrdinaryUser user;
        ConfigFile config;
        EXPECT_THROW(config.read(path.c_str()), libconfig::SettingNotFoundException);
    }
    EXPECT_EQ(log.warnings(), std::vector<std::string>{warning(path)});
    EXPECT_TRUE(log.errors().empty());
    EXPECT_EQ(folder.read("a.cfg"), text);
}

TEST(RepairedDocument, FileInALockedFolderIsRewrittenInPlace)
{
    namespace fs = std::filesystem;
    const Folder folder;
    const std::string path = folder.write("a.cfg", smallest + "# last");
    fs::permissions(path, fs::perms::all);
    constexpr auto readOnly = static_cast<fs::perms>(0555);
    fs::permissions(folder.at(""), readOnly);
    {
        const OrdinaryUser user;
        ConfigFile config;
        EXPECT_NO_THROW(config.read(path.c_str()));
    }
    fs::permissions(folder.at(""), fs::perms::all);
    EXPECT_EQ(folder.read("a.cfg").substr(smallest.size() - 1), "\r\n# last\r\n");
}

TEST(Validation, DocumentIsValidatedSectionBySection)
{
    const LogCapture log;
    ConfigFile config;
    KETRA_EXPECT_THROW_MESSAGE(config.validate(), Exception, 7,
                               "Neither freezing conditions, nozzle inlet conditions nor nozzle "
                               "exit conditions is defined within NozzleFlowOptions");
    config.getNozzleFlowOptions().setCalculateNozzleFlow(false);
    KETRA_EXPECT_THROW_MESSAGE(config.validate(), Exception, 7,
                               "Either oxidizer or fuel is not defined within Propellant");
    config.getPropellant().setRatio(0.0, Ratio::MIXTURE);
    config.getPropellant().addSpecies(new Component("N2H4(L)", 1.0));
    EXPECT_NO_THROW(config.validate());
    EXPECT_EQ(log.errors().size(), 2u);
}

TEST(ReadDocument, GroupsThatMayBeMissingLeaveTheirDefaults)
{
    const Folder folder;
    const ConfigFile fresh;
    const auto nameIn = [](const std::string& key, const std::string& members) {
        return key + " = {" + members + "};";
    };
    const std::string groups[] = {
        nameIn("engineSize", "thrust = { value = 5.0; };"),
        nameIn("chamberCooling", "heatTransfer = {};"),
        nameIn("propelantFeedSystem", "estimateDryMass = true;"),
    };
    for (std::size_t there = 0; there < 8; ++there) { // every choice of the three
        std::string text = smallest;
        for (std::size_t i = 0; i < 3; ++i)
            if ((there >> i & 1) != 0) text += groups[i];
        SCOPED_TRACE(text);
        ConfigFile config;
        config.read(folder.write("a.cfg", text).c_str());
        EXPECT_EQ(config.getEngineSize().isThrustSet(), (there & 1) != 0);
        EXPECT_EQ(config.isChamberCooling(), (there & 2) != 0);
        EXPECT_EQ(config.getPropellantFeedSystem().isEstimateDryMass(), (there & 4) != 0);
        if ((there & 1) == 0) {
            EXPECT_EQ(factsOf(config.getEngineSize()), factsOf(fresh.getEngineSize()));
        }
    }
    ConfigFile spelt; // the format has one l
    spelt.read(
        folder.write("a.cfg", smallest + "propellantFeedSystem = { estimateDryMass = true; };")
            .c_str());
    EXPECT_FALSE(spelt.getPropellantFeedSystem().isEstimateDryMass());
}

TEST(ReadDocument, ChamberCoolingIsReadAnew)
{
    const Folder folder;
    const std::string path = folder.write(
        "a.cfg", smallest + "chamberCooling = { heatTransfer = {}; filmSlots = ( {} ); };");
    ConfigFile config;
    config.setChamberCooling().addSlotJacketSection();
    config.read(path.c_str());
    EXPECT_EQ(config.getChamberCooling().getSectionListSize(), 0u);
    config.read(path.c_str());
    EXPECT_EQ(config.getChamberCooling().getFilmSlotsListSize(), 1u);
}

TEST(ConfigFile, ChamberCoolingIsThereWhenItIsSet)
{
    ConfigFile config;
    const ConfigFile& constant = config;
    const std::string text = "Could not obtain ChamberCooling: NULL pointer\n";
    const LogCapture log;
    EXPECT_FALSE(config.isChamberCooling());
    KETRA_EXPECT_THROW_MESSAGE(config.getChamberCooling(), Exception, 2, "NULL pointer");
    KETRA_EXPECT_THROW_MESSAGE(constant.getChamberCooling(), Exception, 2, "NULL pointer");
    EXPECT_EQ(log.errors(), (std::vector<std::string>{text, text}));
    EXPECT_EQ(log.tagOf(text), "THERMO");

    ChamberCooling& cooling = config.setChamberCooling();
    cooling.addFilmSlot();
    EXPECT_TRUE(config.isChamberCooling());
    EXPECT_EQ(&config.setChamberCooling(), &cooling);
    EXPECT_EQ(&config.getChamberCooling(), &cooling);
    EXPECT_EQ(&constant.getChamberCooling(), &cooling);
    EXPECT_EQ(cooling.getFilmSlotsListSize(), 1u);
    config.deleteChamberCooling();
    config.deleteChamberCooling();
    EXPECT_FALSE(config.isChamberCooling());
}

TEST(ConfigFile, CopiesAreDeepAndKnowTheirPath)
{
    auto source = std::make_unique<ConfigFile>(wholeDocument.c_str());
    source->read(nullptr);
    const ketra_test::Facts facts = factsOf(*source);
    ConfigFile copy(*source), assigned("other.cfg");
    assigned.setName("other");
    assigned.getPropellant().addFuel(new Component("CH4"));
    assigned.setChamberCooling().addFilmSlot();
    assigned.getPropellantFeedSystem().setPressurizedFeedSystem(PressurizedFeedSystem::STORED_GAS);
    assigned = *source;
    assigned = *&assigned;
    source->setInfo("changed");
    source->getNozzleFlowOptions().getEfficiencyFactors().setCycleEfficiency(0.1);
    source->getPropellant().getFuel(0)->setMf(0.1);
    source->getChamberGeometry().setLe(1.0);
    source->getChamberCooling().getSection(0).setId("changed");
    source->getChamberCooling().getFilmSlot(0).getCoolant(0)->setMf(0.1);
    source->getPropellantFeedSystem().getTurbopumpFeedSystem().getGG1().setSigma(0.1);
    EXPECT_NE(factsOf(*source), facts);
    source.reset();
    EXPECT_EQ(factsOf(copy), facts);
    EXPECT_EQ(factsOf(assigned), facts);
    EXPECT_STREQ(copy.getPath(), wholeDocument.c_str());
    EXPECT_STREQ(assigned.getPath(), wholeDocument.c_str());

    // And the other way round: the copies go, and the source stays.
    ConfigFile kept(copy);
    {
        ConfigFile gone(kept);
        gone.deleteChamberCooling();
        gone.getPropellantFeedSystem().clear();
        gone.getEngineSize().clear();
        gone.getPropellant().reset();
        gone.getNozzleFlowOptions().reset();
    }
    EXPECT_EQ(factsOf(kept), facts);
    kept = ConfigFile();
    EXPECT_EQ(factsOf(kept), factsOf(ConfigFile()));
    EXPECT_FALSE(kept.isChamberCooling());
}

} // namespace
