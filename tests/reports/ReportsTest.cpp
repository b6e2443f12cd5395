// Each folder beside this file is one case: a document, and its approved report in SI and in
// English units, each without and with transport properties. The library's report must be the same
// to the byte, line ends included. What it printed instead is left in the build folder, where
// tools/approve.py finds it.

#include <ketra/api/ketra.h>
#include <ketra/performance/TheoreticalPerformance.h>

#include <support/CapturingLogger.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr unsigned int siUnits = 0;
constexpr unsigned int englishUnits = 0x80;
constexpr unsigned int withTransport = 0x100;

std::vector<std::string> caseNames()
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(KETRA_REPORT_CASES))
        if (fs::exists(entry.path() / "case.cfg"))
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string contentOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string quoted(const std::string& text, std::size_t begin)
{
    if (begin >= text.size()) return "(end of report)";
    std::string line = text.substr(begin, text.find('\n', begin) - begin);
    for (std::size_t i = 0; (i = line.find('\r', i)) != std::string::npos; i += 2)
        line.replace(i, 1, "\\r");
    return '"' + line + '"';
}

// The first line in which two texts differ, as "line 7: approved "...", received "..."".
std::string firstDifference(const std::string& approved, const std::string& received)
{
    const auto [a, r] =
        std::mismatch(approved.begin(), approved.end(), received.begin(), received.end());
    const auto line = 1 + std::count(approved.begin(), a, '\n');
    const std::size_t same = static_cast<std::size_t>(a - approved.begin());
    const std::size_t newline = same == 0 ? std::string::npos : approved.rfind('\n', same - 1);
    const std::size_t begin = newline == std::string::npos ? 0 : newline + 1;
    return "line " + std::to_string(line) + ": approved " + quoted(approved, begin) +
           ", received " + quoted(received, begin);
}

class Report : public testing::TestWithParam<std::string>
{
protected:
    static void SetUpTestSuite()
    {
        loadThermodynamicsDatabase(KETRA_SOURCE_DIR "/resources/thermo.inp", true);
        loadPropertiesDatabase(KETRA_SOURCE_DIR "/resources/properties.inp");
        loadTransportPropertiesDatabase(KETRA_SOURCE_DIR "/resources/trans.inp");
    }

    // Solves the case anew and returns its report.
    static std::string printed(unsigned int flags)
    {
        const fs::path document = fs::path(KETRA_REPORT_CASES) / GetParam() / "case.cfg";
        ketra_test::LogCapture capture;
        const std::unique_ptr<thermo::input::ConfigFile, decltype(&deleteConfig)> config(
            loadConfig(document.c_str()), &deleteConfig);
        const std::unique_ptr<performance::TheoreticalPerformance, decltype(&deletePerformance)>
            performance(run(config.get()), &deletePerformance);
        if (!performance) {
            ADD_FAILURE() << "no solution: "
                          << (capture.errors().empty() ? "" : capture.errors()[0]);
            return {};
        }
        capture.clear();
        performance->printResults(flags);
        return capture.report();
    }

    static void expectAsApproved(const std::string& file, unsigned int flags)
    {
        const std::string received = printed(flags);
        const std::string approved = contentOf(fs::path(KETRA_REPORT_CASES) / GetParam() / file);
        const fs::path folder = fs::path(KETRA_RECEIVED_REPORTS) / GetParam();
        if (received == approved) {
            fs::remove(folder / file);
            return;
        }
        fs::create_directories(folder);
        std::ofstream(folder / file, std::ios::binary) << received;
        ADD_FAILURE() << file << ", " << firstDifference(approved, received)
                      << "\nsee tools/approve.py --help";
    }
};

TEST_P(Report, InSIUnitsIsAsApproved) { expectAsApproved("report.si.txt", siUnits); }

TEST_P(Report, InEnglishUnitsIsAsApproved) { expectAsApproved("report.english.txt", englishUnits); }

TEST_P(Report, InSIUnitsWithTransportIsAsApproved)
{
    expectAsApproved("report.si.transport.txt", siUnits | withTransport);
}

TEST_P(Report, InEnglishUnitsWithTransportIsAsApproved)
{
    expectAsApproved("report.english.transport.txt", englishUnits | withTransport);
}

TEST_P(Report, EndsEveryLineWithCarriageReturnAndLineFeed)
{
    const std::string text = printed(siUnits);
    ASSERT_FALSE(text.empty());
    for (std::size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 1))
        ASSERT_TRUE(i > 0 && text[i - 1] == '\r') << "bare line feed at " << i;
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
}

INSTANTIATE_TEST_SUITE_P(Cases, Report, testing::ValuesIn(caseNames()), [](const auto& parameter) {
    std::string name = parameter.param;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
});

TEST(ReportCases, HaveADocumentAndTheOriginOfTheirNumbers)
{
    const std::vector<std::string> names = caseNames();
    EXPECT_GE(names.size(), 9U);
    for (const std::string& name : names)
        EXPECT_FALSE(contentOf(fs::path(KETRA_REPORT_CASES) / name / "ORIGIN.md").empty()) << name;
}

} // namespace
