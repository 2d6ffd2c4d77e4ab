#include "HostileTest.h"
#include "MessageRecorder.h"
#include "ProcessorTime.h"
#include "TestClips.h"

#include <Vidtips/VTVideoComponent.h>
#include <Vidtips/VTXmlParser.h>

#include <QtTest/QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Vidtips;

namespace {

const QByteArray mebibyte(1 << 20, 't');

QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

QByteArray entities()
{
    QByteArray declarations = "<!ENTITY e0 'lol'>";
    for (int i = 1; i < 40; ++i)
        declarations += "<!ENTITY e" + QByteArray::number(i) + " '"
            + QByteArray("&e" + QByteArray::number(i - 1) + ';').repeated(10) + "'>";
    return declarations;
}

/** Set to have the texts of content as large as a disk may deliver them; it takes a while. */
bool wantsHugeTexts()
{
    return qEnvironmentVariableIsSet("VIDTIPS_HUGE_TEXTS");
}

} // namespace

/** Packages that are broken or made to do harm. After each of them the next tip is shown as ever. */
class tst_HostileContent : public HostileTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void xml_data();
    void xml();
    void hugeText();
    void manyAttributes();
    void manyTips();
    void manyPlaceholders_data();
    void manyPlaceholders();
    void externalEntity();
    void controlFileChanges_data();
    void controlFileChanges();
    void keyDataFileChanges_data();
    void keyDataFileChanges();
    void userInterfaceChanges();
    void oddFolders_data();
    void oddFolders();
    void oddNames_data();
    void oddNames();
    void resourceNames_data();
    void resourceNames();
    void switchesCoverContent_data();
    void switchesCoverContent();
    void catalogueThatIsAPipe();
    void clips_data();
    void clips();
};

void tst_HostileContent::init()
{
    begin();
}

void tst_HostileContent::cleanup()
{
    end();
}

void tst_HostileContent::xml_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<bool>("isShown");
    const auto tips = [](const QByteArray &content, const QByteArray &prolog = {}) {
        return "<?xml version='1.0'?>" + prolog + "<vidtips><vidtip key='hostile' ui='ui/VidtipsUI.qml'>"
            + content + "</vidtip></vidtips>";
    };
    const QByteArray doctype = "<!DOCTYPE vidtips [" + entities() + "]>";
    QTest::newRow("entities in text") << tips("&e39;", doctype) << false;
    QTest::newRow("entities in an attribute") << tips("<a b='&e39;'/>", doctype) << false;
    QTest::newRow("entity of itself") << tips("&a;", "<!DOCTYPE vidtips [<!ENTITY a '&a;'>]>") << true;
    QTest::newRow("10,000 levels") << tips(nested(10000)) << true;
    QTest::newRow("100,000 levels") << tips(nested(100000)) << true;
    QTest::newRow("100,000 levels without an end") << tips(QByteArray("<a>").repeated(100000)) << true;
    QTest::newRow("100,000 levels of tips") << QByteArray("<vidtips>").repeated(100000) << false;
    QTest::newRow("a document within") << QByteArray("<vidtips><vidtips/></vidtips>") << false;
    QTest::newRow("deep content model")
        << tips({}, "<!DOCTYPE vidtips [<!ELEMENT a " + QByteArray(100000, '(') + "]>") << false;
    QTest::newRow("cut off") << tips(nested(5)).left(90) << true;
    QTest::newRow("null bytes") << tips(QByteArray(5000, '\0')) << true;
    QTest::newRow("not UTF-8") << tips(QByteArray(5000, '\xFF')) << true;
    QTest::newRow("UTF-16 said, UTF-8 meant")
        << QByteArray("<?xml version='1.0' encoding='UTF-16'?><vidtips><vidtip key='hostile'/></vidtips>")
        << false;
    QTest::newRow("one line of a million characters") << "<!--" + mebibyte + "--><vidtips/>" << false;
}

void tst_HostileContent::xml()
{
    QFETCH(QByteArray, document);
    MessageRecorder recorder;
    packages->writeUserInterface("Hostile");
    packages->write("Hostile.vidtips/Control/tips.xml", document);
    session->manager()->loadDataPath({packages->path()});
    const double before = processorTime();
    QTEST(show("hostile"), "isShown");
    session->host->keys();
    QVERIFY(processorTime() - before < 20000);
    if (session->content())
        QVERIFY(session->content()->childElementList(QString()).size() <= VTXmlParser::maximumDepth);
}

void tst_HostileContent::hugeText()
{
    const int size = wantsHugeTexts() ? 100 : 10;
    packages->writeControl("Sound", "huge.xml",
                           "<vidtip key='huge'>" + mebibyte.repeated(size) + "</vidtip>");
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("huge"));
    QCOMPARE(session->content()->content().size(), mebibyte.size() * size);
}

void tst_HostileContent::manyAttributes()
{
    // Ten times as many attributes take about ten times as long.
    const auto milliseconds = [this](int count) {
        QByteArray tip = "<vidtip key='many'";
        for (int i = 0; i < count; ++i)
            tip += " a" + QByteArray::number(i) + "='1'";
        packages->writeControl("Sound", "many.xml", tip + "/>");
        session->manager()->loadDataPath({packages->path()});
        const double before = processorTime();
        if (!show("many") || session->content()->attributeNames().size() < count)
            qFatal("the attributes are not there");
        session->window()->hide();
        return processorTime() - before;
    };
    const int most = wantsHugeTexts() ? 1000000 : 200000;
    const double few = milliseconds(most / 10);
    const double many = milliseconds(most);
    QVERIFY2(many < few * 40.0, qPrintable(QStringLiteral("%1 ms and %2 ms").arg(few).arg(many)));
}

void tst_HostileContent::manyTips()
{
    QByteArray tips;
    for (int i = 0; i < 100000; ++i)
        tips += "<vidtip key='k" + QByteArray::number(i) + "'/>";
    packages->writeControl("Sound", "many.xml", tips);
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("k99999"));
    QCOMPARE(session->host->keys().size(), 100001);
}

void tst_HostileContent::manyPlaceholders_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expanded");
    QTest::newRow("shorter") << QStringLiteral("x") << QStringLiteral("x");
    QTest::newRow("longer") << QStringLiteral("0123456789abcdef") << QStringLiteral("0123456789abcdef");
    QTest::newRow("nested") << QStringLiteral("<%(inner)s>") << QStringLiteral("<within>");
    QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("");
    QTest::newRow("unknown") << QString() << QStringLiteral("%(outer)s");
    QTest::newRow("beginning of another") << QStringLiteral("%(in") << QStringLiteral("%(in");
}

void tst_HostileContent::manyPlaceholders()
{
    QFETCH(QString, value);
    QFETCH(QString, expanded);
    const int count = 200000;
    session->host->setGlobalProperty("outer", value);
    session->host->setGlobalProperty("inner", "within");
    const auto timeFor = [&](int placeholders) {
        const QString text = QStringLiteral("%(outer)s").repeated(placeholders);
        const double before = processorTime();
        const QString result = session->manager()->interpolate(text);
        const double time = processorTime() - before;
        return result == expanded.repeated(placeholders) ? time : -1;
    };
    const double timeForATenth = timeFor(count / 10);
    const double time = timeFor(count);
    QVERIFY(timeForATenth >= 0 && time >= 0);
    // Its square would be a hundredfold.
    QVERIFY2(time < 30 * timeForATenth + 1000, qPrintable(QString::number(time)));
    QCOMPARE(session->manager()->interpolate("a%(outer)sb"), 'a' + expanded + 'b');
}

void tst_HostileContent::externalEntity()
{
    const QByteArray secret = packages->write("secret.txt", "secret").toUtf8();
    packages->write("Sound.vidtips/Control/entity.xml",
                    "<!DOCTYPE vidtips [<!ENTITY e SYSTEM 'file://" + secret
                        + "'>]><vidtips><vidtip key='entity'>1&e;2</vidtip></vidtips>");
    session->manager()->loadDataPath({packages->path()});
    // The document type declaration stands before the first element, and does not hide it.
    QVERIFY(show("entity"));
    QCOMPARE(session->content()->content(), QStringLiteral("12"));
}

void tst_HostileContent::controlFileChanges_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::addColumn<bool>("isShown");
    QTest::newRow("deleted") << QByteArray("rm") << false;
    QTest::newRow("empty") << QByteArray("=") << false;
    QTest::newRow("cut in the document element") << QByteArray("=<vidt") << false;
    QTest::newRow("cut in the entry") << QByteArray("=<vidtips><vidtip key='changing'><a>text") << true;
    QTest::newRow("other entries") << QByteArray("=<vidtips><vidtip key='another'/></vidtips>") << false;
    QTest::newRow("twice the entry") << QByteArray(
        "=<vidtips><vidtip key='changing'/><vidtip key='changing'/></vidtips>")
                                     << false;
    QTest::newRow("other document") << QByteArray("=<html><vidtip key='changing'/></html>") << false;
    QTest::newRow("no XML") << QByteArray("=\x7F"
                                          "ELF\1\2\3")
                            << false;
    QTest::newRow("a folder") << QByteArray("mkdir") << false;
    QTest::newRow("a pipe") << QByteArray("mkfifo") << false;
    QTest::newRow("a device") << QByteArray("ln /dev/zero") << false;
    QTest::newRow("a link to nothing") << QByteArray("ln nothing") << false;
    QTest::newRow("a link to itself") << QByteArray("ln changing.xml") << false;
}

namespace {

/** Puts something else in the place of the file at @p path. */
void replaceFile(const QString &path, const QByteArray &change)
{
    const QByteArray file = QFile::encodeName(path);
    if (!QFile::remove(path))
        qFatal("cannot remove %s", file.constData());
    bool isDone = true;
    if (change.startsWith('=')) {
        QFile out(path);
        isDone = out.open(QIODevice::WriteOnly) && out.write(change.mid(1)) == change.size() - 1;
    } else if (change == "mkdir") {
        isDone = QDir().mkdir(path);
    } else if (change == "mkfifo") {
        isDone = mkfifo(file.constData(), 0600) == 0;
    } else if (change.startsWith("ln ")) {
        isDone = symlink(change.mid(3).constData(), file.constData()) == 0;
    }
    if (!isDone)
        qFatal("cannot put %s in place", change.constData());
}

} // namespace

void tst_HostileContent::controlFileChanges()
{
    QFETCH(QByteArray, change);
    MessageRecorder recorder;
    const QByteArray tip = "<vidtip key='changing'/>";
    const QString path = packages->writeControl("Sound", "changing.xml", tip);
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("changing"));
    session->window()->hide();
    replaceFile(path, change);
    QTEST(show("changing"), "isShown");
    QVERIFY(session->host->keys().contains("sound"));
    session->manager()->indexControFile(path, packages->filePath("Sound.vidtips"));
    session->host->vidTipAttribute("changing", "key", "default");
    if (change == "mkdir")
        QDir().rmdir(path);
    else
        QFile::remove(path);
    packages->writeControl("Sound", "changing.xml", tip);
    QVERIFY(show("changing"));
}

void tst_HostileContent::keyDataFileChanges_data()
{
    QTest::addColumn<QByteArray>("change");
    QTest::newRow("deleted") << QByteArray("rm");
    QTest::newRow("a pipe") << QByteArray("mkfifo");
    QTest::newRow("a folder") << QByteArray("mkdir");
    QTest::newRow("a device") << QByteArray("ln /dev/zero");
    QTest::newRow("cut") << QByteArray("=<vidtipkeys><key name='sound' ");
    QTest::newRow("deep") << "=<vidtipkeys><key name='sound'>" + nested(100000);
}

void tst_HostileContent::keyDataFileChanges()
{
    QFETCH(QByteArray, change);
    MessageRecorder recorder;
    const QString path =
        packages->write("Keys.xml", "<vidtipkeys><key name='sound' level='1'/></vidtipkeys>");
    session->index.context().set(KeyDataFile, path);
    QVERIFY(show("sound"));
    QCOMPARE(session->content()->attribute("level"), QStringLiteral("1"));
    session->window()->hide();
    replaceFile(path, change);
    QVERIFY(show("sound"));
    QVERIFY(!session->content()->hasAttribute("level"));
}

void tst_HostileContent::userInterfaceChanges()
{
    packages->writeControl("Changing", "tips.xml", "<vidtip key='changing'/>");
    const QString path = packages->writeUserInterface("Changing");
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("changing"));
    const QByteArrayList changes{
        "=", "=Item {", "=import QtQuick 1.0\nQtObject {}", "mkdir", "mkfifo", "ln /dev/zero", "ln nothing"};
    for (const QByteArray &change : changes) {
        verifyTheNextTip();
        if (!QFile::remove(path))
            QDir().rmdir(path);
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        replaceFile(path, change);
        // There is content; what is missing is only how to show it.
        QVERIFY(show("changing"));
    }
    verifyTheNextTip();
}

void tst_HostileContent::oddFolders_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::newRow("none") << QByteArray();
    QTest::newRow("a file") << QByteArray("=<vidtips/>");
    QTest::newRow("a pipe") << QByteArray("mkfifo");
    QTest::newRow("a link to nothing") << QByteArray("ln nothing");
    QTest::newRow("a link to itself") << QByteArray("ln Control");
    QTest::newRow("a link upwards") << QByteArray("ln ..");
    QTest::newRow("a link out of the package") << QByteArray("ln ../../Elsewhere");
    QTest::newRow("a link to the root") << QByteArray("ln /");
}

void tst_HostileContent::oddFolders()
{
    QFETCH(QByteArray, control);
    packages->write("Elsewhere/tips.xml", "<vidtips><vidtip key='elsewhere'/></vidtips>");
    const QString path = packages->write("Odd.vidtips/Control", "");
    replaceFile(path, control);
    symlink("Loop.vidtips", QFile::encodeName(packages->filePath("Loop.vidtips")).constData());
    symlink(".", QFile::encodeName(packages->filePath("Here.vidtips")).constData());
    packages->write("File.vidtips", "no folder");
    session->manager()->loadDataPath({packages->path(), packages->filePath("Loop.vidtips")});
    // Only what lies in a package belongs to it.
    QCOMPARE(session->host->keys(), QStringList{"sound"});
    QVERIFY(!show("elsewhere"));
}

void tst_HostileContent::oddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("blanks") << " with  blanks ";
    QTest::newRow("not ASCII") << QStringLiteral("\u00e4\u6f22\u5b57 \U0001f39e");
    QTest::newRow("decomposed") << QStringLiteral("a\u0308");
    QTest::newRow("right to left") << QStringLiteral("\u202e\u05d0\u05d1");
    QTest::newRow("number sign") << "a#b";
    QTest::newRow("question mark") << "a?b=c";
    QTest::newRow("percent") << "a%20b%zz%(c)s";
    QTest::newRow("brackets and stars") << "[a]*{b}";
    QTest::newRow("quotes") << "a'b\"c";
    QTest::newRow("backslash") << "a\\b";
    QTest::newRow("colon") << "http:a";
    QTest::newRow("line break") << "a\nb";
    QTest::newRow("dots") << "a..b...";
    QTest::newRow("suffix within") << "a.vidtips.b";
    QTest::newRow("very long") << QString(245, QLatin1Char('n'));
}

void tst_HostileContent::oddNames()
{
    QFETCH(QString, name);
    packages->writeUserInterface(name, R"(property string seen: vidTipView.findResource("a " + name + ".png")
        property string name: vidtip.attribute("name"))");
    packages->write(name + ".vidtips/Resources/a b.png", "picture");
    packages->writeControl(name, "t i p s.xml", "<vidtip key='named' name='b'/>");
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("named"));
    QCOMPARE(session->content()->attribute("VTPackagName"), name);
    QVERIFY(root());
    QCOMPARE(root()->property("seen").toString(), packages->filePath(name + ".vidtips/Resources/a b.png"));
    QVERIFY2(session->host->messages.size() > 0, "the walk reports");
}

void tst_HostileContent::resourceNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    const QString package = "Sound.vidtips/";
    QTest::newRow("upwards") << "../../outside.png"
                             << "outside.png";
    QTest::newRow("upwards and back")
        << "../../Sound.vidtips/Resources/in.png" << package + "Resources/in.png";
    QTest::newRow("absolute") << "%1/outside.png"
                              << "outside.png";
    QTest::newRow("a folder") << "" << package + "Resources";
    QTest::newRow("beyond the root") << QStringLiteral("../").repeated(100) + "no/such" << QString();
    QTest::newRow("nothing") << "none.png" << QString();
    QTest::newRow("too long") << QString(5000, QLatin1Char('n')) << QString();
    QTest::newRow("null character") << QString(QChar(0)) << QString();
    QTest::newRow("a URL") << "file:///etc/passwd" << QString();
}

// Packages are trusted to name files; a name that leads nowhere leaves the folder's name.
void tst_HostileContent::resourceNames()
{
    QFETCH(QString, name);
    QFETCH(QString, path);
    packages->write("outside.png", "picture");
    packages->write("Sound.vidtips/Resources/in.png", "picture");
    QVERIFY(show("sound"));
    const QString found = session->view()->findResource(name.replace("%1", packages->path()));
    const QString expected = path.isEmpty() ? QStringLiteral("Resources") : packages->filePath(path);
    QCOMPARE(QDir::cleanPath(found), expected);
}

void tst_HostileContent::switchesCoverContent_data()
{
    QTest::addColumn<QString>("resource");
    QTest::newRow("web") << "https://example.com/";
    QTest::newRow("file") << "file:///etc/passwd";
    QTest::newRow("path") << "/etc/passwd";
    QTest::newRow("path upwards") << "../../etc/passwd";
    QTest::newRow("topic") << "topic";
    QTest::newRow("script") << "javascript:alert(1)";
    QTest::newRow("blank first") << " https://example.com/";
}

void tst_HostileContent::switchesCoverContent()
{
    QFETCH(QString, resource);
    session->set(AllowDocumentation, false);
    session->set(AllowExternalResources, false);
    QVERIFY(show("sound"));
    session->view()->openExternalResource(resource);
    QVERIFY(session->host->resources.isEmpty());
    session->set(AllowDocumentation, true);
    session->set(AllowExternalResources, true);
    session->view()->openExternalResource(resource);
    QCOMPARE(session->host->resources.size(), 1);
}

void tst_HostileContent::catalogueThatIsAPipe()
{
    session->set(ContentLocale, "de_DE");
    replaceFile(packages->write("Sound.vidtips/l10n/Vidtips_de_DE.qm", ""), "mkfifo");
    QVERIFY(show("sound"));
    QCOMPARE(session->manager()->translateString("text", "context"), QStringLiteral("text"));
}

void tst_HostileContent::clips_data()
{
    QTest::addColumn<QString>("clip");
    QTest::addColumn<QString>("message");
    const auto claims = [](const char *row, int width, int height, const char *message) {
        QTest::newRow(row) << TestClips::claimingSize(width, height) << message;
    };
    claims("wider than memory", 500000, 500000, "Could not ");
    claims("higher than an integer", 64, std::numeric_limits<int>::max(), "Could not ");
    claims("no pixels", 0, 0, "Could not ");
    QTest::newRow("no clip") << TestClips::write("noclip.mp4", mebibyte) << "Could not open media at: ";
    QTest::newRow("empty") << TestClips::empty() << "Could not open media at: ";
    QTest::newRow("cut off") << TestClips::truncated() << "";
    QTest::newRow("sound alone") << TestClips::audioOnly() << "Could not find a video stream in ";
    QTest::newRow("missing") << "/no/such/clip.mp4"
                             << "";
    QTest::newRow("a folder") << "/"
                              << "";
    QTest::newRow("a device") << "/dev/zero"
                              << "";
}

void tst_HostileContent::clips()
{
    QFETCH(QString, clip);
    QFETCH(QString, message);
    MessageRecorder recorder;
    packages->writeUserInterface("Clip",
                                 "VTVideoComponent { objectName: 'video'; source: vidtip.attribute('clip') }",
                                 120, 80, "import com.corvale.vidtips.qml 1.0\n");
    packages->writeControl("Clip", "tips.xml", "<vidtip key='clip' clip='" + clip.toUtf8() + "'/>");
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("clip"));
    auto *const video = root()->findChild<VTVideoComponent *>("video");
    QVERIFY(video);
    video->play();
    // Not its progress, which is 0 again where playing starts over at the end.
    if (clip == TestClips::truncated())
        QTRY_COMPARE(video->status(), VTVideoComponent::Ready);
    else if (!message.isEmpty())
        QTRY_VERIFY(recorder.texts().join('\n').contains(message));
    video->setProgress(0.9);
    video->play();
}

QTEST_MAIN(tst_HostileContent)

#include "tst_hostilecontent.moc"
