#include <Vidtips/VTLocale_p.h>

#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTLocale : public QObject
{
    Q_OBJECT

private slots:
    void isWhatQtMakesOfTheName_data();
    void isWhatQtMakesOfTheName();
    void manyNames();
    void otherDefault();
};

void tst_VTLocale::isWhatQtMakesOfTheName_data()
{
    QTest::addColumn<QString>("name");
    const char *const names[] = {"",      "C",          "en_US", "en",    "de_DE",
                                 "de-AT", "zh_Hans_CN", "ar",    "xx_YY", "no such"};
    for (const char *const name : names)
        QTest::newRow(*name ? name : "empty") << name;
    QTest::newRow("null") << QString();
}

void tst_VTLocale::isWhatQtMakesOfTheName()
{
    QFETCH(QString, name);
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(localeNamed(name), QLocale(name));
        QCOMPARE(localeNamed(name).name(), QLocale(name).name());
    }
}

// More than are remembered.
void tst_VTLocale::manyNames()
{
    for (int time = 0; time < 2; ++time) {
        for (int i = 0; i < 1000; ++i) {
            const QString name = QStringLiteral("%1_%2").arg(i % 2 ? "de" : "fr").arg(i);
            QCOMPARE(localeNamed(name), QLocale(name));
        }
    }
}

// What a host makes the default has no part in it, neither before nor after the name is known.
void tst_VTLocale::otherDefault()
{
    const QLocale before;
    const QLocale nothing = localeNamed(QStringLiteral("xx"));
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    QCOMPARE(localeNamed(QStringLiteral("xx")), nothing);
    QCOMPARE(localeNamed(QStringLiteral("yy")), QLocale(QStringLiteral("yy")));
    QLocale::setDefault(before);
}

QTEST_MAIN(tst_VTLocale)
#include "tst_vtlocale.moc"
