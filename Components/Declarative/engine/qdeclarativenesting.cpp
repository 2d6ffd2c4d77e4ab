#include "qdeclarativenesting_p.h"

namespace {

constexpr int mostNested = 100;

thread_local int nested = 0;
thread_local bool isUnwinding = false;

} // namespace

QDeclarativeNesting::QDeclarativeNesting()
{
    ++nested;
    m_isFirst = nested > mostNested && !isUnwinding;
    isUnwinding = isUnwinding || m_isFirst;
    m_isRefused = isUnwinding;
}

QDeclarativeNesting::~QDeclarativeNesting()
{
    if (--nested == 0)
        isUnwinding = false;
}
