#include <ketra/util/Runnable.h>

namespace util {

Runnable::~Runnable() = default;

} // namespace util
