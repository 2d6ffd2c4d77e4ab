#include "TestPackage.h"

#include <Vidtips/VTContentGate_p.h>

#include <QtCore/QUrl>
#include <QtTest/QTest>

using Vidtips::VTContentGate;

/** Two folders that are open, one beside them that is not, and links from the one to the other. */
class tst_VTContentGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        packages.write("A.vidtips/ui/Tip.qml", "");
        packages.write("A.vidtips/a%2e b.png", "");
        packages.write("A.vidtips2/secret.txt", "");
        packages.write("B.vidtips/pictures/cut.png", "");
        packages.write("outside/secret.txt", "");
        packages.write("outside/folder/Tip.qml", "");
        link("outside/secret.txt", "A.vidtips/ui/link.txt");
        link("outside", "A.vidtips/ui/linked");
        link("outside/none", "A.vidtips/ui/dangling");
        link("B.vidtips/pictures", "A.vidtips/ui/toB");
        link("A.vidtips/ui/loop", "A.vidtips/ui/loop");
        link("A.vidtips", "Linked.vidtips");
        gate = VTContentGate({packages.filePath("A.vidtips"), packages.filePath("B.vidtips/"),
                              packages.filePath("None.vidtips")});
    }

    void judgesPaths_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("admitted");
        QTest::newRow("file") << "A.vidtips/ui/Tip.qml" << true;
        QTest::newRow("file of the other") << "B.vidtips/pictures/cut.png" << true;
        QTest::newRow("folder") << "A.vidtips" << true;
        QTest::newRow("folder with a slash") << "A.vidtips/" << true;
        QTest::newRow("folder inside") << "A.vidtips/ui" << true;
        QTest::newRow("missing file") << "A.vidtips/ui/none.png" << true;
        QTest::newRow("missing folder") << "A.vidtips/none/none.png" << true;
        QTest::newRow("up and down again") << "A.vidtips/ui/../ui/Tip.qml" << true;
        QTest::newRow("up to the other") << "A.vidtips/../B.vidtips/pictures/cut.png" << true;
        QTest::newRow("link to the other") << "A.vidtips/ui/toB/cut.png" << true;
        QTest::newRow("by a link to the folder") << "Linked.vidtips/ui/Tip.qml" << true;
        QTest::newRow("doubled slashes") << "A.vidtips//ui///Tip.qml" << true;
        QTest::newRow("name that looks escaped") << "A.vidtips/a%2e b.png" << true;
        QTest::newRow("folder above") << "" << false;
        QTest::newRow("beside") << "outside/secret.txt" << false;
        QTest::newRow("longer name") << "A.vidtips2/secret.txt" << false;
        QTest::newRow("shorter name") << "A.vidtip" << false;
        QTest::newRow("up") << "A.vidtips/../outside/secret.txt" << false;
        QTest::newRow("up from below") << "A.vidtips/ui/../../outside/secret.txt" << false;
        QTest::newRow("linked file") << "A.vidtips/ui/link.txt" << false;
        QTest::newRow("in a linked folder") << "A.vidtips/ui/linked/secret.txt" << false;
        QTest::newRow("missing, in a linked folder") << "A.vidtips/ui/linked/none.txt" << false;
        QTest::newRow("up from a linked folder") << "A.vidtips/ui/linked/../A.vidtips/ui/Tip.qml" << true;
        QTest::newRow("up and out of a linked folder")
            << "A.vidtips/ui/linked/../outside/secret.txt" << false;
        QTest::newRow("link to nothing") << "A.vidtips/ui/dangling" << false;
        QTest::newRow("below a link to nothing") << "A.vidtips/ui/dangling/file" << false;
        QTest::newRow("link to itself") << "A.vidtips/ui/loop" << false;
        QTest::newRow("up from what is missing") << "A.vidtips/none/../../outside/secret.txt" << false;
        QTest::newRow("missing folder given as open") << "None.vidtips/file" << false;
        QTest::newRow("other case") << "a.VIDTIPS/ui/Tip.qml" << false;
        QTest::newRow("end within the name")
            << QStringLiteral("A.vidtips/../outside/secret.txt%1/x").arg(QChar()) << false;
        QTest::newRow("inside, end within the name")
            << QStringLiteral("A.vidtips/ui/Tip.qml%1.png").arg(QChar()) << false;
        QTest::newRow("endless") << "A.vidtips" + QStringLiteral("/none").repeated(1000000) << false;
        QTest::newRow("system file") << "/etc/passwd" << false;
        QTest::newRow("device") << "/dev/null" << false;
        QTest::newRow("own process") << "/proc/self/environ" << false;
        QTest::newRow("root") << "/" << false;
    }

    void judgesPaths()
    {
        QFETCH(const QString, path);
        QTEST(gate.admitsFile(path.startsWith('/') ? path : packages.filePath(path)), "admitted");
    }

    void judgesAddresses_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("admitted");
        const QString inside = packages.filePath("A.vidtips/ui/Tip.qml");
        const QString folder = packages.filePath("A.vidtips");
        QTest::newRow("nothing") << "" << true;
        QTest::newRow("file") << "file://" + inside << true;
        QTest::newRow("file, another case") << "FiLe://" + inside << true;
        QTest::newRow("file, one slash") << "file:" + inside << true;
        QTest::newRow("path") << inside << true;
        QTest::newRow("query and fragment") << "file://" + inside + "?a=b#c" << true;
        QTest::newRow("escaped letter") << "file://" + folder + "/%75i/Tip.qml" << true;
        QTest::newRow("escaped percent") << "file://" + folder + "/a%252e b.png" << true;
        QTest::newRow("image provider") << "image://host/cut" << true;
        QTest::newRow("outside") << "file:///etc/passwd" << false;
        QTest::newRow("outside, another case") << "FILE:///etc/passwd" << false;
        QTest::newRow("outside, one slash") << "file:/etc/passwd" << false;
        QTest::newRow("outside, as a path") << "/etc/passwd" << false;
        QTest::newRow("another computer") << "file://host" + inside << false;
        QTest::newRow("this computer by name") << "file://localhost" + inside << false;
        QTest::newRow("four slashes") << "file://" + QStringLiteral("//host") + inside << false;
        QTest::newRow("no scheme, another computer") << "//host" + inside << false;
        QTest::newRow("up") << "file://" + folder + "/../outside/secret.txt" << false;
        QTest::newRow("up, escaped") << "file://" + folder + "/%2e%2e/outside/secret.txt" << false;
        QTest::newRow("up, escaped slash") << "file://" + folder + "%2f..%2foutside%2fsecret.txt" << false;
        QTest::newRow("escaped end") << "file://" + inside + "%00.png" << false;
        QTest::newRow("link") << "file://" + folder + "/ui/link.txt" << false;
        QTest::newRow("relative") << "outside/secret.txt" << false;
        QTest::newRow("relative file") << "file:secret.txt" << false;
        QTest::newRow("resource") << "qrc:/qt-project.org/styles/commonstyle/images/file-16.png" << false;
        QTest::newRow("resource, three slashes")
            << "qrc:///qt-project.org/styles/commonstyle/images/file-16.png" << false;
        QTest::newRow("resource, as a path")
            << ":/qt-project.org/styles/commonstyle/images/file-16.png" << false;
        QTest::newRow("resource below a file") << "qrc:" + inside << false;
        QTest::newRow("data") << "data:text/plain,abc" << false;
        QTest::newRow("http") << "http://127.0.0.1/x" << false;
        QTest::newRow("https") << "https://127.0.0.1/x" << false;
        QTest::newRow("ftp") << "ftp://127.0.0.1/x" << false;
        QTest::newRow("http without a computer") << "http:" + inside << false;
        QTest::newRow("concat") << "concat:" + inside + "|/etc/passwd" << false;
        QTest::newRow("android's") << "assets:" + inside << false;
        QTest::newRow("unknown scheme") << "foo:" + inside << false;
    }

    void judgesAddresses()
    {
        QFETCH(const QString, address);
        QTEST(gate.admits(QUrl(address)), "admitted");
    }

    void opensResourcesThatAreGiven()
    {
        const VTContentGate resources({":/qt-project.org/styles"});
        QVERIFY(resources.admits(QUrl("qrc:/qt-project.org/styles/commonstyle/images/file-16.png")));
        QVERIFY(!resources.admits(QUrl("qrc:/qt-project.org/imports")));
        QVERIFY(!resources.admits(QUrl("file:/qt-project.org/styles/commonstyle/images/file-16.png")));
    }

    void isShutByDefault()
    {
        QVERIFY(!VTContentGate().admitsFile(packages.filePath("A.vidtips/ui/Tip.qml")));
        QVERIFY(!VTContentGate().admits(QUrl::fromLocalFile("/")));
    }

    void opensEverythingFromTheRoot() { QVERIFY(VTContentGate({"/"}).admitsFile("/etc/passwd")); }

private:
    void link(const QString &target, const QString &name)
    {
        QVERIFY(QFile::link(packages.filePath(target), packages.filePath(name)));
    }

    TestPackages packages;
    VTContentGate gate;
};

// Resources of Qt Widgets are there where the program uses it.
QTEST_MAIN(tst_VTContentGate)
#include "tst_vtcontentgate.moc"
