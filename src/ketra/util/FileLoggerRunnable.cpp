#include <ketra/util/FileLoggerRunnable.h>

#include <ketra/util/detail/TextQueue.h>

#include <cstdio>
#include <memory>

namespace util {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool write(std::FILE* file, const std::string& text)
{
    return std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
}

} // namespace

FileLoggerRunnable::FileLoggerRunnable(const std::string& file, detail::TextQueue& source)
    : path(file), queue(source)
{
}

FileLoggerRunnable::~FileLoggerRunnable() = default;

void FileLoggerRunnable::run()
{
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wbe"));
    if (!file) queue.fail();
    for (std::string batch; queue.take(batch);)
        if (!queue.hasFailed() && !write(file.get(), batch)) queue.fail();
}

} // namespace util
