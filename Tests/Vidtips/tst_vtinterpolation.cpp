#include <Vidtips/VTInterpolation_p.h>

#include <QtTest/QTest>

using Vidtips::interpolated;

/** Where replacements are longer than what stands before them; what a placeholder is, is tested with the
 * manager. */
class tst_VTInterpolation : public QObject
{
    Q_OBJECT

private slots:
    void rows_data();
    void rows();
    void textWithoutPlaceholdersStays();
    void manyPlaceholders();
};

void tst_VTInterpolation::rows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("longer than the text") << "%(long)s" << QString(50, 'l');
    QTest::newRow("longer, before a rest") << "%(long)s rest" << QString(50, 'l') + " rest";
    QTest::newRow("longer, after a start") << "start %(long)s"
                                           << "start " + QString(50, 'l');
    QTest::newRow("longer, twice") << "%(long)s%(long)s" << QString(100, 'l');
    QTest::newRow("longer, after a shorter one") << "%(a)s%(long)s%(a)s" << 'x' + QString(50, 'l') + 'x';
    QTest::newRow("as long as the placeholder") << "%(four)s."
                                                << "12345678.";
    QTest::newRow("in a longer one") << "%(nested)s." << QString(20, 'n') + 'x' + QString(20, 'n') + '.';
    QTest::newRow("completed by what follows") << "%(percent)s(a)s"
                                               << "x";
    QTest::newRow("not by what stands before") << "%%(open)s"
                                               << "%(a)s";
    QTest::newRow("unknown beside a longer one") << "%(none)s%(long)s%(none)s"
                                                 << "%(none)s" + QString(50, 'l') + "%(none)s";
}

void tst_VTInterpolation::rows()
{
    QFETCH(QString, text);
    const QMap<QString, QVariant> properties{
        {"a", "x"},           {"long", QString(50, 'l')},
        {"four", "12345678"}, {"nested", QString(20, 'n') + "%(a)s" + QString(20, 'n')},
        {"percent", "%"},     {"open", "(a)s"},
    };
    QTEST(interpolated(text, properties), "result");
}

void tst_VTInterpolation::textWithoutPlaceholdersStays()
{
    QVERIFY(interpolated(QString(), {}).isNull());
    QVERIFY(!interpolated("", {}).isNull());
    QVERIFY(!interpolated("%(a)s", {{"a", ""}}).isNull());
    QCOMPARE(interpolated("plain", {{"plain", "x"}}), QString("plain"));
}

void tst_VTInterpolation::manyPlaceholders()
{
    const int count = 20000;
    QCOMPARE(interpolated(QString("%(a)s").repeated(count), {{"a", "longer than itself"}}),
             QString("longer than itself").repeated(count));
}

QTEST_GUILESS_MAIN(tst_VTInterpolation)
#include "tst_vtinterpolation.moc"
