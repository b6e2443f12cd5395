#pragma once

#include <ketra/util/Logger.h>

#include <array>
#include <mutex>
#include <set>
#include <string>

namespace util {

/// Keeps the text in memory; may be read while others log.
///
/// A channel may be marked as one of a severity: its text then has "error: ", "warning: " or
/// "info: " in front, ends its line, and is dropped if the level does not let the severity pass.
/// At first the channels 1, 2 and 3 are marked, as in Logger::Level.
class KETRA_API BufferLogger : public Logger
{
public:
    /// \param limit the most characters that are kept, the oldest lines going first; 0: no limit
    explicit BufferLogger(unsigned int limit = 0);
    ~BufferLogger() override;

    void print(unsigned int channel, const char* text) override;
    void println(unsigned int channel, const char* text) override;
    [[gnu::format(printf, 3, 0)]] void vprintf(unsigned int channel, const char* format,
                                               std::va_list arguments) override;

    /// Marks a channel as one of informations, warnings or errors, or takes the mark away. A
    /// channel with several marks counts as the most serious of them.
    virtual void setInfo(unsigned int channel, bool on);
    virtual void setWarn(unsigned int channel, bool on);
    virtual void setError(unsigned int channel, bool on);

    /// What has been kept.
    std::string getText() const;
    void clear();
    unsigned int getSize() const { return size; }

protected:
    /// Receives each finished piece of text, one at a time.
    virtual void append(const std::string& text);

private:
    void mark(Level severity, unsigned int channel, bool on);
    Level severityOf(unsigned int channel) const;

    mutable std::mutex mutex;                       // guards all below
    std::array<std::set<unsigned int>, 4> channels; // marked channels, by severity
    std::string kept;
    unsigned int size; // characters, 0: no limit
};

} // namespace util
