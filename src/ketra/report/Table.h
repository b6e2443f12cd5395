#pragma once

#include <ketra/report/Flags.h>
#include <ketra/report/Shown.h>

namespace report {

/// The lines of a printed report: a name, a value and its unit, in the system of units that the
/// flags choose. Prints through util::Log under the tag "THERMO"; every line ends in CR LF.
class Table
{
public:
    /// \param flags the flags of the printing function; bit 0x80 selects English units
    explicit Table(unsigned flags) : englishSystem((flags & englishUnits) != 0) {}

    /// The report shows English units.
    bool english() const { return englishSystem; }
    /// The number and the unit that stand in the report.
    double value(const Shown& shown) const { return englishSystem ? shown.english : shown.si; }
    const char* unit(const Shown& shown) const
    {
        return englishSystem ? shown.englishUnit : shown.siUnit;
    }

    /// The lines of stars before the title of a station and after it.
    static void openFrame();
    static void closeFrame();
    /// A line of dashes.
    void rule() const;
    /// A line of text.
    void heading(const char* text) const;
    /// A line end, then a line of text.
    void title(const char* text) const;

    /// Name, value and unit with three, five or seven decimals: "%19s:\t %10.5f\t %10s%s".
    void row3(const char* name, const Shown& shown) const;
    void row(const char* name, const Shown& shown) const;
    void row7(const char* name, const Shown& shown) const;
    /// The next line of the same quantity: "%20s\t %10.5f\t %10s%s" with an empty name.
    void more3(const Shown& shown) const;
    void more(const Shown& shown) const;
    /// Name and value without a column for the unit: "%19s:\t %10.7f%s".
    void bare7(const char* name, double x) const;
    /// Name and a word in place of a value: "%19s:\t %10s%s".
    void word(const char* name, const char* text) const;

private:
    bool englishSystem;
};

} // namespace report
