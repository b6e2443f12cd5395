#include "Session.h"
#include "Output.h"

namespace host {

Session::Session(const SessionOptions& options)
    : resources(options.resources), log(options.verbose, options.log, options.crlf),
      lineEnds(options.crlf)
{
    resources.load();
}

void Session::expectTransport() const
{
    if (!resources.hasTransport())
        writeToStandardError("ketra: warning: there is no file \"" + resources.getTransportFile() +
                             "\": viscosity and conductivity are estimates for every species\n");
}

} // namespace host
