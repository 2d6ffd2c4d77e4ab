#include <QtTest/QtTest>
QTEST_GUILESS_MAIN(QObject)
