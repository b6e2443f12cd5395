#include "Options.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>

namespace convergence {

const char* const usage =
    R"(convergence [options]: solves random engines and grids of states, judges every result by its
certificate, and counts what fails, by kind. The output does not depend on the threads.

  --suite NAME   only this one: cases, or of the cases ordinary, extreme, exotic, shifting, frozen,
                 finite-area, throttling, separation, optimum; engines; graphite, ions, Fe-O, Al-O,
                 B-O, Mg-O, oxides
  --cases N      random cases, 100,000 unless told otherwise
  --only N       case N alone, with what it is and what became of it
  --engines N    engines of the sweep, 2,000 unless told otherwise
  --every N      only every Nth state of the grids
  --seed S       of the random cases and engines, 1 unless told otherwise
  --defaults     without further attempts and warm starts: the method alone; nothing is demanded
  --laws         the laws of nozzle flow over the engines of the sweep, frozen and shifting
  --list         a line for each case that is not certified
  --threads N    all processors unless told otherwise

The exit status is 1 if a share is missed that docs/verification.md demands.
)";

namespace {

std::size_t numberOf(std::string_view option, std::string_view text)
{
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size())
        throw std::invalid_argument(std::string(option) + " wants a number, not " +
                                    std::string(text));
    return number;
}

} // namespace

Options parse(int argc, char** argv)
{
    Options options;
    options.threads = std::max(1U, std::thread::hardware_concurrency());
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        const auto text = [&]() -> std::string_view {
            if (i + 1 == argc) throw std::invalid_argument(std::string(option) + " wants a value");
            return argv[++i];
        };
        const auto number = [&] { return numberOf(option, text()); };
        if (option == "--suite")
            options.suite = text();
        else if (option == "--cases")
            options.cases = number();
        else if (option == "--only")
            options.only = number();
        else if (option == "--engines")
            options.engines = number();
        else if (option == "--every")
            options.coarseness = std::max(1U, static_cast<unsigned>(number()));
        else if (option == "--seed")
            options.seed = static_cast<unsigned>(number());
        else if (option == "--threads")
            options.threads = std::max(1U, static_cast<unsigned>(number()));
        else if (option == "--defaults")
            options.method = {false, false};
        else if (option == "--laws")
            options.laws = true;
        else if (option == "--list")
            options.list = true;
        else
            throw std::invalid_argument("unknown option " + std::string(option));
    }
    return options;
}

} // namespace convergence
