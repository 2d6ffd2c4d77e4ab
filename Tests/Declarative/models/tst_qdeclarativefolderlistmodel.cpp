#include "WatchedScene.h"

#include <QtTest/QTest>

#include <utime.h>

class tst_QDeclarativeFolderListModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void initialValues();
    void lists_data();
    void lists();
    void roles();
    void isFolder();
    void parentFolder();
    void missingFolderLeavesTheOldOne_data();
    void missingFolderLeavesTheOldOne();
    void followsChanges();

private:
    void write(const QString &name, int size, int age);
    bool load(WatchedScene &, const QByteArray &members = {});

    QTemporaryDir m_folder;
};

void tst_QDeclarativeFolderListModel::write(const QString &name, int size, int age)
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, 'x')) != size)
        qFatal("cannot write %s", qPrintable(name));
    file.close();
    const utimbuf times = {1000000000 - age, 1000000000 - age};
    QCOMPARE(utime(QFile::encodeName(file.fileName()).constData(), &times), 0);
}

void tst_QDeclarativeFolderListModel::initTestCase()
{
    QVERIFY(m_folder.isValid());
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("sub")));
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("aside")));
    write(QStringLiteral("b.txt"), 30, 10);
    write(QStringLiteral("A.png"), 20, 20);
    write(QStringLiteral("c.txt"), 10, 30);
    write(QStringLiteral(".hidden"), 10, 30);
}

bool tst_QDeclarativeFolderListModel::load(WatchedScene &scene, const QByteArray &members)
{
    return scene.load("import Qt.labs.folderlistmodel 1.0\nItem { id: root; property int changes\n"
                      "FolderListModel { id: list; folder: '"
                      + QUrl::fromLocalFile(m_folder.path()).toEncoded()
                      + "'; onFolderChanged: ++root.changes\n" + members + R"(}
        Repeater { id: rep; model: list; Item { property string name: fileName; property string path: filePath } }
        function names() { var all = []; for (var i = 0; i < rep.count; ++i) all.push(rep.itemAt(i).name); return all.join() }
    })");
}

void tst_QDeclarativeFolderListModel::initialValues()
{
    WatchedScene scene;
    QVERIFY(scene.load("import Qt.labs.folderlistmodel 1.0\nItem { FolderListModel { id: list } }"));
    QCOMPARE(
        scene
            .evaluate("[list.nameFilters.join(), list.sortField === FolderListModel.Name, list.sortReversed,"
                      "list.showDirs, list.showDotAndDotDot, list.showOnlyReadable].join()")
            .toString(),
        QStringLiteral("*,true,false,true,false,false"));
    QCOMPARE(scene.evaluate("list.folder").toUrl(), QUrl::fromLocalFile(QDir::currentPath()));
    QCOMPARE(scene
                 .evaluate("[FolderListModel.Unsorted, FolderListModel.Name, FolderListModel.Time,"
                           "FolderListModel.Size, FolderListModel.Type].join()")
                 .toString(),
             QStringLiteral("0,1,2,3,4"));
}

void tst_QDeclarativeFolderListModel::lists_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QString>("names");
    QTest::newRow("name") << QByteArray() << "aside,sub,A.png,b.txt,c.txt";
    QTest::newRow("reversed") << QByteArray("sortReversed: true") << "sub,aside,c.txt,b.txt,A.png";
    QTest::newRow("files only") << QByteArray("showDirs: false") << "A.png,b.txt,c.txt";
    QTest::newRow("time") << QByteArray("showDirs: false; sortField: FolderListModel.Time")
                          << "b.txt,A.png,c.txt";
    QTest::newRow("size") << QByteArray("showDirs: false; sortField: FolderListModel.Size")
                          << "b.txt,A.png,c.txt";
    QTest::newRow("type") << QByteArray("showDirs: false; sortField: FolderListModel.Type")
                          << "A.png,b.txt,c.txt";
    QTest::newRow("filter") << QByteArray("nameFilters: ['*.txt']") << "aside,sub,b.txt,c.txt";
    QTest::newRow("filters") << QByteArray("nameFilters: ['?.png', 'c*']; showDirs: false") << "A.png,c.txt";
    QTest::newRow("nothing passes") << QByteArray("nameFilters: ['*.mp4']; showDirs: false") << "";
    QTest::newRow("dots") << QByteArray("showDotAndDotDot: true") << ".,..,aside,sub,A.png,b.txt,c.txt";
    QTest::newRow("readable") << QByteArray("showOnlyReadable: true") << "aside,sub,A.png,b.txt,c.txt";
}

void tst_QDeclarativeFolderListModel::lists()
{
    QFETCH(QByteArray, members);
    QFETCH(QString, names);
    WatchedScene scene;
    QVERIFY(load(scene, members));
    QCOMPARE(scene.evaluate("names()").toString(), names);
    QCOMPARE(scene.evaluate("list.count").toInt(), names.isEmpty() ? 0 : names.count(',') + 1);
    // Set while running it has to come to the same.
    WatchedScene later;
    QVERIFY(load(later));
    for (const QByteArray &member : members.split(';')) {
        const QByteArray assignment = member.trimmed();
        if (!assignment.isEmpty())
            later.evaluate("list." + QByteArray(assignment).replace(": ", " = "));
    }
    QCOMPARE(later.evaluate("names()").toString(), names);
}

void tst_QDeclarativeFolderListModel::roles()
{
    WatchedScene scene;
    QVERIFY(load(scene, "showDirs: false"));
    QCOMPARE(scene.evaluate("rep.itemAt(1).path").toString(), m_folder.filePath(QStringLiteral("b.txt")));
}

void tst_QDeclarativeFolderListModel::isFolder()
{
    WatchedScene scene;
    QVERIFY(load(scene));
    QCOMPARE(
        scene.evaluate("[list.isFolder(1), list.isFolder(2), list.isFolder(99), list.isFolder(-1)].join()")
            .toString(),
        QStringLiteral("true,false,false,false"));
}

void tst_QDeclarativeFolderListModel::parentFolder()
{
    WatchedScene scene;
    QVERIFY(load(scene));
    scene.evaluate("list.folder = list.folder + '/sub'");
    QCOMPARE(scene.evaluate("list.count + ' ' + root.changes").toString(), QStringLiteral("0 1"));
    QCOMPARE(scene.evaluate("list.parentFolder").toUrl(), QUrl::fromLocalFile(m_folder.path()));
    scene.evaluate("list.folder = list.parentFolder");
    QCOMPARE(scene.evaluate("list.count").toInt(), 5);
    scene.evaluate("list.folder = 'file:///'");
    QCOMPARE(scene.evaluate("list.parentFolder").toUrl(), QUrl());
    // Without a folder there is the root alone.
    scene.evaluate("list.folder = ''");
    QCOMPARE(scene.evaluate("list.count").toInt(), 1);
    QCOMPARE(scene.evaluate("list.folder").toUrl(), QUrl());
}

void tst_QDeclarativeFolderListModel::missingFolderLeavesTheOldOne_data()
{
    QTest::addColumn<QByteArray>("folder");
    QTest::newRow("missing") << QByteArray("file:///no/such/folder");
    QTest::newRow("file") << QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("b.txt"))).toEncoded();
    QTest::newRow("network") << QByteArray("http://127.0.0.1/");
}

void tst_QDeclarativeFolderListModel::missingFolderLeavesTheOldOne()
{
    QFETCH(QByteArray, folder);
    WatchedScene scene;
    QVERIFY(load(scene));
    scene.evaluate("list.folder = '" + folder + "'");
    QCOMPARE(scene.evaluate("list.count + ' ' + root.changes").toString(), QStringLiteral("5 0"));
    QCOMPARE(scene.evaluate("list.folder").toUrl(), QUrl::fromLocalFile(m_folder.path()));
}

void tst_QDeclarativeFolderListModel::followsChanges()
{
    WatchedScene scene;
    QVERIFY(load(scene, "showDirs: false"));
    scene.evaluate("rep.itemAt(0).name = 'kept'");
    write(QStringLiteral("bb.txt"), 1, 0);
    QTRY_COMPARE(scene.evaluate("names()").toString(), QStringLiteral("kept,b.txt,bb.txt,c.txt"));
    QVERIFY(QFile::remove(m_folder.filePath(QStringLiteral("bb.txt"))));
    QTRY_COMPARE(scene.evaluate("names()").toString(), QStringLiteral("kept,b.txt,c.txt"));
    QCOMPARE(scene.evaluate("list.count").toInt(), 3);
}

QTEST_MAIN(tst_QDeclarativeFolderListModel)
#include "tst_qdeclarativefolderlistmodel.moc"
