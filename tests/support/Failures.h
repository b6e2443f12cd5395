#pragma once

#include <ketra/runtime/Exception.h>

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <typeinfo>

namespace ketra_test {

/// Runs \p action and checks that it throws exactly a \p Type with this code and, if \p message is
/// not null, this text. "Exactly": a bare runtime::Exception is not one of its family.
template <class Type, class Action>
void expectFailure(Action action, unsigned int code, const char* message, const char* statement,
                   const char* file, int line)
{
    try {
        action();
    } catch (const runtime::Exception& e) {
        if (typeid(e) != typeid(Type))
            ADD_FAILURE_AT(file, line)
                << statement << "\n  throws a " << typeid(e).name() << " " << e.getType() << " \""
                << e.getMessage() << "\",\n  expected a " << typeid(Type).name();
        else if (e.getType() != code)
            ADD_FAILURE_AT(file, line) << statement << "\n  throws code " << e.getType() << " \""
                                       << e.getMessage() << "\", expected " << code;
        else if (message != nullptr && std::string(message) != e.getMessage())
            ADD_FAILURE_AT(file, line) << statement << "\n  throws \"" << e.getMessage()
                                       << "\", expected \"" << message << "\"";
        return;
    } catch (const std::exception& e) {
        ADD_FAILURE_AT(file, line) << statement << "\n  throws a " << typeid(e).name() << ": "
                                   << e.what() << ",\n  expected a " << typeid(Type).name();
        return;
    }
    ADD_FAILURE_AT(file, line) << statement << "\n  does not throw, expected a "
                               << typeid(Type).name() << " " << code;
}

} // namespace ketra_test

/// The statement throws exactly an exception of this type with this code.
#define KETRA_EXPECT_THROW_CODE(statement, Type, code)                                             \
    ::ketra_test::expectFailure<Type>([&] { statement; }, code, nullptr, #statement, __FILE__,     \
                                      __LINE__)

/// The same, with this text.
#define KETRA_EXPECT_THROW_MESSAGE(statement, Type, code, message)                                 \
    ::ketra_test::expectFailure<Type>([&] { statement; }, code, message, #statement, __FILE__,     \
                                      __LINE__)
