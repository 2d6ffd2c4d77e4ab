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
    void namesOthers_data();
    void namesOthers();
    void loadsThoseThatItNames();
    void readsOnceWhatItCannotLoad_data();
    void readsOnceWhatItCannotLoad();

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

void tst_VTCatalogue::namesOthers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("names");
    const QByteArray plain = TestCatalogue("Menu").add("Cut", "Ausschneiden").bytes();
    const QByteArray naming = TestCatalogue("Menu").add("Cut", "Ausschneiden").addFile("/other.qm").bytes();
    QTest::newRow("plain") << plain << false;
    QTest::newRow("naming") << naming << true;
    QTest::newRow("nothing else") << TestCatalogue("Menu").addFile("/other.qm").bytes() << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("head only") << plain.left(16) << false;
    QTest::newRow("cut off in a length") << plain.left(18) << false;
    QTest::newRow("longer than the file") << plain.left(16) + QByteArray::fromHex("42ffffffff96") << false;
    QTest::newRow("naming first") << plain.left(16) + QByteArray::fromHex("960000000400000000") << true;
}

void tst_VTCatalogue::namesOthers()
{
    QFETCH(const QByteArray, bytes);
    QTEST(VTCatalogue::namesOthers(folder->write("some.qm", bytes)), "names");
    QVERIFY(!VTCatalogue::namesOthers(folder->filePath("missing.qm")));
}

void tst_VTCatalogue::loadsThoseThatItNames()
{
    const QString naming =
        folder->write("naming.qm", TestCatalogue("Menu").add("Copy", "Kopieren").addFile(german).bytes());
    VTCatalogue catalogue;
    catalogue.load(naming);
    QVERIFY(catalogue.isOf(naming));
    QVERIFY(!catalogue.isOf(naming, false));
    QCOMPARE(catalogue.translate("Cut", "Menu"), QString("Ausschneiden"));
    catalogue.load(naming, false);
    QVERIFY(!catalogue.isOf(naming, false));
    catalogue.load(german, false);
    QVERIFY(catalogue.isOf(german, false));
    QVERIFY(!catalogue.isOf(german));
}

void tst_VTCatalogue::readsOnceWhatItCannotLoad_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("damaged") << QByteArray("no catalogue") << false;
    QTest::newRow("naming") << TestCatalogue("Menu").add("Copy", "Kopieren").addFile(german).bytes() << true;
}

void tst_VTCatalogue::readsOnceWhatItCannotLoad()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, isRefused);
    const QString path = folder->write("some.qm", bytes);
    VTCatalogue catalogue;
    QVERIFY(!catalogue.isCurrent(path, false));
    catalogue.load(path, false);
    QVERIFY(!catalogue.isOf(path, false));
    QCOMPARE(catalogue.isRefused(), isRefused);
    QVERIFY(catalogue.isCurrent(path, false));
    QVERIFY(!catalogue.isCurrent(path, true));
    QVERIFY(!catalogue.isCurrent(german, false));
    // Until it is another.
    QVERIFY(QFile::remove(path) && QFile::copy(german, path));
    QVERIFY(!catalogue.isCurrent(path, false));
    catalogue.load(path, false);
    QVERIFY(!catalogue.isRefused());
    QVERIFY(catalogue.isCurrent(path, false));
    QCOMPARE(catalogue.translate("Cut", "Menu"), QString("Ausschneiden"));
}

QTEST_GUILESS_MAIN(tst_VTCatalogue)
#include "tst_vtcatalogue.moc"
