#pragma once

#include <QtTest/QTest>

/**
 * How long tests wait for what comes about on its own, in milliseconds: on a busy machine many times as long
 * as on one that does nothing else. Who waits in vain has failed, and only then waits so long.
 */
namespace Patience {
constexpr int longest = 60000;
}

// Qt's own give up after five seconds.
#undef QTRY_VERIFY
#define QTRY_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT((expression), Patience::longest)
#undef QTRY_COMPARE
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT((actual), (expected), Patience::longest)
