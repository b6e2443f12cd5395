#include <ketra/thermo/input/detail/SourceText.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace thermo::input::detail {

namespace {

constexpr std::size_t largestText = 8u << 20; // bytes, with all comments
constexpr std::size_t largestGroup = 1000;    // settings; no group of the format has more than 20
constexpr unsigned int deepestInclude = 10;   // as the parser allows

std::string readFile(const std::string& path)
{
    if (std::filesystem::is_directory(path)) throw std::runtime_error(path + " is a folder");
    std::ifstream stream(path, std::ios::binary);
    std::string text;
    char block[16384];
    while (stream.read(block, sizeof block) || stream.gcount() > 0) {
        text.append(block, static_cast<std::size_t>(stream.gcount()));
        if (text.size() > largestText) throw std::runtime_error(path + " is too large");
    }
    if (!stream.eof()) throw std::runtime_error(path + " cannot be read");
    return text;
}

/// Walks over a text as the parser's scanner does: past strings and comments.
class Scanner
{
public:
    explicit Scanner(const std::string& source) : text(source) {}

    /// The largest number of settings in one group, in whatever depth.
    std::size_t countSettings()
    {
        std::vector<std::size_t> open{0};
        std::size_t largest = 0;
        for (; at < text.size(); ++at) {
            if (skipped()) continue;
            switch (text[at]) {
            case '{':
                open.push_back(0);
                break;
            case '}':
                if (open.size() > 1) open.pop_back();
                break;
            case '=':
            case ':':
                largest = std::max(largest, ++open.back());
                break;
            default:
                break;
            }
        }
        return largest;
    }

private:
    // Steps to the last character of a string or comment that begins here.
    bool skipped()
    {
        if (text[at] == '"') {
            for (++at; at < text.size() && text[at] != '"'; ++at)
                if (text[at] == '\\') ++at;
            return true;
        }
        if (text[at] == '#' || text.compare(at, 2, "//") == 0) return skipTo("\n");
        return text.compare(at, 2, "/*") == 0 && skipTo("*/");
    }

    bool skipTo(const std::string& end)
    {
        const std::size_t found = text.find(end, at + 1);
        at = found == std::string::npos ? text.size() : found + end.size() - 1;
        return true;
    }

    const std::string& text;
    std::size_t at = 0;
};

// The file that the line from \p begin to \p end includes; empty if it includes none.
std::string includedFile(const std::string& text, std::size_t begin, std::size_t end)
{
    const std::string directive = "@include";
    const std::size_t at = text.find_first_not_of(" \t", begin);
    if (at == std::string::npos || at >= end || text.compare(at, directive.size(), directive) != 0)
        return {};
    const std::size_t open = text.find('"', at);
    const std::size_t close = open < end ? text.find('"', open + 1) : std::string::npos;
    return close < end ? text.substr(open + 1, close - open - 1) : std::string();
}

// A file that does not exist is left to the parser, which reports it like any other error.
void requireParsable(const std::string& text, unsigned int depth)
{
    if (Scanner(text).countSettings() > largestGroup)
        throw std::runtime_error("too many settings in one group");
    if (depth == deepestInclude) return;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string included = includedFile(text, begin, end);
        if (!included.empty() && std::filesystem::exists(included))
            requireParsable(readFile(included), depth + 1);
        begin = end + 1;
    }
}

} // namespace

std::string readSource(const std::string& path)
{
    std::string text = readFile(path);
    requireParsable(text, 0);
    return text;
}

} // namespace thermo::input::detail
