#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Loader.h>

#include <memory>
#include <string>
#include <string_view>

namespace thermo::nasa9 {

class NASA9Species;

/// Reads a species file of the NASA Glenn form. A later record replaces an earlier one of the same
/// name and keeps its id and place; an invalid or interrupted record is dropped with a warning.
class KETRA_API NASA9Loader : public Loader
{
public:
    using Loader::Loader;
    ~NASA9Loader() override;

    void load(std::ifstream& stream, int sourceId) override;

protected:
    /// Takes an incomplete species out of the tables, and deletes it. Does nothing for a null
    /// pointer or a complete species.
    void removeSpecies(Species* unfinished);

private:
    struct State;
    void readLine(std::string_view line, State& state);
    void continueRecord(std::string_view line, State& state);
    void startRecord(std::string_view line, State& state);
    void drop(const char* why, State& state);
};

} // namespace thermo::nasa9
