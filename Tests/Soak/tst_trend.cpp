#include <Trend.h>

#include <QtTest/QTest>

#include <random>

class tst_Trend : public QObject
{
    Q_OBJECT

private slots:
    void slopeOfALine();
    void someSamplesStandOut();
    void noise_data();
    void noise();
    void tooFewSamples_data();
    void tooFewSamples();
};

void tst_Trend::slopeOfALine()
{
    QVector<double> times;
    QVector<double> values;
    for (int i = 0; i < 10; ++i) {
        times << i * 0.5;
        values << 100.0 + 3.0 * i;
    }
    const Trend trend = Trend::of(times, values);
    QCOMPARE(trend.slope, 6.0);
    QCOMPARE(trend.lower, 6.0);
    QCOMPARE(trend.upper, 6.0);
    QCOMPARE(trend.level, 113.5);
}

void tst_Trend::someSamplesStandOut()
{
    QVector<double> times;
    QVector<double> values;
    for (int i = 0; i < 40; ++i) {
        times << i;
        values << (i > 36 ? 1000.0 : 100.0);
    }
    QCOMPARE(Trend::of(times, values).slope, 0.0);
    QCOMPARE(Trend::of(times, values).level, 100.0);
}

void tst_Trend::noise_data()
{
    QTest::addColumn<double>("slope");
    QTest::newRow("steady") << 0.0;
    QTest::newRow("growing") << 2.0;
    QTest::newRow("shrinking") << -2.0;
}

void tst_Trend::noise()
{
    QFETCH(double, slope);
    std::mt19937 random(7);
    std::normal_distribution<double> deviation(0.0, 1.0);
    QVector<double> times;
    QVector<double> values;
    for (int i = 0; i < 200; ++i) {
        times << i / 100.0;
        values << 50.0 + slope * times.last() + deviation(random);
    }
    const Trend trend = Trend::of(times, values);
    QVERIFY(trend.lower < slope && slope < trend.upper);
    QVERIFY(trend.lower < trend.slope && trend.slope < trend.upper);
    QVERIFY(trend.upper - trend.lower < 2.0);
}

void tst_Trend::tooFewSamples_data()
{
    QTest::addColumn<QVector<double>>("values");
    QTest::addColumn<double>("level");
    QTest::newRow("none") << QVector<double>() << 0.0;
    QTest::newRow("one") << QVector<double>{4.0} << 4.0;
    QTest::newRow("two") << QVector<double>{4.0, 6.0} << 5.0;
}

void tst_Trend::tooFewSamples()
{
    QFETCH(QVector<double>, values);
    const Trend trend = Trend::of({0.0, 1.0}, values);
    QCOMPARE(trend.slope, 0.0);
    QCOMPARE(trend.lower, 0.0);
    QCOMPARE(trend.upper, 0.0);
    QTEST(trend.level, "level");
}

QTEST_GUILESS_MAIN(tst_Trend)
#include "tst_trend.moc"
