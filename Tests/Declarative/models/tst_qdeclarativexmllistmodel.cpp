#include "DocumentServer.h"
#include "Patience.h"
#include "WatchedScene.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

namespace {

const char feed[] = R"(<feed><entry id="1"><title>one &amp; 1</title><size>2.5</size></entry>
    <entry id="2"><title>two</title><title>again</title></entry><entry id="3"/></feed>)";

QByteArray model(const QByteArray &members)
{
    return R"(Item {
        id: root
        property variant log: []
        property alias model: list
        function note(text) { var all = log; all.push(text); log = all }
        function take() { var text = log.join(); log = []; return text }
        function dump() {
            var all = []
            for (var i = 0; i < list.count; ++i) {
                var row = list.get(i), values = []
                for (var role in row) values.push(row[role])
                all.push(values.join("/"))
            }
            return all.join(" ")
        }
        Repeater { id: rep; model: list; Item { property string shown: model.t; property int made: root.take.length } }
        function shown() { var s = []; for (var i = 0; i < rep.count; ++i) s.push(rep.itemAt(i).shown); return s.join() }
        XmlListModel {
            id: list
            onStatusChanged: note("status " + status)
            onCountChanged: note("count " + count)
            onItemsInserted: note("inserted " + index + " " + count)
            onItemsRemoved: note("removed " + index + " " + count)
            onItemsChanged: note("changed " + index + " " + count + " " + roles.length)
            )"
        + members + "} }";
}

} // namespace

class tst_QDeclarativeXmlListModel : public QObject
{
    Q_OBJECT

private slots:
    void initialValues();
    void sources_data();
    void sources();
    void failedSource_data();
    void failedSource();
    void queries_data();
    void queries();
    void wrongQueries_data();
    void wrongQueries();
    void refusals_data();
    void refusals();
    void namespaces();
    void signalsInOrder();
    void xmlComesFirst();
    void reloadsAll();
    void reloadsByKey_data();
    void reloadsByKey();
    void keepsRowsOfTheSameKey();
    void clears();
    void keepsTheLastOfManyChanges();
    void mayGoWhileLoading();
    void doesNotHoldUpTheView();
    void get();
};

void tst_QDeclarativeXmlListModel::initialValues()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { XmlListModel { id: m } XmlRole { id: r } }"));
    QCOMPARE(
        scene
            .evaluate("[m.status, m.progress, m.source, m.xml, m.query, m.namespaceDeclarations, m.count,"
                      " m.roles.length, m.errorString(), r.name, r.query, r.isKey].join()")
            .toString(),
        QStringLiteral("1,1,,,,,0,0,,,,false"));
    QCOMPARE(
        scene
            .evaluate(
                "[XmlListModel.Null, XmlListModel.Ready, XmlListModel.Loading, XmlListModel.Error].join()")
            .toString(),
        QStringLiteral("0,1,2,3"));
}

void tst_QDeclarativeXmlListModel::sources_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("relative file") << "file";
    QTest::newRow("network") << "http";
    QTest::newRow("text") << "xml";
}

void tst_QDeclarativeXmlListModel::sources()
{
    QFETCH(QString, kind);
    DocumentServer server("200 OK", feed);
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), feed);
    QVERIFY(scene.load(model("query: '/feed/entry'; XmlRole { name: 't'; query: 'title/string()' }")));
    if (kind == QLatin1String("xml"))
        scene.root()->property("model").value<QObject *>()->setProperty("xml", feed);
    else if (kind == QLatin1String("http"))
        scene.evaluate("list.source = '" + server.url("feed.xml") + "'");
    else
        scene.evaluate("list.source = 'feed.xml'");
    QCOMPARE(scene.evaluate("list.status").toInt(), 2);
    QCOMPARE(scene.evaluate("list.progress").toInt(), kind == QLatin1String("xml") ? 1 : 0);
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QCOMPARE(scene.evaluate("list.progress").toInt(), 1);
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("one & 1,two,"));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeXmlListModel::failedSource_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("missing file") << "nosuch.xml";
    QTest::newRow("not found") << QString();
    QTest::newRow("unknown scheme") << "what:ever";
}

void tst_QDeclarativeXmlListModel::failedSource()
{
    QFETCH(QString, source);
    DocumentServer server("404 Not Found", "none");
    WatchedScene scene;
    QVERIFY(scene.load(model("query: '/feed/entry'; xml: '<feed><entry/></feed>'")));
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 1);
    scene.evaluate("take(); list.source = '" + (source.isEmpty() ? server.url("x") : source.toUtf8())
                   + "'; list.xml = ''");
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 3);
    QVERIFY(!scene.evaluate("list.errorString()").toString().isEmpty());
    QCOMPARE(scene.evaluate("take()").toString(), QStringLiteral("status 2,removed 0 1,count 0,status 3"));
    scene.evaluate("list.xml = '<feed/>'");
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QCOMPARE(scene.evaluate("list.errorString()").toString(), QString());
}

void tst_QDeclarativeXmlListModel::queries_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("role");
    QTest::addColumn<QString>("rows");
    const auto row = [](const char *name, const char *query, const char *role, const char *rows) {
        QTest::newRow(name) << QByteArray(query) << QByteArray(role) << QString::fromLatin1(rows);
    };
    row("text", "/feed/entry", "title/string()", "one & 1 two ");
    row("number", "/feed/entry", "@id/number()", "1 2 3");
    row("missing number", "/feed/entry", "size/number()", "2.5  ");
    row("attribute", "/feed/entry", "@id/string()", "1 2 3");
    row("node", "/feed/entry", "title", "one & 1 two ");
    row("count", "/feed/entry", "count(title)", "1 2 0");
    row("anywhere", "//title", "string()", "one & 1 two again");
    row("condition", "/feed/entry[@id > 1]", "@id/string()", "2 3");
    row("function", "/feed/entry", "upper-case(string(@id))", "1 2 3");
    row("nothing found", "/feed/nothing", "string()", "");
    row("no role query", "/feed/entry", "", "  ");
}

void tst_QDeclarativeXmlListModel::queries()
{
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, role);
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), feed);
    QVERIFY(scene.load(
        model("source: 'feed.xml'; query: '" + query + "'; XmlRole { name: 't'; query: '" + role + "' }")));
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QTEST(scene.evaluate("dump()").toString(), "rows");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeXmlListModel::wrongQueries_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QByteArray>("role");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QString>("warning");
    QTest::newRow("query") << QByteArray(feed) << QByteArray("/feed[") << QByteArray("string()") << ""
                           << "QML XmlRole: invalid query: \"string()\"";
    QTest::newRow("role") << QByteArray(feed) << QByteArray("/feed/entry") << QByteArray("string(") << "  "
                          << "QML XmlRole: invalid query: \"string(\"";
    QTest::newRow("unknown function")
        << QByteArray(feed) << QByteArray("/feed/entry") << QByteArray("nosuch()") << "  "
        << "QML XmlRole: invalid query: \"nosuch()\"";
    QTest::newRow("document") << QByteArray("<feed><entry></feed>") << QByteArray("/feed/entry")
                              << QByteArray("string()") << ""
                              << "";
}

void tst_QDeclarativeXmlListModel::wrongQueries()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, query);
    QFETCH(QByteArray, role);
    QFETCH(QString, warning);
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), document);
    QVERIFY(scene.load(
        model("source: 'feed.xml'; query: '" + query + "'; XmlRole { name: 't'; query: '" + role + "' }")));
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QTEST(scene.evaluate("dump()").toString(), "rows");
    const QStringList warnings = warning.isEmpty() ? QStringList() : QStringList{warning};
    QCOMPARE(scene.warnings, warnings);
}

void tst_QDeclarativeXmlListModel::refusals_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<QString>("warning");
    QTest::newRow("query") << QByteArray("query: 'feed'")
                           << "QML XmlListModel: An XmlListModel query must start with '/' or \"//\"";
    QTest::newRow("role query") << QByteArray("XmlRole { name: 't'; query: '/feed' }")
                                << "QML XmlRole: An XmlRole query must not start with '/'";
    QTest::newRow("same name") << QByteArray("XmlRole { name: 't' } XmlRole { name: 't' }")
                               << "QML XmlRole: \"t\" duplicates a previous role name and will be disabled.";
}

void tst_QDeclarativeXmlListModel::refusals()
{
    QFETCH(QByteArray, members);
    WatchedScene scene;
    QVERIFY(scene.load(model(members)));
    QTEST(scene.warnings.join('|'), "warning");
    QVERIFY(scene.evaluate("list.roles.length").toInt() < 2);
}

void tst_QDeclarativeXmlListModel::namespaces()
{
    WatchedScene scene;
    QVERIFY(scene.load(model(R"(
        xml: "<f xmlns='urn:f' xmlns:o='urn:o'><e><o:t>x</o:t></e></f>"
        namespaceDeclarations: "declare default element namespace 'urn:f'; declare namespace o = 'urn:o';"
        query: "/f/e"
        XmlRole { name: "t"; query: 'o:t/string()' })")));
    QTRY_COMPARE(scene.evaluate("dump()").toString(), QStringLiteral("x"));
    scene.evaluate("list.namespaceDeclarations = ''");
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QCOMPARE(scene.evaluate("list.count").toInt(), 0);
}

void tst_QDeclarativeXmlListModel::signalsInOrder()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), feed);
    QVERIFY(scene.load(model("query: '/feed/entry'; onProgressChanged: note('progress ' + progress);"
                             "onSourceChanged: note('source'); onQueryChanged: note('query');"
                             "onXmlChanged: note('xml'); onNamespaceDeclarationsChanged: note('ns')")));
    scene.evaluate("take(); list.source = 'feed.xml'");
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QCOMPARE(scene.evaluate("take()").toString(),
             QStringLiteral("progress 0,status 2,source,inserted 0 3,count 3,progress 1,status 1"));
    scene.evaluate("list.query = '/feed'; list.namespaceDeclarations = ' '; list.xml = '<feed/>'");
    const QString changes = scene.evaluate("take()").toString();
    QVERIFY2(changes.contains(QStringLiteral("query,ns")) && changes.endsWith(QStringLiteral("xml")),
             qPrintable(changes));
}

void tst_QDeclarativeXmlListModel::xmlComesFirst()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), feed);
    QVERIFY(scene.load(model("source: 'feed.xml'; xml: '<feed><entry/></feed>'; query: '/feed/entry'")));
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 1);
    scene.evaluate("list.xml = ''");
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 3);
}

void tst_QDeclarativeXmlListModel::reloadsAll()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), feed);
    QVERIFY(scene.load(
        model("source: 'feed.xml'; query: '/feed/entry'; XmlRole { name: 't'; query: 'title/string()' }")));
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 3);
    scene.addFile(QStringLiteral("feed.xml"), "<feed><entry><title>new</title></entry></feed>");
    scene.evaluate("take(); list.reload()");
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QCOMPARE(scene.evaluate("take()").toString(),
             QStringLiteral("status 2,removed 0 3,inserted 0 1,count 1,status 1"));
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("new"));
}

void tst_QDeclarativeXmlListModel::reloadsByKey_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QString>("log");
    const auto row = [](const char *name, const char *before, const char *after, const char *log) {
        QTest::newRow(name) << QByteArray(before) << QByteArray(after) << QString::fromLatin1(log);
    };
    row("same", "a b c", "a b c", "");
    row("new ones first", "a b", "x y a b", "inserted 0 2,count 4");
    row("new ones last", "a b", "a b x", "inserted 2 1,count 3");
    row("new ones between", "a b", "a x b y", "inserted 1 1,inserted 3 1,count 4");
    row("some gone", "a b c d", "b d", "removed 2 1,removed 0 1,count 2");
    row("window moved on", "a b c", "x a b", "removed 2 1,inserted 0 1");
    row("all others", "a b", "x y", "removed 0 2,inserted 0 2");
    row("other order", "a b c", "c a b", "removed 0 2,inserted 1 2");
    row("twice", "a", "a a", "inserted 1 1,count 2");
    row("fewer of the same", "a a a", "a", "removed 0 2,count 1");
    row("none left", "a b", "", "removed 0 2,count 0");
}

void tst_QDeclarativeXmlListModel::reloadsByKey()
{
    const auto document = [](const QByteArray &keys) {
        QByteArray entries;
        for (const QByteArray &key : keys.split(' ')) {
            if (!key.isEmpty())
                entries += "<e k='" + key + "'/>";
        }
        return "<f>" + entries + "</f>";
    };
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QString, log);
    WatchedScene scene;
    QVERIFY(scene.load(model("query: '/f/e'; XmlRole { name: 't'; query: '@k/string()'; isKey: true }")));
    scene.evaluate("list.xml = \"" + document(before) + '"');
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    scene.evaluate("take(); list.xml = \"" + document(after) + '"');
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QString expected = QStringLiteral("status 2,") + log + QStringLiteral(",status 1");
    if (log.isEmpty())
        expected = QStringLiteral("status 2,status 1");
    if (before != after)
        QCOMPARE(scene.evaluate("take()").toString(), expected);
    QCOMPARE(scene.evaluate("shown()").toString(), QString::fromLatin1(after).replace(' ', ','));
    QCOMPARE(scene.evaluate("dump()").toString(), QString::fromLatin1(after));
}

void tst_QDeclarativeXmlListModel::keepsRowsOfTheSameKey()
{
    WatchedScene scene;
    QVERIFY(scene.load(model("query: '/f/e'; XmlRole { name: 't'; query: 'string()' }"
                             "XmlRole { name: 'k'; query: '@k/string()'; isKey: true }")));
    scene.evaluate("list.xml = \"<f><e k='1'>one</e></f>\"");
    QTRY_COMPARE(scene.evaluate("shown()").toString(), QStringLiteral("one"));
    scene.evaluate("take(); list.xml = \"<f><e k='1'>changed</e><e k='2'>two</e></f>\"");
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 2);
    // Who shows a row is not told that other values came with its key; who asks gets them.
    QCOMPARE(scene.evaluate("shown()").toString(), QStringLiteral("one,two"));
    QCOMPARE(scene.evaluate("list.get(0).t").toString(), QStringLiteral("changed"));
}

void tst_QDeclarativeXmlListModel::clears()
{
    WatchedScene scene;
    QVERIFY(scene.load(model("xml: '<f><e/><e/></f>'; query: '/f/e'")));
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 2);
    scene.evaluate("take(); list.xml = ''");
    QCOMPARE(scene.evaluate("list.status + take()").toString(), QStringLiteral("1removed 0 2,count 0"));
}

void tst_QDeclarativeXmlListModel::keepsTheLastOfManyChanges()
{
    WatchedScene scene;
    QVERIFY(scene.load(model("query: '/f/e'; XmlRole { name: 't'; query: '@k/string()' }")));
    scene.evaluate("take(); for (var i = 0; i < 50; ++i) list.xml = \"<f><e k='\" + i + \"'/></f>\"");
    QTRY_COMPARE(scene.evaluate("list.status").toInt(), 1);
    QCOMPARE(scene.evaluate("take()").toString(), QStringLiteral("status 2,inserted 0 1,count 1,status 1"));
    QCOMPARE(scene.evaluate("dump()").toString(), QStringLiteral("49"));
}

void tst_QDeclarativeXmlListModel::mayGoWhileLoading()
{
    DocumentServer server("200 OK", feed);
    WatchedScene scene;
    scene.addFile(QStringLiteral("feed.xml"), feed);
    QVERIFY(scene.load("Item { id: root; property variant sources; property variant model;\n"
                       "Component { id: maker; XmlListModel { query: '//entry' } } }"));
    scene.evaluate("root.sources = ['feed.xml', '" + server.url("feed.xml") + "']");
    scene.evaluate("for (var i = 0; i < 60; ++i) { var m = maker.createObject(root);"
                   " if (i % 3) m.source = root.sources[i % 3 - 1]; else m.xml = '<a/>'; m.destroy() }");
    scene.evaluate("root.model = maker.createObject(root, { source: root.sources[1] })");
    QTRY_COMPARE(scene.evaluate("root.model.count").toInt(), 3);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeXmlListModel::doesNotHoldUpTheView()
{
    QByteArray document = "<f>";
    for (int i = 0; i < 20000; ++i)
        document += "<e k='" + QByteArray::number(i) + "'/>";
    document += "</f>";
    WatchedScene scene;
    scene.addFile(QStringLiteral("big.xml"), document);
    QVERIFY(scene.load("Item { XmlListModel { id: list; source: 'big.xml'; query: '/f/e'\n"
                       "XmlRole { name: 't'; query: '@k/number()' } } }"));
    // The thread that paints is free while the status is Loading.
    bool wasFree = false;
    QTRY_VERIFY_WITH_TIMEOUT((wasFree = wasFree || scene.evaluate("list.status").toInt() == 2,
                              scene.evaluate("list.count").toInt() == 20000),
                             60000);
    QVERIFY(wasFree);
    QCOMPARE(scene.evaluate("list.get(19999).t").toInt(), 19999);
}

void tst_QDeclarativeXmlListModel::get()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        model("xml: '<f><e k=\"5\"/></f>'; query: '/f/e'; XmlRole { name: 't'; query: '@k/number()' }")));
    QTRY_COMPARE(scene.evaluate("list.count").toInt(), 1);
    QCOMPARE(scene.evaluate("list.get(0).t + 1").toInt(), 6);
    QCOMPARE(scene.evaluate("list.get(1) === undefined && list.get(-1) === undefined").toBool(), true);
    QCOMPARE(scene.warnings, QStringList());
}

QTEST_MAIN(tst_QDeclarativeXmlListModel)
#include "tst_qdeclarativexmllistmodel.moc"
