#include "TestPackage.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTPreparation_p.h>

#include <QtDeclarative/qdeclarative.h>
#include <QtDeclarative/qdeclarativepreparation.h>

#include <QtCore/QUrl>
#include <QtTest/QTest>

using namespace Vidtips;

/** What is prepared while a host is idle. Nothing of the sort is done at other times. */
class tst_VTPreparation : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void nothingWithoutEventLoop();
    void interfaceOfSettings_data();
    void interfaceOfSettings();
    void everyPackage();
    void packageThatComesLater();
    void settingThatChanges();
    void destroyedWhileAtWork_data();
    void destroyedWhileAtWork();
};

namespace {

const QByteArray item = "import QtQuick 1.1\nItem { width: 20; height: 2 * width }";

bool isPrepared(const QString &path)
{
    return !QDeclarativePreparation::isDue(QUrl::fromLocalFile(path));
}

/** Has the first pieces, which are done once in a process, behind it. */
void waitForEnd(const VTPreparation &preparation)
{
    QTRY_VERIFY_WITH_TIMEOUT(preparation.isDone(), 30000);
}

} // namespace

// A cache of its own, which has nothing in it.
void tst_VTPreparation::initMain()
{
    static const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    qunsetenv("QML_DISABLE_DISK_CACHE");
}

void tst_VTPreparation::nothingWithoutEventLoop()
{
    const TestPackages packages;
    const QString file = packages.write("A.vidtips/ui/VidtipsUI.qml", item);
    const VTContext settings;
    {
        VTPreparation preparation(settings);
        preparation.addPackage(packages.filePath("A.vidtips"));
        QVERIFY(!preparation.isDone());
    }
    QVERIFY(!isPrepared(file));
    QCOMPARE(qmlTypeId("QtQuick", 1, 1, "Rectangle"), -1);
}

void tst_VTPreparation::interfaceOfSettings_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("file");
    QTest::newRow("default") << int(MessageThreshold) << QVariant(200) << "ui/VidtipsUI.qml";
    QTest::newRow("simple") << int(UseSimpleUserInterface) << QVariant(true) << "ui/SimpleTooltip.qml";
    QTest::newRow("other") << int(FullUserInterface) << QVariant("own/Tip.qml") << "own/Tip.qml";
    QTest::newRow("restricted") << int(RestrictContent) << QVariant(true) << "";
}

void tst_VTPreparation::interfaceOfSettings()
{
    QFETCH(int, key);
    QFETCH(QVariant, value);
    QFETCH(QString, file);
    const QStringList files{"ui/VidtipsUI.qml", "ui/SimpleTooltip.qml", "own/Tip.qml"};
    const TestPackages packages;
    for (const QString &name : files)
        packages.write("A.vidtips/" + name, item);
    VTContext settings;
    settings.set(key, value);
    VTPreparation preparation(settings);
    preparation.addPackage(packages.filePath("A.vidtips"));
    waitForEnd(preparation);
    for (const QString &name : files)
        QCOMPARE(isPrepared(packages.filePath("A.vidtips/" + name)), name == file);
}

void tst_VTPreparation::everyPackage()
{
    const TestPackages packages;
    const QString first = packages.write("A.vidtips/ui/VidtipsUI.qml", item);
    packages.write("Without.vidtips/Control/a.xml", "");
    const QString broken = packages.write("Broken.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.1\nItem {");
    const QString last = packages.write("Z.vidtips/ui/VidtipsUI.qml", item);
    const VTContext settings;
    VTPreparation preparation(settings);
    for (const char *name : {"A.vidtips", "Without.vidtips", "None.vidtips", "Broken.vidtips", "Z.vidtips"})
        preparation.addPackage(packages.filePath(name));
    waitForEnd(preparation);
    QVERIFY(isPrepared(first));
    QVERIFY(!isPrepared(broken));
    QVERIFY(isPrepared(last));
}

void tst_VTPreparation::packageThatComesLater()
{
    const TestPackages packages;
    const VTContext settings;
    VTPreparation preparation(settings);
    waitForEnd(preparation);
    const QString file = packages.write("A.vidtips/ui/VidtipsUI.qml", item);
    preparation.addPackage(packages.filePath("A.vidtips"));
    QVERIFY(!preparation.isDone());
    waitForEnd(preparation);
    QVERIFY(isPrepared(file));
}

void tst_VTPreparation::settingThatChanges()
{
    const TestPackages packages;
    const QString file = packages.write("A.vidtips/ui/SimpleTooltip.qml", item);
    VTContext settings;
    VTPreparation preparation(settings);
    preparation.addPackage(packages.filePath("A.vidtips"));
    waitForEnd(preparation);
    preparation.settingChanged(MessageThreshold);
    QVERIFY(preparation.isDone());
    settings.set(UseSimpleUserInterface, true);
    preparation.settingChanged(UseSimpleUserInterface);
    QVERIFY(!preparation.isDone());
    waitForEnd(preparation);
    QVERIFY(isPrepared(file));
}

void tst_VTPreparation::destroyedWhileAtWork_data()
{
    QTest::addColumn<int>("passes");
    for (int passes = 0; passes < 5; ++passes)
        QTest::addRow("after %d passes through the event loop", passes) << passes;
}

void tst_VTPreparation::destroyedWhileAtWork()
{
    QFETCH(int, passes);
    const TestPackages packages;
    const VTContext settings;
    for (int i = 0; i < 5; ++i) {
        const QString package = QStringLiteral("%1.vidtips").arg(i);
        packages.write(package + "/ui/VidtipsUI.qml", item);
        VTPreparation preparation(settings);
        preparation.addPackage(packages.filePath(package));
        for (int pass = 0; pass < passes; ++pass)
            QCoreApplication::processEvents();
    }
}

QTEST_MAIN(tst_VTPreparation)

#include "tst_vtpreparation.moc"
