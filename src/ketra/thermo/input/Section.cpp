#include <ketra/thermo/input/Section.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

namespace {

class Reader final : public Fields
{
public:
    explicit Reader(const Setting& section) : group(section) {}

    void field(Node& member) override { member.read(group); }
    bool field(OptionalNode& member) override
    {
        if (!group.exists(member.getKey())) return false;
        member.renew().read(group);
        return true;
    }
    void sparse(Node& member) override { field(member); }
    bool sparse(OptionalNode& member) override { return field(member); }

private:
    const Setting& group;
};

class Writer final : public Fields
{
public:
    Writer(Setting& section, bool writeAll) : group(section), all(writeAll) {}

    void field(Node& member) override { member.write(group, all); }
    bool field(OptionalNode& member) override { return write(member, all); }
    void sparse(Node& member) override { member.write(group, false); }
    bool sparse(OptionalNode& member) override { return write(member, false); }

private:
    bool write(OptionalNode& member, bool writeAll)
    {
        Node* present = member.find();
        if (present != nullptr) present->write(group, writeAll);
        return present != nullptr;
    }

    Setting& group;
    bool all;
};

} // namespace

void Section::read(const Setting& parent)
{
    Reader reader(getSettings(parent));
    fields(reader);
}

void Section::write(Setting& parent, bool all)
{
    Writer writer(createSettings(parent), all);
    fields(writer);
}

} // namespace thermo::input
