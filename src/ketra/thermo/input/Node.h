#pragma once

#include <ketra/export.h>

#include <string>

namespace libconfig {
class Setting;
}

namespace thermo::input {

/// A named branch or leaf of the configuration document: something that can read itself out of the
/// group that holds it and write itself into one. The model mirrors the document key by key.
class KETRA_API Node
{
public:
    explicit Node(const char* key);
    explicit Node(const std::string& key) : name(key) {}
    Node(const Node&) = default;
    Node(Node&&) noexcept = default;
    Node& operator=(const Node&) = default;
    Node& operator=(Node&&) noexcept = default;
    virtual ~Node() = default;

    /// The key of this node in its parent group.
    virtual const std::string& getName() const { return name; }
    /// Checks what the section requires; the default requires nothing.
    /// \throws Exception 7 when a required alternative is missing
    virtual void validate() {}
    /// Takes the node's values out of the group \p parent.
    virtual void read(const libconfig::Setting& parent) = 0;
    /// Puts the node's values into the group \p parent; without \p all only those that differ from
    /// their defaults.
    virtual void write(libconfig::Setting& parent, bool all) = 0;

protected:
    // Groups that must be there.

    /// \throws libconfig::SettingNotFoundException if \p parent has no \p key
    static const libconfig::Setting& getSettings(const libconfig::Setting& parent, const char* key);
    const libconfig::Setting& getSettings(const libconfig::Setting& parent) const;

    // Groups, arrays and lists that are made when they are missing.

    static libconfig::Setting& createSettings(libconfig::Setting& parent, const char* key);
    libconfig::Setting& createSettings(libconfig::Setting& parent) const;
    static libconfig::Setting& createGroup(libconfig::Setting& parent, const char* key);
    static libconfig::Setting& createArray(libconfig::Setting& parent, const char* key);
    static libconfig::Setting& createList(libconfig::Setting& parent, const char* key);

    /// Logs \p text with a line end and throws: what `validate` does with a fault.
    /// \throws Exception 7 with \p text
    [[noreturn]] static void failInvalid(const char* text);

private:
    std::string name;
};

} // namespace thermo::input
