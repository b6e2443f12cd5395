#include "Failure.h"

#include <ketra/math/equation/Exception.h>
#include <ketra/math/interpolation/Exception.h>
#include <ketra/math/matrix/Exception.h>
#include <ketra/runtime/Exception.h>
#include <ketra/thermo/Exception.h>
#include <ketra/thermo/input/Exception.h>

#include <libconfig.h++>

#include <exception>
#include <new>

namespace host {
namespace {

ExitCode codeOf(Stage stage, const thermo::Exception& e)
{
    switch (e.getType()) {
    case 4: // unknown species
        return DATA;
    case 5: // sums of fractions
    case 6:
        return DOCUMENT;
    case 1: // a temperature that a species cannot hold: stated so, or reached by the iteration
    case 2: // a pressure, likewise
        return stage == Stage::SOLVING ? NOT_CONVERGED : DOCUMENT;
    case 0:  // a search that did not come to an end, or an invalid state
    case 18: // a condensed phase made the matrix singular
        return stage == Stage::SOLVING ? NOT_CONVERGED : INTERNAL;
    case 8:  // equilibrium
    case 9:  // chamber end
    case 10: // throat
    case 11: // nozzle section
    case 12: // derivatives
    case 13: // frozen nozzle section
    case 14: // problem
        return NOT_CONVERGED;
    default:
        return INTERNAL;
    }
}

std::string sentence(ExitCode code, const std::string& subject, const std::string& why)
{
    switch (code) {
    case DOCUMENT:
        return subject + ": the document cannot be used: " + why;
    case DATA:
        return subject + ": species data are missing: " + why;
    case NOT_CONVERGED:
        return subject + ": the calculation did not converge: " + why;
    default:
        return subject + ": " + why;
    }
}

std::string numbered(const runtime::Exception& e)
{
    const std::string text = e.getMessage();
    return (text.empty() ? "error" : text) + " (code " + std::to_string(e.getType()) + ")";
}

} // namespace

Failure describeException(Stage stage, const std::string& subject)
try {
    throw;
} catch (const Failure& e) {
    return e;
} catch (const thermo::Exception& e) {
    const ExitCode code = codeOf(stage, e);
    return {code, sentence(code, subject, numbered(e))};
} catch (const thermo::input::Exception& e) {
    return {DOCUMENT, sentence(DOCUMENT, subject, numbered(e))};
} catch (const math::interpolation::Exception& e) {
    const ExitCode code = stage == Stage::SOLVING ? NOT_CONVERGED : INTERNAL;
    return {code, sentence(code, subject, numbered(e))};
} catch (const math::matrix::Exception& e) {
    const ExitCode code = stage == Stage::SOLVING ? NOT_CONVERGED : INTERNAL;
    return {code, sentence(code, subject, numbered(e))};
} catch (const math::equation::Exception& e) {
    const ExitCode code = stage == Stage::SOLVING ? NOT_CONVERGED : INTERNAL;
    return {code, sentence(code, subject, numbered(e))};
} catch (const runtime::Exception& e) {
    const ExitCode code = stage == Stage::LOADING ? DATA : INTERNAL;
    return {code,
            sentence(code, subject, e.getType() == 0 ? "the file cannot be read" : numbered(e))};
} catch (const libconfig::SettingException& e) {
    return {DOCUMENT,
            sentence(DOCUMENT, subject,
                     std::string("\"") + e.getPath() + "\" is missing or of a wrong kind")};
} catch (const libconfig::ConfigException& e) {
    return {DOCUMENT, sentence(DOCUMENT, subject, e.what())};
} catch (const std::bad_alloc&) {
    return {INTERNAL, subject + ": out of memory"};
} catch (const std::exception& e) {
    return {INTERNAL, subject + ": " + e.what()};
} catch (...) {
    return {INTERNAL, subject + ": unknown error"};
}

} // namespace host
