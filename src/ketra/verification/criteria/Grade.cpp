#include <ketra/verification/criteria/Grade.h>

#include <algorithm>

namespace verification {

char letter(Grade grade)
{
    switch (grade) {
    case Grade::A:
        return 'A';
    case Grade::B:
        return 'B';
    case Grade::F:
        break;
    }
    return 'F';
}

Grade worse(Grade left, Grade right) { return std::max(left, right); }

} // namespace verification
