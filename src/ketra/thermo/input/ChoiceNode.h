#pragma once

#include <ketra/thermo/input/Node.h>

#include <string>

namespace thermo::input {

/// The document's side of a key whose text is one of a few words: `type = "by stored gas";`.
/// Which words there are is the business of `Choice`.
class KETRA_API ChoiceNode : public Node
{
protected:
    using Node::Node;

    /// The text in \p parent, or \p assumed if there is none.
    std::string readText(const libconfig::Setting& parent, const char* assumed) const;
    /// Writes \p text, and only with \p all: nothing tells a stated word from an assumed one.
    void writeText(libconfig::Setting& parent, bool all, const char* text) const;
    /// Logs that \p text is no \p what, and throws.
    /// \throws Exception 4
    [[noreturn]] static void failUnknown(const char* what, const char* text);
};

} // namespace thermo::input
