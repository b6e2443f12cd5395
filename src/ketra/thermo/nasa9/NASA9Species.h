#pragma once

#include <ketra/export.h>
#include <ketra/thermo/Species.h>

#include <string>

namespace thermo::nasa9 {

/// One record of a species file of the NASA Glenn form. It is read line by line: the first line
/// by the constructor, the header by loadHeader(), the intervals by loadPolynomial().
class KETRA_API NASA9Species : public Species
{
public:
    /// Parses the first line of a record: the name ends at the first blank, the rest is the
    /// description. Words of the description ("excited", "structure", "singlet", "triplet")
    /// lengthen the name, so that records which differ by their comment only have names of their
    /// own. \p withPolynomial makes a complete record with one empty interval, for the setters.
    NASA9Species(const std::string& line, bool reactantOnly, bool withPolynomial);
    NASA9Species(const NASA9Species&) = default;
    NASA9Species& operator=(const NASA9Species&) = default;
    ~NASA9Species() override;
    /// \returns a new record, the caller's.
    static NASA9Species* create(const std::string& line, bool reactantOnly, bool withPolynomial);

    /// Reads the second line. \throws runtime::Exception 1 if the number of the first element is
    /// not above 0 and at most 999999, or a number is not finite.
    void loadHeader(const std::string& line);
    /// Reads one line of an interval. \throws runtime::Exception 1, see NASA9Polynomial::load.
    void loadPolynomial(std::string& line);

    bool isCompleted() const override { return numberOfIntervals == 0; }
    bool isReactantOnly() const override { return reactantOnly; }
    /// True if the header declares no intervals: a record of a single temperature.
    bool isSingleLine() const { return singleLine; }
    /// Intervals still to be read; -1 before the header.
    int getNumberOfIntervals() const { return numberOfIntervals; }

    /// Appends the lines of the record. With \p fileSourceId not negative and not the record's own
    /// source nothing is appended.
    /// \throws runtime::Exception 0 after a logged error if a value does not fit its column.
    void writeTo(std::string& out, int fileSourceId) const override;
    /// Appends the record as one object of Database::saveNASA9AsJSON(). With \p fileSourceId not
    /// negative and not the record's own source nothing is appended.
    void writeToAsJSON(std::string& out, int fileSourceId) const override;

protected:
    /// Reads the five element fields of the header. Unknown symbols are passed over.
    void parseFormula(const std::string& field);

private:
    void finishName();

    bool reactantOnly;
    bool singleLine = true;
    int numberOfIntervals = -1;
};

} // namespace thermo::nasa9
