#include <ketra/thermo/input/Section.h>

#include <ketra/thermo/input/ListNode.h>

#include <libconfig.h++>

using libconfig::Setting;

namespace thermo::input {

namespace {

class Reader final : public Fields
{
public:
    explicit Reader(const Setting& section) : group(section) {}

    void field(Node& member) override { member.read(group); }
    bool field(const char* sought, OptionalNode& member) override
    {
        if (!group.exists(sought)) return false;
        member.renew().read(group);
        return true;
    }
    void ifThere(Node& member) override
    {
        if (group.exists(member.getName())) member.read(group);
    }
    bool ifAny(ListNode& member) override
    {
        member.read(group);
        return group.exists(member.getName());
    }
    void sparse(Node& member) override { field(member); }
    bool sparse(OptionalNode& member) override { return Fields::field(member); }
    void always(Node& member) override { field(member); }
    bool isReading() const override { return true; }

private:
    const Setting& group;
};

class Writer final : public Fields
{
public:
    Writer(Setting& section, bool writeAll) : group(section), all(writeAll) {}

    void field(Node& member) override { member.write(group, all); }
    bool field(const char*, OptionalNode& member) override { return write(member, all); }
    void ifThere(Node& member) override { member.write(group, all); }
    bool ifAny(ListNode& member) override
    {
        if (member.size() > 0) member.write(group, all);
        return member.size() > 0;
    }
    void sparse(Node& member) override { member.write(group, false); }
    bool sparse(OptionalNode& member) override { return write(member, false); }
    void always(Node& member) override { member.write(group, true); }
    bool isReading() const override { return false; }

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

void Section::read(const Setting& parent) { readMembers(getSettings(parent)); }

void Section::write(Setting& parent, bool all) { writeMembers(createSettings(parent), all); }

void Section::readMembers(const Setting& group)
{
    Reader reader(group);
    fields(reader);
}

void Section::writeMembers(Setting& group, bool all)
{
    Writer writer(group, all);
    fields(writer);
}

} // namespace thermo::input
