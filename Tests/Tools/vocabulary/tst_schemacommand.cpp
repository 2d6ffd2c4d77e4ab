#include "TestPaths.h"
#include "ToolRefusal.h"

#include <QtCore/QUrl>
#include <QtTest/QtTest>
#include <QtXmlPatterns/QAbstractMessageHandler>
#include <QtXmlPatterns/QXmlSchema>
#include <QtXmlPatterns/QXmlSchemaValidator>

namespace {

const QString shared = TestPaths::source("Examples/Drafting/Content/Base/Shared.vidtips");

class Silence : public QAbstractMessageHandler
{
protected:
    void handleMessage(QtMsgType, const QString &, const QUrl &, const QSourceLocation &) override { }
};

} // namespace

/** Makes XML schemas of vocabularies, and validates control files by them. */
class tst_SchemaCommand : public QObject
{
    Q_OBJECT

private slots:
    void judgesAsTheVocabularySays_data();
    void judgesAsTheVocabularySays();
    void acceptsTheExample();
    void saysWhatEachIsFor();
    void describesNothingTwice();
    void refusesWhatIsDescribedTwice();
    void makesTheSchemaOfAnyTips();
    void refusesBadUse_data();
    void refusesBadUse();
};

void tst_SchemaCommand::judgesAsTheVocabularySays_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<bool>("isRight");
    const auto row = [](const char *name, const QByteArray &entry, bool isRight) {
        QTest::newRow(name) << entry << isRight;
    };
    row("whole tip",
        R"(<vidtip key="a" title="A" shortcut="S" context="C" ui="x.qml"><note>n</note><summary>s</summary>)"
        R"(<clip source="a.mp4"/><step>1</step><step>2</step></vidtip>)",
        true);
    row("of another namespace",
        R"(<vidtip key="a" title="A" x:y="1" xmlns:x="urn:x"><x:z/><step x:w="">1</step></vidtip>)", true);
    row("misspelt attribute", R"(<vidtip key="a" title="A" tilte="A"/>)", false);
    row("no title", R"(<vidtip key="a"><step>1</step></vidtip>)", false);
    row("misspelt element", R"(<vidtip key="a" title="A"><stpe>1</stpe></vidtip>)", false);
    row("markup", R"(<vidtip key="a" title="A"><step>Press <b>S</b></step></vidtip>)", false);
    row("empty text", R"(<vidtip key="a" title="A"><step> </step></vidtip>)", false);
    row("picture without a file", R"(<vidtip key="a" title="A"><picture/></vidtip>)", false);
    row("text between elements", R"(<vidtip key="a" title="A">words</vidtip>)", false);
    row("no key", R"(<vidtip title="A"/>)", false);
}

void tst_SchemaCommand::judgesAsTheVocabularySays()
{
    QFETCH(QByteArray, entry);
    QFETCH(bool, isRight);
    Silence silence;
    QXmlSchema schema;
    schema.setMessageHandler(&silence);
    QVERIFY(schema.load(ToolRun({"schema", shared}).output.toUtf8()));
    QXmlSchemaValidator validator(schema);
    QCOMPARE(validator.validate("<vidtips locale=\"en_US\">" + entry + "</vidtips>"), isRight);
}

void tst_SchemaCommand::acceptsTheExample()
{
    QXmlSchema schema;
    QVERIFY(schema.load(ToolRun({"schema", shared}).output.toUtf8()));
    const QXmlSchemaValidator validator(schema);
    QDirIterator walk(TestPaths::source("Examples/Drafting/Content"), {"*.??_??.xml"}, QDir::Files,
                      QDirIterator::Subdirectories);
    QVERIFY(walk.hasNext());
    while (walk.hasNext()) {
        const QString path = walk.next();
        QVERIFY2(validator.validate(TestPackages::read(path), QUrl::fromLocalFile(path)), qPrintable(path));
    }
}

void tst_SchemaCommand::saysWhatEachIsFor()
{
    const ToolRun run({"schema", QString(shared) + "/ui/schema.xml"});
    QVERIFY2(run.output.contains("<xs:documentation>What the user does, in the imperative."),
             qPrintable(run.output));
    QVERIFY(run.output.contains("&quot;More help&quot;"));
    QCOMPARE(run.exitCode, 0);
}

// The key belongs to the library, and a user interface may read it; what others read may have the same name.
void tst_SchemaCommand::describesNothingTwice()
{
    const TestPackages packages;
    packages.write("schema.xml",
                   "<schema><element name=\"vidtip\"><attribute name=\"key\" about=\"What it is for.\"/>"
                   "<attribute name=\"title\"/><element name=\"vidtip\"><attribute name=\"key\"/>"
                   "<element name=\"vidtip\" text=\"yes\"/></element></element></schema>");
    const QByteArray written = ToolRun({"schema", "schema.xml"}, packages.path()).output.toUtf8();
    QXmlSchema schema;
    QVERIFY2(schema.load(written), written.constData());
    QVERIFY2(written.contains("<xs:documentation>What it is for."), written.constData());
    Silence silence;
    schema.setMessageHandler(&silence);
    const QXmlSchemaValidator validator(schema);
    QVERIFY(validator.validate("<vidtips><vidtip key=\"a\"><vidtip key=\"\"/></vidtip></vidtips>"));
    QVERIFY(!validator.validate("<vidtips><vidtip key=\"\"/></vidtips>"));
}

void tst_SchemaCommand::refusesWhatIsDescribedTwice()
{
    const TestPackages packages;
    packages.write("schema.xml",
                   "<schema><element name=\"vidtip\">\n<element name=\"icon\"/>\n"
                   "<element name=\"icon\"/></element></schema>");
    const ToolRun run({"schema", "schema.xml"}, packages.path());
    QCOMPARE(run.errors,
             QString("vidtips: schema.xml:3:1: the element \"icon\" of \"vidtip\" is described twice: see "
                     "line 2\n"));
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
}

void tst_SchemaCommand::makesTheSchemaOfAnyTips()
{
    QCOMPARE(ToolRun({"schema"}).output.toUtf8(),
             TestPackages::read(TestPaths::source("Tools/schema/vidtips.xsd")));
}

void tst_SchemaCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("package without a schema")
        << QStringList{"schema", "Tools.vidtips"} << "there is no schema: Tools.vidtips/ui/schema.xml";
    QTest::newRow("no schema")
        << QStringList{"schema", "Tools.vidtips/Control/T.xml"}
        << "Tools.vidtips/Control/T.xml:1:1: the document element of a schema is \"schema\"";
    QTest::newRow("two packages") << QStringList{"schema", "Tools.vidtips", "Tools.vidtips"}
                                  << "schema takes one package; see \"vidtips schema --help\"";
}

void tst_SchemaCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

QTEST_GUILESS_MAIN(tst_SchemaCommand)

#include "tst_schemacommand.moc"
