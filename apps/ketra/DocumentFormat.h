#pragma once

#include <span>
#include <string>
#include <vector>

namespace host {

/// What stands behind a key of the document.
enum class Kind {
    TEXT,     ///< a string
    WORD,     ///< a string out of a list of words
    BOOLEAN,  ///< true or false
    WHOLE,    ///< a whole number
    REAL,     ///< a number with a point or an exponent
    QUANTITY, ///< a group { value, unit }
    GROUP,    ///< a group of further keys
    LIST      ///< a list of groups
};

/// The words that a key accepts.
struct Words {
    const char* what; ///< for messages: "unit of pressure"
    bool (*accepts)(const char* word);
    std::vector<std::string> (*all)();
};

struct Section;

/// Keys that exclude each other: of the alternatives of one group, the format reads that of the
/// lowest rank and passes over the rest.
struct Either {
    char group = 0; ///< 0: excludes nothing
    int rank = 0;
};

/// One key of a section.
struct Key {
    const char* name;
    Kind kind;
    const Words* words = nullptr;     ///< of a WORD or the unit of a QUANTITY
    const Section* section = nullptr; ///< of a GROUP or of the elements of a LIST
    Either either = {};
};

/// The keys of a group.
struct Section {
    std::span<const Key> keys;

    const Key* find(const char* name) const;
    std::vector<std::string> names() const;
};

/// The whole format, version 1.2.
extern const Section documentFormat;

/// The path of a section that has this key, as "propellant.components"; empty if none has it.
std::string whereKeyBelongs(const std::string& name);

} // namespace host
