#include <ketra/thermo/input/ConfigFile.h>
#include <ketra/thermo/input/Exception.h>

#include <documents/Folder.h>
#include <support/CapturingLogger.h>
#include <support/Failures.h>

#include <gtest/gtest.h>

#include <libconfig.h++>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

using ketra_test::Folder;
using ketra_test::LogCapture;
using ketra_test::smallest;
using namespace thermo::input;

namespace {

void expectNotLoaded(const std::string& path)
{
    SCOPED_TRACE(path);
    const LogCapture log;
    ConfigFile config;
    KETRA_EXPECT_THROW_MESSAGE(config.read(path.c_str()), Exception, 0,
                               "Could not load configuration file");
    const std::string message = "Could not load configuration file " + path + "\n";
    EXPECT_EQ(log.errors(), std::vector<std::string>{message});
    EXPECT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.tagOf(message), "THERMO");
}

TEST(RefusedDocument, FileThatIsMissingOrAFolder)
{
    const Folder folder;
    expectNotLoaded(folder.at("missing.cfg"));
    expectNotLoaded(folder.at(""));
    expectNotLoaded("");
    EXPECT_EQ(folder.countFiles(), 0u);
}

TEST(RefusedDocument, NullPathWithoutAStoredOne)
{
    const LogCapture log;
    ConfigFile config;
    KETRA_EXPECT_THROW_CODE(config.read(nullptr), Exception, 0);
    EXPECT_EQ(log.errors(), std::vector<std::string>{"Could not load configuration file \n"});
}

TEST(RefusedDocument, PercentSignsOfAPathAreNoFormat)
{
    const Folder folder;
    expectNotLoaded(folder.at("%s%n%d.cfg"));
}

TEST(RefusedDocument, TextBeyondAllMeasure)
{
    const Folder folder;
    expectNotLoaded(folder.write("large.cfg", smallest + std::string(9u << 20, ' ')));
    std::string wide = smallest;
    for (int i = 0; i < 200000; ++i) wide += "a" + std::to_string(i) + "=1;";
    expectNotLoaded(folder.write("wide.cfg", wide)); // the parser would take minutes
    EXPECT_EQ(folder.read("wide.cfg"), wide);
}

TEST(RefusedDocument, IncludedFolderEndsTheReadAndNotTheProcess)
{
    const Folder folder;
    expectNotLoaded(folder.write("a.cfg", smallest + "@include \"" + folder.at("") + "\"\n"));
    const std::string inner = folder.write("b.cfg", "  @include  \"" + folder.at("") + "\"\n");
    expectNotLoaded(folder.write("c.cfg", smallest + "@include \"" + inner + "\"\n"));
}

// What the parser cannot read is taken for broken line ends, repaired, and read once more.
void expectNotRepaired(const Folder& folder, const std::string& text)
{
    const std::string path = folder.write("a.cfg", text);
    const LogCapture log;
    ConfigFile config;
    KETRA_EXPECT_THROW_CODE(config.read(path.c_str()), Exception, 0);
    EXPECT_EQ(log.errors(),
              std::vector<std::string>{"Could not repair configuration file " + path + "\n"});
    EXPECT_EQ(log.warnings().size(), 1u);
    EXPECT_EQ(folder.countFiles(), 1u);
}

TEST(RefusedDocument, TextThatIsNoDocument)
{
    const Folder folder;
    std::string binary;
    for (int i = 0; i < 2048; ++i) binary += static_cast<char>(i * 37);
    std::string deep, deepList = "a = ";
    for (int i = 0; i < 200000; ++i) deep += "a={", deepList += "(";
    const std::string texts[] = {
        "name = \"no end",
        "name = \"x\"; name = \"y\";\n" + smallest, // stated twice
        "a = [ 1, \"two\" ];\n" + smallest,
        "\xEF\xBB\xBF" + smallest, // a mark of the byte order
        std::string("name = 1;\0 other = 2;\n", 22) + smallest,
        "name = \"x\";\rpropellant = {\r# last\r}\r", // one line, and the end of it a comment
        "@include \"" + folder.at("missing.cfg") + "\"\n" + smallest,
        "@include \"" + folder.at("a.cfg") + "\"\n" + smallest, // itself
        binary,
        deep,
        deepList,
        "}",
        "combustionChamberConditions = ",
    };
    for (const std::string& text : texts) {
        SCOPED_TRACE(text.substr(0, 60));
        expectNotRepaired(folder, text);
    }
}

TEST(RefusedDocument, MissingMandatoryGroup)
{
    const Folder folder;
    const std::pair<const char*, const char*> documents[] = {
        {"", "combustionChamberConditions"},
        {"\n", "combustionChamberConditions"},
        {"\r\r\r", "combustionChamberConditions"},
        {"/* a comment without an end", "combustionChamberConditions"},
        {"nozzleFlow = {}; propellant = { mixture = {}; };", "combustionChamberConditions"},
        {"combustionChamberConditions = {}; propellant = { mixture = {}; };", "nozzleFlow"},
        {"combustionChamberConditions = {}; nozzleFlow = {};", "propellant"},
    };
    for (const auto& [text, group] : documents) {
        SCOPED_TRACE(text);
        const std::string path = folder.write("a.cfg", text);
        const LogCapture log;
        ConfigFile config;
        try {
            config.read(path.c_str());
            ADD_FAILURE() << "read";
        } catch (const libconfig::SettingNotFoundException& e) {
            EXPECT_NE(std::string(e.getPath()).find(group), std::string::npos) << e.getPath();
        }
        EXPECT_TRUE(log.lines().empty());
        EXPECT_EQ(folder.read("a.cfg"), text);
    }
}

TEST(RefusedDocument, UnknownUnit)
{
    const Folder folder;
    const std::string path = folder.write(
        "a.cfg", "combustionChamberConditions = { pressure = { value = 1.0; unit = \"MPA\"; }; };"
                 "nozzleFlow = {}; propellant = { mixture = {}; };");
    const LogCapture log;
    ConfigFile config;
    KETRA_EXPECT_THROW_MESSAGE(config.read(path.c_str()), Exception, 4, "Unknown");
    EXPECT_EQ(log.errors(),
              std::vector<std::string>{"Could convert string to pressure: unknown unit MPA\n"});
}

// Whatever becomes of a document, reading it ends, and ends in one of the two ways that are told.
bool isReadOrRefused(const std::string& path)
{
    try {
        ConfigFile config;
        config.read(path.c_str());
        return true;
    } catch (const Exception&) {
        return true;
    } catch (const libconfig::SettingNotFoundException&) {
        return true;
    }
}

std::string wholeDocument()
{
    std::ifstream stream(KETRA_SOURCE_DIR "/tests/documents/whole.cfg", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

TEST(RefusedDocument, TruncatedAnywhere)
{
    const Folder folder;
    const std::string text = wholeDocument();
    ASSERT_GT(text.size(), 2000u);
    for (std::size_t length = 0; length < text.size(); length += 5) {
        SCOPED_TRACE(length);
        EXPECT_TRUE(isReadOrRefused(folder.write("a.cfg", text.substr(0, length))));
    }
}

TEST(RefusedDocument, ChangedAnywhere)
{
    const Folder folder;
    const std::string text = wholeDocument();
    std::mt19937_64 random(20240); // a fixed seed: the same documents every time
    for (int i = 0; i < 600; ++i) {
        SCOPED_TRACE(i);
        std::string changed = text;
        for (int k = 0; k < 3; ++k) {
            const std::size_t at = random() % changed.size();
            switch (random() % 3) {
            case 0:
                changed[at] = static_cast<char>(random());
                break;
            case 1:
                changed.erase(at, random() % 40);
                break;
            default:
                changed.insert(at, text.substr(random() % text.size(), random() % 40));
            }
        }
        EXPECT_TRUE(isReadOrRefused(folder.write("a.cfg", changed)));
    }
}

} // namespace
