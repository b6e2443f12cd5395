#include <ketra/thermo/Species.h>

#include <ketra/math/interpolation/Interpolation.h>
#include <ketra/math/interpolation/Interpolation2D.h>
#include <ketra/math/matrix/RowVector.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/detail/Columns.h>
#include <ketra/thermo/detail/PropertiesFormat.h>
#include <ketra/util/Log.h>

namespace thermo {

using math::interpolation::Interpolation;
using math::interpolation::Interpolation2D;

namespace {

constexpr std::size_t column = 15;     // from the beginning of one value to that of the next
constexpr std::size_t columnRead = 14; // of which this much is read

double value(const Interpolation2D* table, unsigned int iT, unsigned int iP)
{
    const bool holds =
        table != nullptr && iT < table->getValues()->rowCount() && iP < table->getY()->size();
    return holds ? table->getValues()->at(iT, iP) : 0.0;
}

double value(const Interpolation* table, unsigned int i)
{
    return table != nullptr && i < table->getValues()->size() ? table->getValues()->at(i) : 0.0;
}

} // namespace

void Species::writePropertiesTo(std::string& out, int fileSourceId) const
{
    if (fileSourceId >= 0 && fileSourceId != tableSourceId) return;
    // The grid of all tables is that of the specific heat.
    const Interpolation2D* const axes = data->cp.get();
    if (axes == nullptr) {
        if (!data->rho && !data->mu && !data->lambda && !data->ts && !data->qs) return;
        util::Log::errorf("ROOT",
                          "Database: could not write properties of species %s: it has no "
                          "table of specific heat\n",
                          name.c_str());
        throw runtime::Exception(0);
    }
    const unsigned int nP = axes->getY()->size();
    const unsigned int nT = axes->getX()->size();

    detail::Columns line(out, name);
    line.text(16, name);
    line.number(10, 0, "the size of the table", " %2u,%2u", nP, nT);
    line.endLine(0);
    for (unsigned int iP = 0; iP < nP; ++iP) {
        for (unsigned int iT = 0; iT < nT; ++iT) {
            // One blank less behind the last value of a line: nothing follows it.
            const bool first = iT == 0;
            line.number(columnRead, column, "a pressure", "%10.6f", axes->getY()->at(iP) / 1e6);
            line.number(columnRead, column, "a temperature", "%6.2f", axes->getX()->at(iT));
            line.number(columnRead, column, "a specific heat", "%8.5f",
                        value(axes, iT, iP) / getM());
            line.number(columnRead, column, "a density", "%9.4f", value(data->rho.get(), iT, iP));
            line.number(columnRead, column, "a viscosity", "%9.4f",
                        value(data->mu.get(), iT, iP) * 1e6);
            line.number(columnRead, first ? column : 0, "a conductivity", "%9.5f",
                        value(data->lambda.get(), iT, iP) * 1000.0);
            if (first) {
                line.number(columnRead, column, "a boiling temperature", "%6.2f",
                            value(data->ts.get(), iP));
                line.number(columnRead, 0, "a heat of vaporisation", "%8.4f",
                            value(data->qs.get(), iP) / 1000.0);
            }
            line.endLine(0);
        }
    }
    out += detail::propertiesRule();
}

} // namespace thermo
