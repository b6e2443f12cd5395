#include <ketra/thermo/input/detail/Document.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/SettingText.h>
#include <ketra/thermo/input/detail/SourceText.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <cstdio>
#include <new>
#include <string>

namespace thermo::input::detail {

namespace {

struct StreamCloser {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

std::unique_ptr<libconfig::Config> emptyDocument()
{
    auto document = std::make_unique<libconfig::Config>();
    document->setAutoConvert(true);
    return document;
}

// The parser gets the text and never the file: on a read error its scanner would end the process.
// \throws libconfig::ParseException
std::unique_ptr<libconfig::Config> parse(std::string text)
{
    std::unique_ptr<libconfig::Config> document = emptyDocument();
    const std::unique_ptr<std::FILE, StreamCloser> stream(fmemopen(text.data(), text.size(), "r"));
    if (stream == nullptr) throw std::bad_alloc();
    document->read(stream.get());
    return document;
}

// Every line with CR LF at its end, the last one included.
std::string withRepairedLineEnds(const std::string& text)
{
    std::string repaired;
    repaired.reserve(text.size() + text.size() / 16);
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t newline = text.find('\n', begin);
        const std::size_t end = newline == std::string::npos ? text.size() : newline;
        std::size_t last = end;
        while (last > begin && text[last - 1] == '\r') --last;
        repaired.append(text, begin, last - begin).append("\r\n");
        begin = end + 1;
    }
    return repaired;
}

// A file that cannot be written to is left alone, and counts as a document without settings.
std::unique_ptr<libconfig::Config> repair(const char* path, const std::string& text)
{
    util::Log::warnf("THERMO", "Could not load configuration file %s. Trying to repair it...\n",
                     path);
    try {
        const std::string repaired = withRepairedLineEnds(text);
        if (!replaceFile(path, repaired)) return emptyDocument();
        return parse(repaired);
    } catch (...) {
        util::Log::errorf("THERMO", "Could not repair configuration file %s\n", path);
        throw Exception(codes::notLoaded);
    }
}

} // namespace

std::unique_ptr<libconfig::Config> loadDocument(const char* path)
{
    std::string text;
    try {
        text = readSource(path);
        return parse(text);
    } catch (const libconfig::ParseException&) {
        return repair(path, text);
    } catch (...) {
        util::Log::errorf("THERMO", "Could not load configuration file %s\n", path);
        throw Exception(codes::notLoaded);
    }
}

void saveDocument(const libconfig::Setting& root, const char* path)
{
    bool written = false;
    try {
        written = replaceFile(path, toText(root));
    } catch (const std::exception& e) {
        util::Log::errorf("THERMO", "%s\n", e.what());
    }
    if (written) return;
    util::Log::errorf("THERMO", "Could not write configuration file %s\n", path);
    throw Exception(codes::notLoaded, "Could not write configuration file");
}

} // namespace thermo::input::detail
