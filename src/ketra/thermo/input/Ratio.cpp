#include <ketra/thermo/input/Ratio.h>

#include <ketra/thermo/input/Exception.h>
#include <ketra/thermo/input/detail/codes.h>
#include <ketra/util/Log.h>

#include <libconfig.h++>

#include <cstring>

namespace thermo::input {

namespace {

struct Spelling {
    const char* text;
    Ratio::UNITS unit;
};

constexpr Spelling spellings[] = {
    {"km", Ratio::KM},           {"Km", Ratio::KM},       {"O/F", Ratio::KM},
    {"o/f", Ratio::KM},          {"alpha", Ratio::ALPHA}, {"optimal", Ratio::OPTIMAL},
    {"optimum", Ratio::OPTIMAL}, {"opt", Ratio::OPTIMAL},
};

} // namespace

double Ratio::set(double newValue, UNITS in)
{
    value.set(newValue);
    unit = in;
    return newValue;
}

const char* Ratio::unitToRaw(UNITS wanted)
{
    switch (wanted) {
    case ALPHA:
        return "alpha";
    case OPTIMAL:
        return "optimal";
    default:
        return "O/F";
    }
}

Ratio::UNITS Ratio::rawToUnit(const char* text)
{
    const char* given = text != nullptr ? text : "";
    for (const Spelling& spelling : spellings)
        if (std::strcmp(given, spelling.text) == 0) return spelling.unit;
    util::Log::errorf("THERMO", "Could not set component ratio: unknown unit %s\n", given);
    throw Exception(codes::unknownWord, "Unknown component ratio unit");
}

void Ratio::read(const libconfig::Setting& parent)
{
    getSettings(parent); // unlike a quantity, a ratio that is read must be there
    std::string text = "km";
    readGroup(parent, text);
    setRawUnit(text.c_str());
}

void Ratio::write(libconfig::Setting& parent, bool all) { writeGroup(parent, all, getRawUnit()); }

} // namespace thermo::input
