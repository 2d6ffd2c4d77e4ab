#include "qdeclarativenesting_p.h"

namespace {

constexpr int mostLevels = 100;

thread_local int levels = 0;
thread_local bool isUnwinding = false;

} // namespace

QDeclarativeNesting::QDeclarativeNesting()
{
    ++levels;
    m_isFirst = levels > mostLevels && !isUnwinding;
    isUnwinding = isUnwinding || m_isFirst;
    m_isRefused = isUnwinding;
}

QDeclarativeNesting::~QDeclarativeNesting()
{
    if (--levels == 0)
        isUnwinding = false;
}
