#include <Vidtips/VTBrokenFiles_p.h>

#include "MessageRecorder.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QTemporaryFile>
#include <QtTest/QTest>

using namespace Vidtips;

/** How a host hears of files that cannot be read to their end. */
class tst_VTBrokenFiles : public QObject
{
    Q_OBJECT

private slots:
    void tellsOfEachFileOnce();
    void tellsAgainOfOtherBytes();
    void tellsAgainAfterItWasWhole();
    void hostHearsOfControlFiles();
    void hostHearsOfKeyData();
    void hostMayEndWithIt();

private:
    static VTFileError error(const QByteArray &bytes, const QString &text = "1:2: why")
    {
        QTemporaryFile file;
        return file.open() && file.write(bytes) == bytes.size() ? VTFileError(file, text) : VTFileError();
    }
};

namespace {

const char brokenTips[] = "<vidtips>\n<vidtip key=\"cut\"/>\n<vidtip key=\"copy\" & /></vidtips>";

/** A host that goes as soon as it hears anything. */
class EndingHost : public VTInterface
{
public:
    using VTInterface::VTInterface;

    void handleMessage(VTMessageType, const QString &) override { delete this; }
};

} // namespace

void tst_VTBrokenFiles::tellsOfEachFileOnce()
{
    VTBrokenFiles files;
    QCOMPARE(files.takeMessages(), QStringList());
    for (int i = 0; i < 2; ++i) {
        files.note("b.xml", error("b", "3:4: tag mismatch"));
        files.note("a.xml", error("a", "1:2: unexpected character"));
    }
    QCOMPARE(files.takeMessages(),
             (QStringList{"a.xml:1:2: unexpected character; nothing from there on is read",
                          "b.xml:3:4: tag mismatch; nothing from there on is read"}));
    files.note("b.xml", error("b", "3:4: tag mismatch"));
    QCOMPARE(files.takeMessages(), QStringList());
}

void tst_VTBrokenFiles::tellsAgainOfOtherBytes()
{
    VTBrokenFiles files;
    files.note("a.xml", error("a"));
    files.takeMessages();
    files.note("a.xml", error("b"));
    QCOMPARE(files.takeMessages().size(), 1);
}

void tst_VTBrokenFiles::tellsAgainAfterItWasWhole()
{
    VTBrokenFiles files;
    files.note("a.xml", error("a"));
    files.takeMessages();
    files.note("a.xml", {});
    QCOMPARE(files.takeMessages(), QStringList());
    files.note("a.xml", error("a"));
    QCOMPARE(files.takeMessages().size(), 1);
}

void tst_VTBrokenFiles::hostHearsOfControlFiles()
{
    const MessageRecorder recorder;
    TestPackages packages;
    const QString control = packages.write("Basic.vidtips/Control/tips.xml", brokenTips);
    packages.writeControl("Basic", "whole.xml", "<vidtip key=\"paste\"/>");
    TestSession session({packages.path()});
    const QList<QPair<int, QString>> told{
        {VTMessageWarning,
         control + ":3:20: error occurred while parsing element; nothing from there on is read"}};
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(session.manager()->vidTipAttribute("copy", "key", "none"), QString("none"));
        QCOMPARE(session.host->messages, told);
    }
    // Words of the parser come at each look-up, one for each locale.
    QStringList words;
    for (int i = 0; i < 4; ++i)
        words << "Fatal error at 3,20 : error occurred while parsing element";
    QCOMPARE(recorder.texts(), words);
    QCOMPARE(session.host->keys().size(), 2);
    QCOMPARE(session.host->messages, told);
    packages.write("Basic.vidtips/Control/tips.xml", QByteArray(brokenTips) + '\n');
    QCOMPARE(session.host->keys().size(), 2);
    QCOMPARE(session.host->messages, told + told);
}

void tst_VTBrokenFiles::hostHearsOfKeyData()
{
    const MessageRecorder silence;
    TestPackages packages;
    packages.writeControl("Basic", "tips.xml", "<vidtip key=\"cut\"/>");
    const QString keyData = packages.write("keys.xml", "<vidtipkeys><key name=\"cut\"></vidtipkeys>");
    VTContext context;
    context.set(KeyDataFile, keyData);
    TestSession session({packages.path()}, context);
    for (int i = 0; i < 2; ++i)
        QCOMPARE(session.manager()->vidTipAttribute("cut", "key", "none"), QString("cut"));
    QCOMPARE(session.host->messages.size(), 1);
    QCOMPARE(session.host->messages.constFirst().second,
             keyData + ":1:41: tag mismatch; nothing from there on is read");
}

void tst_VTBrokenFiles::hostMayEndWithIt()
{
    const MessageRecorder silence;
    TestPackages packages;
    packages.write("Basic.vidtips/Control/tips.xml", brokenTips);
    VTContext context;
    TestIndex index(&context, {});
    const QPointer<VTInterface> host = new EndingHost(context, {packages.path()}, &index);
    QVERIFY(!host->show("copy", {}, nullptr));
    QVERIFY(!host);
}

QTEST_MAIN(tst_VTBrokenFiles)

#include "tst_vtbrokenfiles.moc"
