#pragma once

#include <ketra/thermo/input/ChoiceNode.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace thermo::input {

/// One row of the table of a choice.
template <class Enumeration> struct Word {
    Enumeration type;
    std::array<const char*, 4> spellings; ///< accepted texts, the first one is printed
};

/// A key of the document whose text is one of a few words.
///
/// \p Words has the table `table` of an enumeration, the words `what` of the unknown-type
/// message, and the text `assumed` that stands for an absent key. Only a whole document holds the
/// word: nothing tells a stated word from an assumed one.
template <class Words> class KETRA_API Choice : public ChoiceNode
{
public:
    using TYPE = decltype(Words::table[0].type);

    Choice(const char* key, TYPE initial) : ChoiceNode(key), type(initial) {}

    TYPE get() const { return type; }
    void set(TYPE newType) { type = newType; }
    const char* getRaw() const { return toRaw(type); }
    /// \throws Exception 4 if \p text is none of the words
    void setRaw(const char* text) { type = fromRaw(text); }

    /// The text of \p wanted as the document writes it; what is no type has the first one's.
    static const char* toRaw(TYPE wanted)
    {
        for (const Word<TYPE>& word : Words::table)
            if (word.type == wanted) return word.spellings[0];
        return Words::table[0].spellings[0];
    }
    /// The type spelt \p text, with the case of its letters; logs what it does not know.
    /// \throws Exception 4
    static TYPE fromRaw(const char* text)
    {
        const char* given = text != nullptr ? text : "";
        for (const Word<TYPE>& word : Words::table)
            for (const char* spelling : word.spellings)
                if (spelling != nullptr && std::strcmp(given, spelling) == 0) return word.type;
        failUnknown(Words::what, given);
    }

    /// \throws Exception 4 for an unknown word
    void read(const libconfig::Setting& parent) override
    {
        setRaw(readText(parent, Words::assumed).c_str());
    }
    void write(libconfig::Setting& parent, bool all) override { writeText(parent, all, getRaw()); }

private:
    TYPE type;
};

} // namespace thermo::input
