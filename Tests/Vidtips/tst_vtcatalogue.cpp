#include <Vidtips/VTCatalogue_p.h>

#include "TestCatalogue.h"
#include "TestPackage.h"

#include <QtTest/QTest>

using Vidtips::VTCatalogue;

class tst_VTCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void translates();
    void isOfNoFileAtFirst();
    void anotherTakesItsPlace();
    void unusableFileLeavesNone_data();
    void unusableFileLeavesNone();

private:
    QScopedPointer<TestPackages> folder;
    QString german;
};

void tst_VTCatalogue::init()
{
    folder.reset(new TestPackages);
    german = folder->write("de.qm", TestCatalogue("Menu").add("Cut", "Ausschneiden").bytes());
}

void tst_VTCatalogue::translates()
{
    VTCatalogue catalogue;
    catalogue.load(german);
    QVERIFY(catalogue.isOf(german));
    QCOMPARE(catalogue.translate("Cut", "Menu"), QString("Ausschneiden"));
    QCOMPARE(catalogue.translate("Copy", "Menu"), QString());
    QCOMPARE(catalogue.translate("Cut", "Dialog"), QString());
}

void tst_VTCatalogue::isOfNoFileAtFirst()
{
    const VTCatalogue catalogue;
    QVERIFY(!catalogue.isOf(german));
    QVERIFY(!catalogue.isOf(QString()));
    QVERIFY(!catalogue.isOf(""));
}

void tst_VTCatalogue::anotherTakesItsPlace()
{
    const QString french = folder->write("fr.qm", TestCatalogue("Menu").add("Cut", "Couper").bytes());
    VTCatalogue catalogue;
    catalogue.load(german);
    catalogue.load(french);
    QVERIFY(!catalogue.isOf(german));
    QVERIFY(catalogue.isOf(french));
    QCOMPARE(catalogue.translate("Cut", "Menu"), QString("Couper"));
}

void tst_VTCatalogue::unusableFileLeavesNone_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing.qm";
    QTest::newRow("a folder") << "folder.qm";
    QTest::newRow("something else") << "text.qm";
    QTest::newRow("empty") << "empty.qm";
}

void tst_VTCatalogue::unusableFileLeavesNone()
{
    QFETCH(QString, name);
    folder->write("folder.qm/file", "x");
    folder->write("text.qm", "no catalogue");
    folder->write("empty.qm", "");
    VTCatalogue catalogue;
    catalogue.load(german);
    catalogue.load(folder->filePath(name));
    QVERIFY(!catalogue.isOf(folder->filePath(name)));
    QVERIFY(!catalogue.isOf(german));
    catalogue.load(german);
    QCOMPARE(catalogue.translate("Cut", "Menu"), QString("Ausschneiden"));
}

QTEST_GUILESS_MAIN(tst_VTCatalogue)
#include "tst_vtcatalogue.moc"
