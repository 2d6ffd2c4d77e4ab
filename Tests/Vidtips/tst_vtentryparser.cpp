#include <Vidtips/VTEntryParser_p.h>

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
    void keys_data();
    void keys();
    void bytesAreReadAsAFileIs_data();
    void bytesAreReadAsAFileIs();
    void firstEntryOfAnything_data();
    void firstEntryOfAnything();
};

/** Reads @p content, and nothing of what the parser says about it. */
static VTEntryParser::Result read(VTEntryParser &parser, QByteArray content)
{
    const MessageRecorder silence;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return parser.read(buffer);
}

void tst_VTEntryParser::entries_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("count"); // of entries; -1 for no root
    QTest::addColumn<QString>("error");
    const QString complete;
    QTest::newRow("one") << QByteArray("<vidtips><vidtip key='cut'/></vidtips>") << 1 << complete;
    QTest::newRow("among others") << QByteArray(
        "<vidtips><vidtip key='a'/><vidtip key='cut'/><vidtip/></vidtips>")
                                  << 1 << complete;
    QTest::newRow("twice") << QByteArray("<vidtips><vidtip key='cut'/><vidtip key='cut'/></vidtips>") << 2
                           << complete;
    QTest::newRow("none") << QByteArray("<vidtips><vidtip key='a'/></vidtips>") << 0 << complete;
    QTest::newRow("case of the key") << QByteArray("<vidtips><vidtip key='Cut'/></vidtips>") << 0 << complete;
    QTest::newRow("in another entry")
        << QByteArray("<vidtips><vidtip key='a'><vidtip key='cut'/></vidtip></vidtips>") << 0 << complete;
    QTest::newRow("in another element")
        << QByteArray("<vidtips><p><vidtip key='cut'/></p></vidtips>") << 0 << complete;
    QTest::newRow("another document") << QByteArray("<tips><vidtip key='cut'/></tips>") << -1 << complete;
    QTest::newRow("the document itself") << QByteArray("<vidtip key='cut'/>") << -1 << complete;
    QTest::newRow("breaks off after it")
        << QByteArray("<vidtips><vidtip key='cut'/>") << 1 << "1:29: unexpected end of file";
    QTest::newRow("breaks off before it")
        << QByteArray("<vidtips><b></a><vidtip key='cut'/></vidtips>") << 0 << "1:16: tag mismatch";
    QTest::newRow("attribute twice") << QByteArray(
        "<vidtips><vidtip key='cut'/>\n<vidtip key='a' key='b'/></vidtips>")
                                     << 1 << "2:24: attribute 'key' redefined";
    QTest::newRow("nothing") << QByteArray() << -1 << "1:1: unexpected end of file";
}

void tst_VTEntryParser::entries()
{
    QFETCH(QByteArray, content);
    QFETCH(int, count);
    VTEntryParser parser(VTEntryParser::contentFormat, "cut");
    const VTEntryParser::Result result = read(parser, content);
    QCOMPARE(result.root ? result.root->children().size() : -1, count);
    QTEST(result.error, "error");
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

void tst_VTEntryParser::keys_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("in their order") << QByteArray("<vidtips><vidtip key='b'/><p/><vidtip key='a'/></vidtips>")
                                    << QStringList{"b", "a"};
    QTest::newRow("repeated") << QByteArray("<vidtips><vidtip key='a'/><vidtip key='a'/></vidtips>")
                              << QStringList{"a", "a"};
    QTest::newRow("empty") << QByteArray("<vidtips><vidtip key=''/></vidtips>") << QStringList{""};
    QTest::newRow("none") << QByteArray("<vidtips><vidtip name='a'/></vidtips>") << QStringList();
    QTest::newRow("in another entry")
        << QByteArray("<vidtips><vidtip key='a'><vidtip key='b'/></vidtip></vidtips>") << QStringList{"a"};
    QTest::newRow("in another element")
        << QByteArray("<vidtips><p key='a'><vidtip key='b'/></p></vidtips>") << QStringList();
    QTest::newRow("a document in the document")
        << QByteArray("<vidtips key='a'><vidtips key='b'><vidtip key='c'/></vidtips></vidtips>")
        << QStringList{"b"};
    QTest::newRow("another document") << QByteArray("<tips><vidtip key='a'/></tips>") << QStringList();
    QTest::newRow("the document itself")
        << QByteArray("<vidtip key='a'><vidtip key='b'/></vidtip>") << QStringList();
    QTest::newRow("breaks off") << QByteArray("<vidtips><vidtip key='a'/><vidtip key='b'")
                                << QStringList{"a"};
    QTest::newRow("ends with an attribute that is there twice")
        << QByteArray("<vidtips><vidtip key='a'/><vidtip key='b' key='c'/></vidtips>") << QStringList{"a"};
}

void tst_VTEntryParser::keys()
{
    QFETCH(QByteArray, content);
    for (const char *key : {"a", "other", ""}) {
        VTEntryParser parser(VTEntryParser::contentFormat, key);
        QTEST(read(parser, content).keys, "keys");
    }
}

void tst_VTEntryParser::bytesAreReadAsAFileIs_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("UTF-8") << QStringLiteral(
                                  "<?xml version='1.0' encoding='UTF-8'?>\n<!DOCTYPE vidtips [<!ENTITY "
                                  "dash '\u2014'>]>\n<vidtips><vidtip key='cut' title='\u00e4&dash;'>"
                                  "<![CDATA[<b>]]>\u20ac</vidtip></vidtips>\n")
                                  .toUtf8();
    QTest::newRow("Latin 1") << QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?>"
                                           "<vidtips><vidtip key='cut' title='\xe4'/></vidtips>");
    const QString text("<vidtips><vidtip key='cut' title='\u00e4'/></vidtips>");
    const QString marked = QChar(QChar::ByteOrderMark) + text;
    QTest::newRow("UTF-16") << QByteArray(reinterpret_cast<const char *>(marked.utf16()), marked.size() * 2);
    QTest::newRow("characters that end a text")
        << QStringLiteral("<vidtips><vidtip key='cut'>\ufffe</vidtip></vidtips>").toUtf8();
    QTest::newRow("longer than a piece that is read") << "<vidtips>" + QByteArray(900, ' ')
            + "<vidtip key='cut'>" + QByteArray(400, 'x') + "</vidtip></vidtips>";
}

void tst_VTEntryParser::bytesAreReadAsAFileIs()
{
    QFETCH(QByteArray, content);
    for (int size = 0; size <= content.size(); ++size) {
        QByteArray part = content.left(size);
        QBuffer buffer(&part);
        buffer.open(QIODevice::ReadOnly);
        VTEntryParser parser(VTEntryParser::contentFormat, "cut");
        const MessageRecorder recorder;
        const VTEntryParser::Result ofFile = parser.read(buffer);
        const QStringList messages = recorder.texts();
        const VTEntryParser::Result ofBytes = parser.read(part);
        QCOMPARE(recorder.texts(), messages + messages);
        QCOMPARE(ofBytes.error, ofFile.error);
        QCOMPARE(ofBytes.keys, ofFile.keys);
        QCOMPARE(ofBytes.root ? ofBytes.root->toXml() : QString(),
                 ofFile.root ? ofFile.root->toXml() : QString());
    }
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
