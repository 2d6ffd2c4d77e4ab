#include <Vidtips/VTEntryParser_p.h>
#include <Vidtips/VTIndex.h>

#include "MessageRecorder.h"

#include <QtCore/QBuffer>
#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTEntryParser : public QObject
{
    Q_OBJECT

private slots:
    void entries_data();
    void entries();
    void entryIsWhole();
    void keyData();
    void otherFilter();
    void firstEntryOfAnything_data();
    void firstEntryOfAnything();
};

/** Reads @p content, and nothing of what the parser says about it. */
static VTEntryParser::Result read(VTEntryParser &parser, QByteArray content,
                                  VTXmlParser::ShouldGenerateElementFunction filter = nullptr)
{
    const MessageRecorder silence;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return parser.read(buffer, filter);
}

void tst_VTEntryParser::entries_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("count"); // of entries; -1 for no root
    QTest::addColumn<bool>("isComplete");
    QTest::newRow("one") << QByteArray("<vidtips><vidtip key='cut'/></vidtips>") << 1 << true;
    QTest::newRow("among others") << QByteArray(
        "<vidtips><vidtip key='a'/><vidtip key='cut'/><vidtip/></vidtips>")
                                  << 1 << true;
    QTest::newRow("twice") << QByteArray("<vidtips><vidtip key='cut'/><vidtip key='cut'/></vidtips>") << 2
                           << true;
    QTest::newRow("none") << QByteArray("<vidtips><vidtip key='a'/></vidtips>") << 0 << true;
    QTest::newRow("case of the key") << QByteArray("<vidtips><vidtip key='Cut'/></vidtips>") << 0 << true;
    QTest::newRow("in another entry")
        << QByteArray("<vidtips><vidtip key='a'><vidtip key='cut'/></vidtip></vidtips>") << 0 << true;
    QTest::newRow("in another element")
        << QByteArray("<vidtips><p><vidtip key='cut'/></p></vidtips>") << 0 << true;
    QTest::newRow("another document") << QByteArray("<tips><vidtip key='cut'/></tips>") << -1 << true;
    QTest::newRow("the document itself") << QByteArray("<vidtip key='cut'/>") << -1 << true;
    QTest::newRow("breaks off after it") << QByteArray("<vidtips><vidtip key='cut'/>") << 1 << false;
    QTest::newRow("breaks off before it")
        << QByteArray("<vidtips><b></a><vidtip key='cut'/></vidtips>") << 0 << false;
    QTest::newRow("nothing") << QByteArray() << -1 << false;
}

void tst_VTEntryParser::entries()
{
    QFETCH(QByteArray, content);
    QFETCH(int, count);
    VTEntryParser parser(VTEntryParser::contentFormat, "cut");
    const VTEntryParser::Result result = read(parser, content);
    QCOMPARE(result.root ? result.root->children().size() : -1, count);
    QTEST(result.isComplete, "isComplete");
    QCOMPARE(parser.firstEntry(result.root.get()) != nullptr, count > 0);
}

void tst_VTEntryParser::entryIsWhole()
{
    VTEntryParser parser(VTEntryParser::contentFormat, "cut");
    const VTEntryParser::Result result = read(
        parser, "<vidtips locale='de_DE'><vidtip key='cut' title='Cut'><p>Text<b/></p></vidtip></vidtips>");
    QCOMPARE(result.root->attribute("locale"), QString("de_DE"));
    const VTXmlElement *const entry = parser.firstEntry(result.root.get());
    QCOMPARE(entry->attribute("title"), QString("Cut"));
    QCOMPARE(entry->findChildren<VTXmlElement *>().size(), 2);
}

void tst_VTEntryParser::keyData()
{
    const QByteArray content = "<vidtipkeys><key name='a' x='1'/><key name='cut' x='2'/></vidtipkeys>";
    VTEntryParser parser(VTEntryParser::keyDataFormat, "cut");
    const VTEntryParser::Result result = read(parser, content);
    QCOMPARE(parser.firstEntry(result.root.get())->attribute("x"), QString("2"));
    VTEntryParser ofContent(VTEntryParser::contentFormat, "cut");
    QVERIFY(!read(ofContent, content).root);
}

void tst_VTEntryParser::otherFilter()
{
    VTEntryParser parser(VTEntryParser::contentFormat, QString());
    const VTEntryParser::Result result =
        read(parser, "<vidtips><vidtip key='a'><p/></vidtip><p/><vidtip key='b'/></vidtips>",
             &VTIndex::indexDataShouldGenerateElement);
    QCOMPARE(result.root->children().size(), 2);
    QVERIFY(result.root->children().constFirst()->children().isEmpty());
}

void tst_VTEntryParser::firstEntryOfAnything_data()
{
    QTest::addColumn<QString>("tag");
    QTest::addColumn<bool>("isEntry");
    QTest::newRow("an entry") << "vidtip" << true;
    QTest::newRow("a document within the document") << "vidtips" << false;
    QTest::newRow("an entry of key data") << "key" << false;
}

void tst_VTEntryParser::firstEntryOfAnything()
{
    QFETCH(QString, tag);
    const VTEntryParser parser(VTEntryParser::contentFormat, "cut");
    QVERIFY(!parser.firstEntry(nullptr));
    VTXmlElement root;
    QVERIFY(!parser.firstEntry(&root));
    auto *const child = new VTXmlElement(&root);
    child->setProperty("tagName", tag);
    QTEST(parser.firstEntry(&root) == child, "isEntry");
}

QTEST_GUILESS_MAIN(tst_VTEntryParser)
#include "tst_vtentryparser.moc"
