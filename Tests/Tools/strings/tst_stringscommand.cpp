#include "ToolRefusal.h"

#include <QtCore/QTranslator>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

namespace {

const char translated[] = "<vidtips>\n<vidtip key=\"a\" title=\"One &amp; two\" context=\"C\">\n"
                          "<summary>Some\n   words</summary><step>Once</step><step>Once</step></vidtip>\n"
                          "<vidtip key=\"b\" title=\"Without context\"/>\n</vidtips>\n";
const char userInterface[] = "import QtQuick 1.1\nRectangle { width: 50; height: 20; color: \"#20a040\"\n"
                             "  property string a: vidTipView.translate(\"It's \\\"here\\\"\", 'UI')\n"
                             "  property string b: qsTr(\"Named\") // qsTr(\"not this\")\n"
                             "  property string c: QT_TRANSLATE_NOOP(\"UI\", \"Marked\")\n}\n";

// "context|source|translation|type" of each message, in order.
QStringList messagesIn(const QString &ts)
{
    QXmlStreamReader reader(TestPackages::read(ts));
    QStringList messages;
    QString context;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == "name")
            context = reader.readElementText();
        else if (reader.name() == "source")
            source = reader.readElementText();
        else if (reader.name() == "translation") {
            const QString type = reader.attributes().value("type").toString();
            messages << QStringList({context, source, reader.readElementText(), type}).join('|');
        }
    }
    messages.sort();
    return messages;
}

} // namespace

/** Runs the command that gathers texts for translators and makes catalogues of their work. */
class tst_StringsCommand : public QObject
{
    Q_OBJECT

private slots:
    void extractsTexts();
    void keepsTranslations();
    void writesNothingTwice();
    void refusesDamagedTranslations();
    void keepsTranslationsOfDamagedSources_data();
    void keepsTranslationsOfDamagedSources();
    void buildsCatalogues();
    void translatesByMachine();
    void keepsTranslationsFromTheMachine();
    void leavesCataloguesOfOthersAlone();
    void refusesWhatIsUnreadable_data();
    void refusesWhatIsUnreadable();
    void refusesBadUse_data();
    void refusesBadUse();
};

void tst_StringsCommand::extractsTexts()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    packages.write("Tools.vidtips/Control/U.xml",
                   "<vidtips locale=\"en_US\"><vidtip key=\"a\" title=\"No\" context=\"C\"/></vidtips>");
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", userInterface);
    packages.write("Plain.vidtips/Control/P.xml", "<vidtips/>");
    const ToolRun run({"strings", "--locale", "de", "--json", "."}, packages.path());
    QCOMPARE(run.errors, QString());
    const QString ts = packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts");
    QCOMPARE(messagesIn(ts),
             QStringList({"C|Once||unfinished", "C|One & two||unfinished", "C|Some words||unfinished",
                          "UI|It's \"here\"||unfinished", "UI|Marked||unfinished",
                          "VidtipsUI|Named||unfinished"}));
    const QJsonArray jobs = run.json().array();
    QCOMPARE(jobs.size(), 1);
    QCOMPARE(jobs.first().toObject(),
             (QJsonObject{{"package", "Tools"},
                          {"locale", "de_DE"},
                          {"translations", ts},
                          {"texts", 6},
                          {"added", 6},
                          {"vanished", 0},
                          {"untranslated", 6}}));
    QVERIFY(!QFileInfo::exists(packages.filePath("Plain.vidtips/l10n")));
    QVERIFY(TestPackages::read(ts).contains("<location filename=\"../Control/T.xml\" line=\"3\"/>"));
}

void tst_StringsCommand::keepsTranslations()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    const QString ts = packages.write(
        "Tools.vidtips/l10n/Vidtips_de_DE.ts",
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE TS>\n<TS version=\"2.1\" "
        "language=\"de_DE\">\n<context>\n"
        "<name>C</name>\n"
        "<message><source>Once</source><translatorcomment>note</translatorcomment><translation>Einmal</"
        "translation></message>\n"
        "<message><source>Some words</source><translation type=\"vanished\">Worte</translation></message>\n"
        "<message><source>Gone</source><translation>Weg</translation></message>\n"
        "<message><source>Never done</source><translation type=\"unfinished\"></translation></message>\n"
        "<message numerus=\"yes\"><source>%n parts</source><translation><numerusform>ein</numerusform>"
        "<numerusform>mehr</numerusform></translation></message>\n"
        "</context>\n</TS>\n");
    const ToolRun run({"strings", packages.path()});
    QVERIFY2(run.output.contains("3 texts, 1 new, 2 vanished, 1 to translate"),
             qPrintable(run.output + run.errors));
    const QByteArray xml = TestPackages::read(ts);
    QVERIFY(xml.contains(
        "<translatorcomment>note</translatorcomment>\n        <translation>Einmal</translation>"));
    QVERIFY(xml.contains("<source>Some words</source>\n        <translation>Worte</translation>"));
    QVERIFY(xml.contains("<source>Gone</source>\n        <translation type=\"vanished\">Weg</translation>"));
    QVERIFY(xml.contains("<numerusform>mehr</numerusform>"));
    QVERIFY(!xml.contains("Never done"));
    QVERIFY(xml.contains(
        "<source>One &amp; two</source>\n        <translation type=\"unfinished\"></translation>"));
}

void tst_StringsCommand::writesNothingTwice()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    QCOMPARE(ToolRun({"strings", "--locale", "de_DE", packages.path()}).exitCode, 0);
    QFile ts(packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts"));
    const QDateTime past = QDateTime::currentDateTime().addDays(-1);
    QVERIFY(ts.open(QIODevice::ReadWrite) && ts.setFileTime(past, QFileDevice::FileModificationTime));
    ts.close();
    QCOMPARE(ToolRun({"strings", packages.path()}).exitCode, 0);
    QVERIFY(qAbs(QFileInfo(ts.fileName()).lastModified().secsTo(past)) < 2);
}

void tst_StringsCommand::refusesDamagedTranslations()
{
    const TestPackages packages;
    packages.write("Alpha.vidtips/Control/T.xml", translated);
    packages.write("Tools.vidtips/Control/T.xml", translated);
    const QString ts = packages.write("Tools.vidtips/l10n/Vidtips_de_DE.ts", "<TS><context>");
    const ToolRun run({"strings", "--locale", "de_DE", packages.path()});
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errors.startsWith("vidtips: " + ts + ":1:"), qPrintable(run.errors));
    QCOMPARE(run.errors.count('\n'), 1);
    QCOMPARE(TestPackages::read(ts), QByteArray("<TS><context>"));
    QVERIFY(!QFileInfo::exists(packages.filePath("Alpha.vidtips/l10n")));
    packages.write("Tools.vidtips/l10n/Vidtips_de_DE.ts", "<other/>");
    QCOMPARE(ToolRun({"strings", packages.path()}).errors,
             QString("vidtips: the file holds no translations: %1\n").arg(ts));
}

void tst_StringsCommand::keepsTranslationsOfDamagedSources_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("control file") << "Tools.vidtips/Control/T.xml"
                                  << QByteArray(translated).replace("</summary>", "")
                                  << "Tools.vidtips/Control/T.xml:4:43: ";
    QTest::newRow("user interface") << "Tools.vidtips/ui/VidtipsUI.qml"
                                    << QByteArray(userInterface).replace("}", "")
                                    << "Tools.vidtips/ui/VidtipsUI.qml:7:1: ";
}

// A text that could not be read is not gone.
void tst_StringsCommand::keepsTranslationsOfDamagedSources()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    packages.write("Tools.vidtips/ui/VidtipsUI.qml", userInterface);
    QCOMPARE(ToolRun({"strings", "--locale", "de_DE", "."}, packages.path()).exitCode, 0);
    const QByteArray before = TestPackages::read(packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts"));
    packages.write(file, content);
    const ToolRun run({"strings", "."}, packages.path());
    QVERIFY2(run.errors.startsWith("vidtips: ") && run.errors.contains(error), qPrintable(run.errors));
    QCOMPARE(run.errors.count('\n'), 1);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(TestPackages::read(packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts")), before);
}

void tst_StringsCommand::buildsCatalogues()
{
    const TestPackages packages;
    const auto tsOf = [](const QByteArray &context, const QByteArray &source, const QByteArray &translation) {
        return "<?xml version=\"1.0\"?><!DOCTYPE TS><TS version=\"2.1\"><context><name>" + context
            + "</name><message><source>" + source + "</source><translation>" + translation
            + "</translation></message></context></TS>";
    };
    packages.write(
        "Tools.vidtips/Control/T.xml",
        QByteArray(translated).replace("<vidtips>", "<vidtips search=\"Shared\" l10n_name=\"lang\">"));
    packages.write("Tools.vidtips/lang/Vidtips_de_DE.ts", tsOf("C", "Some words", "Worte"));
    packages.write("Shared.vidtips/Control/S.xml", "<vidtips/>");
    packages.write("Shared.vidtips/ui/VidtipsUI.qml", userInterface);
    packages.write("Shared.vidtips/l10n/Vidtips_de_DE.ts", tsOf("UI", "Marked", "Markiert"));
    const ToolRun run({"strings", "--release", packages.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QTranslator own;
    QVERIFY(own.load(packages.filePath("Tools.vidtips/lang/Vidtips_de_DE.qm")));
    QCOMPARE(own.translate("C", "Some words"), QString("Worte"));
    // The library asks one catalogue for all texts of a tip.
    QCOMPARE(own.translate("UI", "Marked"), QString("Markiert"));
    QTranslator shared;
    QVERIFY(shared.load(packages.filePath("Shared.vidtips/l10n/Vidtips_de_DE.qm")));
    QCOMPARE(shared.translate("UI", "Marked"), QString("Markiert"));
    QCOMPARE(packages.files().filter(".new"), QStringList());
}

void tst_StringsCommand::translatesByMachine()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml",
                   "<vidtips><vidtip key=\"a\" context=\"C\" title=\"Grid of %(grid)s\"/></vidtips>");
    const QStringList pseudo{"strings", "--pseudo", "eo", "--release", "."};
    const QString locale = QLocale("eo").name();
    for (int time = 0; time < 2; ++time) {
        const ToolRun run(pseudo, packages.path());
        QCOMPARE(run.errors, QString());
        QVERIFY2(run.output.contains(" 0 to translate"), qPrintable(run.output));
    }
    QTranslator texts;
    QVERIFY(texts.load(packages.filePath("Tools.vidtips/l10n/Vidtips_" + locale + ".qm")));
    QCOMPARE(texts.translate("C", "Grid of %(grid)s"),
             QString("[\u011C\u0155\u00EE\u0111 \u00F6f %(grid)s ~~~~~~]"));
}

void tst_StringsCommand::keepsTranslationsFromTheMachine()
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", translated);
    QCOMPARE(ToolRun({"strings", "--locale", "de_DE", "."}, packages.path()).exitCode, 0);
    const QString ts = packages.filePath("Tools.vidtips/l10n/Vidtips_de_DE.ts");
    const QByteArray made = TestPackages::read(ts).replace("<translation type=\"unfinished\"></translation>",
                                                           "<translation>Deutsch</translation>");
    packages.write("Tools.vidtips/l10n/Vidtips_de_DE.ts", made);
    const ToolRun run({"strings", "--pseudo", "de_DE", "."}, packages.path());
    QCOMPARE(
        run.errors,
        QString(
            "vidtips: Tools.vidtips/l10n/Vidtips_de_DE.ts has translations, which are kept: choose another "
            "locale for --pseudo\n"));
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(TestPackages::read(ts), made);
}

void tst_StringsCommand::leavesCataloguesOfOthersAlone()
{
    const TestPackages packages;
    packages.write("Shared.vidtips/Control/S.xml", "<vidtips/>");
    packages.write("Shared.vidtips/ui/VidtipsUI.qml", userInterface);
    packages.write("Shared.vidtips/l10n/Vidtips_de_DE.qm", "theirs");
    packages.write("Tools.vidtips/Control/T.xml", translated);
    const ToolRun run({"strings", "--locale", "de_DE", "--release", "."}, packages.path());
    QCOMPARE(
        run.errors,
        QString("vidtips: left alone, for want of its translations: Shared.vidtips/l10n/Vidtips_de_DE.qm\n"));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(packages.files("Shared.vidtips/l10n"), QStringList{"Vidtips_de_DE.qm"});
    QCOMPARE(TestPackages::read(packages.filePath("Shared.vidtips/l10n/Vidtips_de_DE.qm")),
             QByteArray("theirs"));
    QCOMPARE(packages.files("Tools.vidtips/l10n"), QStringList({"Vidtips_de_DE.qm", "Vidtips_de_DE.ts"}));
}

void tst_StringsCommand::refusesWhatIsUnreadable_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("place");
    QTest::newRow("texts of a file") << QStringList{"strings"} << "Tools.vidtips/Control/T.xml";
    QTest::newRow("texts of a folder") << QStringList{"strings", "--json"} << "Tools.vidtips/Control";
}

void tst_StringsCommand::refusesWhatIsUnreadable()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, place);
    compareUnreadable(arguments, place);
}

void tst_StringsCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("strings of nothing", {"strings"}, "strings needs a folder; see \"vidtips strings --help\"");
    row("strings for no locale", {"strings", "--locale", "german", "."}, "Qt knows no locale \"german\"");
    row("strings from no locale", {"strings", "--source-locale", "german", "."},
        "Qt knows no locale \"german\"");
}

void tst_StringsCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

QTEST_GUILESS_MAIN(tst_StringsCommand)

#include "tst_stringscommand.moc"
