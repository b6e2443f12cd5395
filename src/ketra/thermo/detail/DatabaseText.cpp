#include <ketra/thermo/detail/DatabaseText.h>

#include <ketra/thermo/detail/Columns.h>
#include <ketra/thermo/detail/PropertiesFormat.h>

namespace thermo::detail {

namespace {

constexpr std::size_t recordWidth = 80;

constexpr const char* title[] = {
    "!",
    "!                      SIX-CHARACTER REFERENCE-DATE CODES",
    "!",
};

// clang-format off
constexpr const char* referenceTable[] = {
    "!  Letters         Reference                         Numbers",
    "!  __________________________________________________________________",
    "!",
    "!    g      Glenn Research Center              month/year calculated",
    "!",
    "!    j      NIST-JANAF Thermochemical          month/year of table",
    "!           Tables",
    "!",
    "!    tpis   Thermodynamic Properties of        year of volume",
    "!           Individual Substances",
    "!",
    "!    n      TRC Thermodynamic Tables, NIST     month/year of table",
    "!",
    "!    bar    Thermochemical Data of             year of volume",
    "!           Pure Substances",
    "!",
    "!    coda   CODATA Key Values for              year of volume",
    "!           Thermodynamics",
    "!",
    "!    srd    Standard Reference Data            year of the journal volume",
    "",
};

constexpr const char* userTable[] = {
    "!                             USER-DEFINED DATABASE",
    "!    Insert your data with temperature intervals before the line \"END PRODUCTS\"",
    "!    Insert other data between lines \"END PRODUCTS\" and \"END REACTANTS\"",
    "",
};

constexpr const char* columnNames =
    "!Pressure      Temperature    Cp             Density        Viscosity      Therm.Cond.    Temp.of Vapor. Heat of Vapor.";
constexpr const char* columnUnits =
    "!MPa           K              kJ/(kg-K)      kg/m^3         \u00b5Pa-s          mW/m-K         Ts(p), K       Qs(Ts), kJ/kg";
// clang-format on

template <std::size_t n> void append(std::string& text, const char* const (&lines)[n])
{
    for (const char* line : lines) appendLine(text, line, recordWidth);
}

} // namespace

std::string nasa9Head(bool userFile)
{
    std::string text;
    append(text, title);
    if (userFile)
        append(text, userTable);
    else
        append(text, referenceTable);
    return text;
}

std::string propertiesHead()
{
    std::string text;
    appendLine(text, "!", propertiesWidth);
    appendLine(text, "!                                                 PROPERTIES OF COMPONENTS",
               propertiesWidth);
    appendLine(text, "!Format Version 2", propertiesWidth);
    text += propertiesRule();
    appendLine(text, columnNames, propertiesWidth);
    appendLine(text, columnUnits, propertiesWidth);
    return text + propertiesRule();
}

std::string propertiesFoot()
{
    std::string text;
    appendLine(text, columnUnits, propertiesWidth);
    appendLine(text, columnNames, propertiesWidth);
    return text + propertiesRule();
}

} // namespace thermo::detail
