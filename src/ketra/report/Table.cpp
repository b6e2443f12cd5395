#include <ketra/report/Table.h>

#include <ketra/util/Log.h>

using util::eol;
using util::Log;

namespace report {

void Table::openFrame()
{
    Log::printf("THERMO", "%s***************************************************%s", eol, eol);
}

void Table::closeFrame()
{
    Log::printf("THERMO", "***************************************************%s", eol);
}

void Table::rule() const
{
    Log::printf("THERMO", "-------------------------------------------------------------%s", eol);
}

void Table::heading(const char* text) const { Log::printf("THERMO", "%s%s", text, eol); }

void Table::title(const char* text) const { Log::printf("THERMO", "%s%s%s", eol, text, eol); }

void Table::row3(const char* name, const Shown& shown) const
{
    Log::printf("THERMO", "%19s:\t %10.3f\t %10s%s", name, value(shown), unit(shown), eol);
}

void Table::row(const char* name, const Shown& shown) const
{
    Log::printf("THERMO", "%19s:\t %10.5f\t %10s%s", name, value(shown), unit(shown), eol);
}

void Table::row7(const char* name, const Shown& shown) const
{
    Log::printf("THERMO", "%19s:\t %10.7f\t %10s%s", name, value(shown), unit(shown), eol);
}

void Table::more3(const Shown& shown) const
{
    Log::printf("THERMO", "%20s\t %10.3f\t %10s%s", "", value(shown), unit(shown), eol);
}

void Table::more(const Shown& shown) const
{
    Log::printf("THERMO", "%20s\t %10.5f\t %10s%s", "", value(shown), unit(shown), eol);
}

void Table::bare7(const char* name, double x) const
{
    Log::printf("THERMO", "%19s:\t %10.7f%s", name, x, eol);
}

void Table::word(const char* name, const char* text) const
{
    Log::printf("THERMO", "%19s:\t %10s%s", name, text, eol);
}

} // namespace report
