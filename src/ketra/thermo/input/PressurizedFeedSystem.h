#pragma once

#include <ketra/thermo/input/Choice.h>
#include <ketra/thermo/input/FeedSystem.h>

namespace thermo::input {

struct PressurizedFeedSystemTypes {
    enum TYPE : std::int32_t { STORED_GAS, VAPORIZED_PROPELLANT, GENERATED_GAS };
    static constexpr const char* what = "pressurized feed system type";
    static constexpr const char* assumed = "by stored gas";
    // clang-format off
    static constexpr Word<TYPE> table[] = {
        {STORED_GAS,           {"by stored gas", "byStoredGas", "by_stored_gas"}},
        {VAPORIZED_PROPELLANT, {"by vaporized propellant", "byVaporizedPropellant",
                                "by_vaporized_propellant"}},
        {GENERATED_GAS,        {"by chemically generated gas", "byChemicallyGeneratedGas",
                                "by_chemically_generated_gas"}},
    };
    // clang-format on
};

/// Propellants that a gas presses out of their tanks.
class KETRA_API PressurizedFeedSystem : public FeedSystem
{
public:
    using TYPE = PressurizedFeedSystemTypes::TYPE;
    using enum PressurizedFeedSystemTypes::TYPE;

    explicit PressurizedFeedSystem(TYPE initial = STORED_GAS)
        : FeedSystem("gasPressurizedFeedSystem", FeedSide::Feed::Gas), type("type", initial)
    {
    }

    /// Where the gas comes from.
    TYPE getType() const { return type.get(); }
    void setType(TYPE newType) { type.set(newType); }
    /// The word of the document for \p wanted.
    static const char* typeToRaw(TYPE wanted)
    {
        return Choice<PressurizedFeedSystemTypes>::toRaw(wanted);
    }
    /// The type spelt \p text; logs what it does not know.
    /// \throws Exception 4
    static TYPE rawToType(const char* text)
    {
        return Choice<PressurizedFeedSystemTypes>::fromRaw(text);
    }

    /// Makes both sides absent; the type stays.
    void reset();

protected:
    const char* getRawType() const { return typeToRaw(type.get()); }
    /// \throws Exception 4
    void setRawType(const char* text) { type.set(rawToType(text)); }

private:
    void fields(Fields& walk) override;

    Choice<PressurizedFeedSystemTypes> type;
};

} // namespace thermo::input
