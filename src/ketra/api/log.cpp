#include <ketra/api/ketra.h>

#include <ketra/util/ConsoleLogger.h>
#include <ketra/util/FileLogger.h>
#include <ketra/util/Log.h>

namespace {

constexpr unsigned int defaultBufferSize = 10240;

const char* textOf(const char* text) { return text != nullptr ? text : ""; }

} // namespace

void createConsoleLog(const char* name)
{
    util::Log::createLog(textOf(name))->addLogger(new util::ConsoleLogger());
}

void createFileLog(const char* name, const char* file, unsigned int size)
{
    util::Log::createLog(textOf(name))
        ->addLogger(new util::FileLogger(textOf(file), size != 0 ? size : defaultBufferSize));
}

void closeLog() { util::Log::finalize(); }
