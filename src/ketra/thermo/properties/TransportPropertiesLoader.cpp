#include <ketra/thermo/properties/TransportPropertiesLoader.h>

#include <ketra/thermo/Species.h>
#include <ketra/thermo/detail/TextFile.h>
#include <ketra/thermo/properties/TransportProperties.h>
#include <ketra/util/Log.h>

#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace thermo::properties {

using detail::slice;
using detail::trimmed;

namespace {

constexpr std::string_view title = "transport property coefficients";
constexpr std::string_view endMark = "end";

/// The line in front of the data of a species or of a pair.
struct Head {
    explicit Head(std::string_view line)
        : name(trimmed(slice(line, 0, 15))), other(trimmed(slice(line, 16, 31))),
          viscosities(detail::integer(slice(line, 35, 36))),
          conductivities(detail::integer(slice(line, 37, 38)))
    {
    }
    int lines() const { return viscosities + conductivities; }

    std::string name;
    std::string other; // empty without a pair
    int viscosities;   // lines, viscosities first
    int conductivities;
};

/// The data of a species or of a pair while they are read.
class Block
{
public:
    Block(Species& s, const Head& h) : owner(s), head(h) {}

    const Species& species() const { return owner; }
    bool isComplete() const { return count == head.lines(); }
    void read(std::string_view line)
    {
        auto interval = std::make_unique<TransportPropertiesCoefficients>(std::string(line));
        if (count++ < head.viscosities)
            transport->addV(interval.release());
        else
            transport->addC(interval.release());
    }
    /// Gives the data to the species; a block without lines has none to give.
    void publish()
    {
        if (count == 0) return;
        if (head.other.empty())
            owner.setTransportProperties(transport.release());
        else
            owner.setTransportProperties(head.other, transport.release());
    }

private:
    Species& owner;
    Head head;
    int count = 0; // lines read
    std::unique_ptr<TransportProperties> transport = std::make_unique<TransportProperties>();
};

bool isPassedOver(std::string_view line)
{
    return trimmed(line).empty() || line.front() == '!' || line.starts_with(title);
}

} // namespace

void TransportPropertiesLoader::load(std::ifstream& stream, const SpeciesMap& species)
{
    const std::string text = detail::readAll(stream);
    if (detail::hasBareReturnsOnly(text))
        util::Log::warnf("THERMO", "Ignoring transport file whose lines have no line feeds\n");

    int skip = 0; // lines of a block whose species is unknown
    std::unique_ptr<Block> block;
    detail::LineReader lines(text);
    for (std::string_view line; lines.next(line);) {
        if (isPassedOver(line)) continue;
        if (line.starts_with(endMark)) break;
        if (skip > 0) {
            --skip;
            continue;
        }
        if (block) {
            block->read(line);
        } else {
            const Head head(line);
            const auto found = species.find(head.name);
            if (found == species.end()) {
                util::Log::warnf("THERMO", "Could not find species %s defined in properties file\n",
                                 head.name.c_str());
                skip = head.lines();
                continue;
            }
            block = std::make_unique<Block>(*found->second, head);
        }
        if (block->isComplete()) {
            block->publish();
            block.reset();
        }
    }
    if (block)
        util::Log::warnf("THERMO",
                         "Ignoring incomplete transport properties of species %s (line %u)\n",
                         block->species().getName().c_str(), lines.getCount());
}

} // namespace thermo::properties
