#pragma once

#include "Document.h"
#include "DocumentFormat.h"

#include <string>
#include <vector>

namespace host {

/// Holds a document against the format: keys that nobody reads, values of the wrong kind, unknown
/// units and words, groups that are missing, alternatives of which only one is read. The library
/// passes over most of these without a word. Reports to the findings; throws nothing of its own.
///
/// The spellings of units are the library's, which logs each refusal: no log should be open.
class FormatCheck
{
public:
    FormatCheck(const Document& checkedDocument, Findings& foundSoFar)
        : document(checkedDocument), findings(foundSoFar)
    {
    }
    void run();
    /// Whether a group of the document has no fault of the format, so that it can be read on.
    bool isGood(const char* group) const;

private:
    void checkSetting(const libconfig::Setting& setting, const Section& section);
    void checkGroup(const libconfig::Setting& group, const Section& section);
    void checkAlternatives(const libconfig::Setting& group, const Section& section);
    void checkValue(const libconfig::Setting& setting, const Key& key);
    void checkScalar(const libconfig::Setting& setting, const Key& key);
    void checkWord(const libconfig::Setting& setting, const Words& words);
    void checkQuantity(const libconfig::Setting& setting, const Key& key);
    void checkList(const libconfig::Setting& setting, const Key& key);
    void reportUnknown(const libconfig::Setting& setting, const Section& section);
    void reportKind(const libconfig::Setting& setting, const Key& key);

    void requireGroups();
    void checkVersion();
    void checkChamberPressure();

    const Document& document;
    Findings& findings;
    std::vector<std::string> faulty; // groups of the document
};

} // namespace host
