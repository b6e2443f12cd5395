#include "CommandLine.h"
#include "Output.h"

int main(int argc, char** argv)
{
    host::guardStandardStreams();
    return host::runCommandLine(argc, argv);
}
