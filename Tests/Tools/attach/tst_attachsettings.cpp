#include "attach/AttachSettings.h"

#include <QtCore/QProcessEnvironment>
#include <QtTest/QTest>

namespace {

const QString plugins = QStringLiteral("/opt/vidtips/plugins");
const char *const variables[] = {"QT_PLUGIN_PATH", "QT_QPA_GENERIC_PLUGINS", "VIDTIPS_ATTACH"};

/** Has this process be one that was started in @p environment. */
void enter(const QProcessEnvironment &environment)
{
    for (const char *const name : variables)
        qputenv(name, environment.value(name).toUtf8());
}

} // namespace

class tst_AttachSettings : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void arriveAsTheyWere();
    void nothingIsLeftForOthers();
    void whatWasThereStays();
    void withoutSettings_data();
    void withoutSettings();
};

void tst_AttachSettings::cleanup()
{
    for (const char *const name : variables)
        qunsetenv(name);
}

void tst_AttachSettings::arriveAsTheyWere()
{
    AttachSettings settings;
    settings.dataPaths = QStringList{"/a b", "/c:d", QString::fromUtf8("/ä")};
    settings.locale = "de_DE";
    settings.reportFile = "/tmp/report";
    settings.harvestFolder = "/tmp/harvest";
    settings.harvestWait = 1500;
    settings.isTraced = true;
    QProcessEnvironment environment;
    settings.writeTo(environment, plugins);
    enter(environment);
    const AttachSettings taken = AttachSettings::takeFromEnvironment();
    QCOMPARE(taken.dataPaths, settings.dataPaths);
    QCOMPARE(taken.locale, settings.locale);
    QCOMPARE(taken.reportFile, settings.reportFile);
    QCOMPARE(taken.harvestFolder, settings.harvestFolder);
    QCOMPARE(taken.harvestWait, settings.harvestWait);
    QVERIFY(taken.isTraced);
}

// A program that another one starts would have tips as well.
void tst_AttachSettings::nothingIsLeftForOthers()
{
    QProcessEnvironment environment;
    AttachSettings().writeTo(environment, plugins);
    QCOMPARE(environment.value("QT_PLUGIN_PATH"), plugins);
    QCOMPARE(environment.value("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("vidtipsattach"));
    enter(environment);
    AttachSettings::takeFromEnvironment();
    for (const char *const name : variables)
        QVERIFY2(!qEnvironmentVariableIsSet(name), name);
}

void tst_AttachSettings::whatWasThereStays()
{
    QProcessEnvironment environment;
    environment.insert("QT_PLUGIN_PATH", "/usr/plugins");
    environment.insert("QT_QPA_GENERIC_PLUGINS", "evdevmouse:/dev/input/event1");
    AttachSettings().writeTo(environment, plugins);
    QCOMPARE(environment.value("QT_PLUGIN_PATH"), plugins + ":/usr/plugins");
    enter(environment);
    // As a program that starts another one by a script does.
    qputenv("QT_PLUGIN_PATH", "/first:" + qgetenv("QT_PLUGIN_PATH"));
    AttachSettings::takeFromEnvironment();
    QCOMPARE(qgetenv("QT_PLUGIN_PATH"), QByteArray("/first:/usr/plugins"));
    QCOMPARE(qgetenv("QT_QPA_GENERIC_PLUGINS"), QByteArray("evdevmouse:/dev/input/event1"));
}

void tst_AttachSettings::withoutSettings_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("1");
    QTest::newRow("cut off") << QByteArray("{\"dataPaths\": [");
    QTest::newRow("other kinds of values")
        << QByteArray(R"({"dataPaths": 1, "harvestWait": "x", "trace": []})");
}

void tst_AttachSettings::withoutSettings()
{
    QFETCH(QByteArray, variable);
    qputenv("VIDTIPS_ATTACH", variable);
    qputenv("QT_PLUGIN_PATH", "/usr/plugins");
    const AttachSettings taken = AttachSettings::takeFromEnvironment();
    QVERIFY(taken.dataPaths.isEmpty());
    QVERIFY(taken.harvestFolder.isEmpty());
    QCOMPARE(taken.harvestWait, 0);
    QVERIFY(!taken.isTraced);
    QCOMPARE(qgetenv("QT_PLUGIN_PATH"), QByteArray("/usr/plugins"));
}

QTEST_GUILESS_MAIN(tst_AttachSettings)
#include "tst_attachsettings.moc"
