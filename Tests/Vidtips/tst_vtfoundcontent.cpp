#include <Vidtips/VTFoundContent_p.h>

#include "TestPackage.h"

#include <QtTest/QTest>

#include <memory>

using namespace Vidtips;

class tst_VTFoundContent : public QObject
{
    Q_OBJECT

private slots:
    void rootGoesUnlessItIsTaken_data();
    void rootGoesUnlessItIsTaken();
    void rootWithoutAnElementIsLeftAlone();
    void whatIsDestroyedElsewhereIsForgotten();
    void packageFolder_data();
    void packageFolder();
};

void tst_VTFoundContent::rootGoesUnlessItIsTaken_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("taken") << true;
    QTest::newRow("not taken") << false;
}

void tst_VTFoundContent::rootGoesUnlessItIsTaken()
{
    QFETCH(bool, isTaken);
    const QPointer<VTXmlElement> root(new VTXmlElement);
    auto *const element = new VTXmlElement(root);
    {
        VTFoundContent found;
        found.setElement(element, root);
        QCOMPARE(found.element.data(), element);
        found.taken = isTaken;
    }
    QCOMPARE(!root.isNull(), isTaken);
    delete root;
}

void tst_VTFoundContent::rootWithoutAnElementIsLeftAlone()
{
    VTXmlElement root;
    VTFoundContent found;
    found.setElement(nullptr, &root);
    QVERIFY(!found.root);
    QVERIFY(!found.element);
}

void tst_VTFoundContent::whatIsDestroyedElsewhereIsForgotten()
{
    auto root = std::make_unique<VTXmlElement>();
    VTFoundContent found;
    found.setElement(new VTXmlElement(root.get()), root.get());
    root.reset();
    QVERIFY(!found.root);
    QVERIFY(!found.element);
}

void tst_VTFoundContent::packageFolder_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<QString>("folder");
    QTest::newRow("nothing known") << 0 << "p.vidtips/Control/more";
    QTest::newRow("in the package itself") << 1 << "p.vidtips/Control/more";
    QTest::newRow("a level below") << 2 << "p.vidtips/Control";
    QTest::newRow("two levels below") << 3 << "p.vidtips";
}

void tst_VTFoundContent::packageFolder()
{
    QFETCH(int, depth);
    QFETCH(QString, folder);
    const TestPackages packages;
    packages.write("p.vidtips/Control/more/a.xml", "");
    VTFoundContent found;
    found.directory = packages.filePath("p.vidtips/Control/../Control/more");
    found.depth = depth;
    QCOMPARE(found.packageFolder(), packages.filePath(folder));
    found.depth = 1000000;
    QCOMPARE(found.packageFolder(), QString("/"));
}

QTEST_GUILESS_MAIN(tst_VTFoundContent)
#include "tst_vtfoundcontent.moc"
