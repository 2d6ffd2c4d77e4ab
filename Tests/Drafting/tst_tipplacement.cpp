#include "Host/TipPlacement.h"

#include <QtTest/QtTest>

class tst_TipPlacement : public QObject
{
    Q_OBJECT

private slots:
    void placing_data();
    void placing();
};

void tst_TipPlacement::placing_data()
{
    QTest::addColumn<QRect>("tip");
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QRect>("placed");

    const QSize size(300, 400);
    QTest::newRow("fits") << QRect({120, 124}, size) << QPoint(100, 100) << QRect({120, 124}, size);
    QTest::newRow("reaches below") << QRect({120, 524}, size) << QPoint(100, 500) << QRect({120, 400}, size);
    QTest::newRow("reaches to the right")
        << QRect({900, 124}, size) << QPoint(880, 100) << QRect({700, 124}, size);
    QTest::newRow("corner: to the left of the pointer")
        << QRect({920, 724}, size) << QPoint(900, 700) << QRect({589, 400}, size);
    QTest::newRow("no room beside the pointer: above it")
        << QRect(QPoint(520, 724), QSize(800, 400)) << QPoint(500, 700)
        << QRect(QPoint(0, 289), QSize(800, 400));
    QTest::newRow("larger than the screen: its beginning")
        << QRect(QPoint(20, 24), QSize(300, 900)) << QPoint(0, 0) << QRect(QPoint(20, 0), QSize(300, 900));
}

void tst_TipPlacement::placing()
{
    QFETCH(QRect, tip);
    QFETCH(QPoint, pointer);
    QFETCH(QRect, placed);
    QCOMPARE(TipPlacement::placed(tip, QRect(0, 0, 1000, 800), pointer), placed);
}

QTEST_GUILESS_MAIN(tst_TipPlacement)
#include "tst_tipplacement.moc"
