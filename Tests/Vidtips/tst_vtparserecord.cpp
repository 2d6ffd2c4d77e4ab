#include <Vidtips/VTParseRecord_p.h>

#include <QtTest/QTest>

using Vidtips::VTParseRecord;

class tst_VTParseRecord : public QObject
{
    Q_OBJECT

private slots:
    void rulesOutWhatIsNotInTheBytes_data();
    void rulesOutWhatIsNotInTheBytes();
    void knowsAFileByItsPathAndBytes();
    void tellsOtherLocales_data();
    void tellsOtherLocales();
};

static const QString controlFile = QStringLiteral("/Tools.vidtips/Control/a.xml");

static QByteArray inUtf16(const QString &text, bool isBigEndian)
{
    QByteArray bytes;
    for (const QChar character : QChar(QChar::ByteOrderMark) + text) {
        const char high = char(character.row());
        const char low = char(character.cell());
        bytes.append(isBigEndian ? high : low).append(isBigEndian ? low : high);
    }
    return bytes;
}

void tst_VTParseRecord::rulesOutWhatIsNotInTheBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("isRuledOut");
    const QByteArray content = "<vidtips><vidtip key='cut'/></vidtips>";
    const auto row = [&](const char *name, const QByteArray &head, const QString &key, bool isRuledOut) {
        QTest::newRow(name) << head + content << key << isRuledOut;
    };
    row("another key", "", "copy", true);
    row("the key", "", "cut", false);
    row("a part of a key", "", "cu", false);
    row("first literal character", "", "!", true);
    row("last literal character", "", "~", true);
    row("blank", "", "a b", false);
    row("tabulator", "", "a\tb", false);
    row("delete", "", "a\x7f", false);
    row("beyond ASCII", "", QStringLiteral("a\u00e4"), false);
    row("empty key", "", QString(), false);
    for (const char *special : {"&", "<", ">", "\"", "'"})
        QTest::addRow("special %s", special) << content << QString("a%1b").arg(special) << false;

    row("numeric reference", "<!-- &#46; -->", "copy", false);
    row("number sign", "<!-- # -->", "copy", true);
    row("entity reference", "<!-- &amp; -->", "copy", true);
    row("document type", "<!DOCTYPE vidtips>", "copy", false);
    row("declared without encoding", "<?xml version='1.0'?>", "copy", true);
    row("declared UTF-8", "<?xml version='1.0' encoding='UTF-8'?>", "copy", true);
    row("declared UTF-8, other quotes", "<?xml version=\"1.0\" encoding=\"utf-8\"?>", "copy", true);
    row("declared otherwise", "<?xml version='1.0' encoding='UTF-7'?>", "copy", false);
    row("encoding of other text", "<?xml version='1.0'?><!-- encoding -->", "copy", true);
    row("encoding without a declaration", "<!-- encoding='UTF-7' -->", "copy", true);
    QTest::newRow("UTF-16, big end first") << inUtf16(content, true) << "copy" << false;
    QTest::newRow("UTF-16, little end first") << inUtf16(content, false) << "copy" << false;
}

void tst_VTParseRecord::rulesOutWhatIsNotInTheBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, key);
    const VTParseRecord::File file(controlFile, bytes);
    VTParseRecord record;
    record.remember(file, QString());
    QTEST(record.rulesOut(file, key), "isRuledOut");
}

void tst_VTParseRecord::knowsAFileByItsPathAndBytes()
{
    const VTParseRecord::File first(controlFile, "<vidtips/>");
    const VTParseRecord::File second(controlFile, "<vidtips />");
    const VTParseRecord::File elsewhere("/b.xml", "<vidtips/>");
    VTParseRecord record;
    QVERIFY(!record.rulesOut(first, "copy"));
    record.remember(first, QString());
    QVERIFY(record.rulesOut(first, "copy"));
    QVERIFY(!record.rulesOut(second, "copy"));
    QVERIFY(!record.rulesOut(elsewhere, "copy"));
    record.remember(second, QString());
    QVERIFY(!record.rulesOut(first, "copy"));
    QVERIFY(record.rulesOut(second, "copy"));
}

void tst_VTParseRecord::tellsOtherLocales_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isOther");
    QTest::newRow("none") << QString() << false;
    QTest::newRow("same") << "de_DE" << false;
    QTest::newRow("language alone") << "de" << false;
    QTest::newRow("other language") << "en_US" << true;
    QTest::newRow("other country") << "de_AT" << true;
}

void tst_VTParseRecord::tellsOtherLocales()
{
    QFETCH(QString, name);
    QFETCH(bool, isOther);
    const QLocale german(QStringLiteral("de_DE"));
    const VTParseRecord::File file(controlFile, "<vidtips/>");
    VTParseRecord record;
    QVERIFY(!record.isOfOtherLocale(file, german));
    record.remember(file, name);
    QCOMPARE(record.isOfOtherLocale(file, german), isOther);
    QVERIFY(!record.isOfOtherLocale({controlFile, "<vidtips />"}, german));
}

QTEST_GUILESS_MAIN(tst_VTParseRecord)
#include "tst_vtparserecord.moc"
