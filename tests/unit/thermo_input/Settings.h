#pragma once

#include <libconfig.h++>

#include <string>

namespace ketra_test {

/// A document in memory, for nodes to read from and to write into.
class Settings
{
public:
    explicit Settings(const std::string& text = "")
    {
        config.setAutoConvert(true);
        // Not for nothing: the parser leaves the thread without its locale.
        if (!text.empty()) config.readString(text);
    }
    libconfig::Setting& root() { return config.getRoot(); }
    libconfig::Setting& operator[](const char* path) { return config.lookup(path); }
    bool has(const char* path) const { return config.exists(path); }

private:
    libconfig::Config config;
};

/// How many scalars stand in \p setting and everything below it.
inline int countScalars(const libconfig::Setting& setting)
{
    if (!setting.isAggregate()) return 1;
    int count = 0;
    for (int i = 0; i < setting.getLength(); ++i) count += countScalars(setting[i]);
    return count;
}

/// Reads \p section out of a group with these members.
template <class S> void readText(S& section, const std::string& members)
{
    Settings settings(section.getName() + " = { " + members + " };");
    section.read(settings.root());
}

} // namespace ketra_test
