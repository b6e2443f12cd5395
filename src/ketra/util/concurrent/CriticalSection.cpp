#include <ketra/util/concurrent/CriticalSection.h>

namespace util::concurrent {

CriticalSection::CriticalSection() = default;

CriticalSection::~CriticalSection() = default;

void CriticalSection::enter() { section.lock(); }

void CriticalSection::leave() { section.unlock(); }

} // namespace util::concurrent
