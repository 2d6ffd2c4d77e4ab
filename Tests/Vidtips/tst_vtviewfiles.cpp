#include "ViewTest.h"

using namespace Vidtips;

/** Where a view looks for the files of its content. */
class tst_VTViewFiles : public ViewTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void categoryPath_data();
    void categoryPath();
    void categoryPathWithoutContent();
    void findComponent_data();
    void findComponent();
    void findComponentWithoutContent();
    void findResource();
    void resourceDirectoryHasItsOwnAttribute();
    void uiRootFilePath_data();
    void uiRootFilePath();
    void packageRootIsAbsolute();
};

using Attributes = QMap<QString, QString>;

void tst_VTViewFiles::init()
{
    makeView();
}

void tst_VTViewFiles::cleanup()
{
    endView();
}

void tst_VTViewFiles::categoryPath_data()
{
    QTest::addColumn<Attributes>("own");
    QTest::addColumn<Attributes>("parents");
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<QString>("path");
    const Attributes none;
    const QVariant unset;
    QTest::newRow("default") << none << none << unset << "default";
    QTest::newRow("setting") << none << none << QVariant("set") << "set";
    QTest::newRow("own") << Attributes{{"x", "own"}} << Attributes{{"x", "up"}} << QVariant("set") << "own";
    QTest::newRow("parent") << none << Attributes{{"x", "up"}} << QVariant("set") << "up";
    QTest::newRow("own is empty") << Attributes{{"x", ""}} << Attributes{{"x", "up"}} << QVariant("set")
                                  << "set";
    QTest::newRow("parent is empty") << none << Attributes{{"x", ""}} << unset << "default";
    QTest::newRow("other attribute") << Attributes{{"y", "own"}} << none << unset << "default";
    QTest::newRow("empty setting") << none << none << QVariant("") << "";
}

void tst_VTViewFiles::categoryPath()
{
    QFETCH(Attributes, own);
    QFETCH(Attributes, parents);
    QFETCH(QVariant, setting);
    VTXmlElement *const content = setContent(own, parents);
    VTXmlElement grandparent;
    grandparent.setAttribute("x", "grand");
    content->parent()->setParent(&grandparent);
    if (setting.isValid())
        session->set(ResourceFolder, setting);
    QTEST(view->categoryPath("x", "default", ResourceFolder), "path");
    content->parent()->setParent(nullptr);
}

void tst_VTViewFiles::categoryPathWithoutContent()
{
    QCOMPARE(view->categoryPath("x", "default", ResourceFolder), QStringLiteral("default"));
    session->set(ResourceFolder, "set");
    QCOMPARE(view->categoryPath("x", "default", ResourceFolder), QStringLiteral("set"));
    VTXmlElement alone;
    view->setContent(&alone);
    QCOMPARE(view->categoryPath("x", "default", ResourceFolder), QStringLiteral("set"));
    view->setContent(nullptr);
}

void tst_VTViewFiles::findComponent_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("found");
    QTest::newRow("own package") << "a.png"
                                 << ""
                                 << "Basic.vidtips/Files/a.png";
    QTest::newRow("folder by itself") << ""
                                      << ""
                                      << "Basic.vidtips/Files";
    QTest::newRow("below the folder") << "sub/b.png"
                                      << ""
                                      << "Basic.vidtips/Files/sub/b.png";
    QTest::newRow("other package") << "c.png"
                                   << "Shared"
                                   << "Shared.vidtips/Files/c.png";
    QTest::newRow("own package first") << "a.png"
                                       << "Shared"
                                       << "Basic.vidtips/Files/a.png";
    QTest::newRow("other package, not searched") << "c.png"
                                                 << ""
                                                 << "";
    QTest::newRow("missing") << "missing.png"
                             << "Shared"
                             << "";
}

void tst_VTViewFiles::findComponent()
{
    QFETCH(QString, file);
    QFETCH(QString, search);
    QFETCH(QString, found);
    packages->write("Basic.vidtips/Files/a.png", "a");
    packages->write("Basic.vidtips/Files/sub/b.png", "b");
    packages->write("Shared.vidtips/Files/a.png", "a");
    packages->write("Shared.vidtips/Files/c.png", "c");
    setContent({}, {{"search", search}});
    const QString path = view->findComponent("files", ResourceFolder, "Files", file);
    QCOMPARE(path, found.isEmpty() ? QStringLiteral("Files") : packages->filePath(found));
}

void tst_VTViewFiles::findComponentWithoutContent()
{
    packages->write("Basic.vidtips/Files/a.png", "a");
    QCOMPARE(view->findComponent("files", ResourceFolder, "Files", "a.png"), QStringLiteral("Files"));
    QCOMPARE(view->uiRootFilePath(), QStringLiteral("ui/VidtipsUI.qml"));
}

void tst_VTViewFiles::findResource()
{
    packages->write("Basic.vidtips/Resources/a.png", "a");
    packages->write("Basic.vidtips/Media/a.png", "a");
    setContent();
    QCOMPARE(view->findResource("a.png"), packages->filePath("Basic.vidtips/Resources/a.png"));
    QCOMPARE(view->findResource("b.png"), QStringLiteral("Resources"));
    session->set(ResourceFolder, "Media");
    QCOMPARE(view->findResource("a.png"), packages->filePath("Basic.vidtips/Media/a.png"));
    setContent({{"resources", "Resources"}, {"resource", "Nowhere"}});
    QCOMPARE(view->findResource("a.png"), packages->filePath("Basic.vidtips/Resources/a.png"));
    QCOMPARE(view->findResource(""), packages->filePath("Basic.vidtips/Resources"));
}

void tst_VTViewFiles::resourceDirectoryHasItsOwnAttribute()
{
    QCOMPARE(view->property("resourceDirectory").toString(), QStringLiteral("Resources"));
    setContent({{"resources", "Many"}, {"resource", "One"}});
    QCOMPARE(view->resourceDirectoryPath(), QStringLiteral("One"));
    setContent({{"resources", "Many"}});
    session->set(ResourceFolder, "Media");
    QCOMPARE(view->resourceDirectoryPath(), QStringLiteral("Media"));
}

void tst_VTViewFiles::uiRootFilePath_data()
{
    QTest::addColumn<bool>("simple");
    QTest::addColumn<Attributes>("own");
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("path");
    const Attributes none;
    QTest::newRow("full") << false << none << ""
                          << "ui/VidtipsUI.qml";
    QTest::newRow("simple") << true << none << ""
                            << "ui/SimpleTooltip.qml";
    QTest::newRow("full by setting") << false << none << "ui/Set.qml"
                                     << "ui/Set.qml";
    QTest::newRow("simple by setting") << true << none << "ui/Set.qml"
                                       << "ui/Set.qml";
    const Attributes both{{"ui", "ui/Own.qml"}, {"simple", "ui/OwnSimple.qml"}};
    QTest::newRow("full by attribute") << false << both << "ui/Set.qml"
                                       << "ui/Own.qml";
    QTest::newRow("simple by attribute") << true << both << "ui/Set.qml"
                                         << "ui/OwnSimple.qml";
    QTest::newRow("missing") << false << Attributes{{"ui", "ui/No.qml"}} << ""
                             << "";
}

void tst_VTViewFiles::uiRootFilePath()
{
    QFETCH(bool, simple);
    QFETCH(Attributes, own);
    QFETCH(QString, setting);
    QFETCH(QString, path);
    for (const char *const name : {"SimpleTooltip", "Set", "Own", "OwnSimple"})
        packages->write(QStringLiteral("Basic.vidtips/ui/%1.qml").arg(name), "import QtQuick 1.0\nItem {}");
    session->set(UseSimpleUserInterface, simple);
    if (!setting.isEmpty())
        session->set(simple ? SimpleUserInterface : FullUserInterface, setting);
    setContent(own);
    const QString expected = path.isEmpty() ? own.value("ui") : packages->filePath("Basic.vidtips/" + path);
    QCOMPARE(view->uiRootFilePath(), expected);
}

void tst_VTViewFiles::packageRootIsAbsolute()
{
    view->setPackageRoot(QDir("some/where"));
    QCOMPARE(view->packageRoot().path(), QDir::current().absoluteFilePath("some/where"));
}

QTEST_MAIN(tst_VTViewFiles)

#include "tst_vtviewfiles.moc"
