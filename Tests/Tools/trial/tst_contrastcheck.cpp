#include "trial/ContrastCheck.h"

#include <QtTest/QTest>

/** The contrast of colours, by the examples of those who defined it. */
class tst_ContrastCheck : public QObject
{
    Q_OBJECT

private slots:
    void contrasts_data();
    void contrasts();
};

void tst_ContrastCheck::contrasts_data()
{
    QTest::addColumn<QColor>("one");
    QTest::addColumn<QColor>("other");
    QTest::addColumn<qreal>("expected");
    QTest::newRow("black on white") << QColor("#000000") << QColor("#ffffff") << 21.0;
    QTest::newRow("the same") << QColor("#308cc6") << QColor("#308cc6") << 1.0;
    QTest::newRow("enough on white") << QColor("#767676") << QColor("#ffffff") << 4.54;
    QTest::newRow("not enough on white") << QColor("#777777") << QColor("#ffffff") << 4.48;
    QTest::newRow("red on white") << QColor("#ff0000") << QColor("#ffffff") << 4.0;
    QTest::newRow("green on black") << QColor("#00ff00") << QColor("#000000") << 15.3;
    QTest::newRow("blue on black") << QColor("#0000ff") << QColor("#000000") << 2.44;
}

void tst_ContrastCheck::contrasts()
{
    QFETCH(QColor, one);
    QFETCH(QColor, other);
    QFETCH(qreal, expected);
    QVERIFY(qAbs(ContrastCheck::between(one.rgb(), other.rgb()) - expected) < 0.01);
    QCOMPARE(ContrastCheck::between(one.rgb(), other.rgb()), ContrastCheck::between(other.rgb(), one.rgb()));
}

QTEST_APPLESS_MAIN(tst_ContrastCheck)
#include "tst_contrastcheck.moc"
