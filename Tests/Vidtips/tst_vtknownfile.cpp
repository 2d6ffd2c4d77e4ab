#include <Vidtips/VTKnownFile_p.h>
#include <Vidtips/VTLookUp_p.h>

#include "IndexTest.h"
#include "MessageRecorder.h"
#include "OpenedFiles.h"

#include <sys/stat.h>

using namespace Vidtips;

static const QLocale usEnglish(QStringLiteral("en_US"));
static const QLocale german(QStringLiteral("de_DE"));

/** What is known of a control file, and when it is read. */
class tst_VTKnownFile : public IndexTest
{
    Q_OBJECT

private slots:
    void init();
    void entriesOfAKey();
    void otherLocalesAreKnown();
    void unchangedFilesAreNotOpened();
    void oneLookUpReadsOnce();
    void aHitIsReadEachTime();
    void brokenFilesAreReadEachTime();
    void otherDocumentsAreKnown();
    void youngFilesAreNotParsedAgain();
    void largeFiles();
    void whatIsNoFile();
    void savedWithinTheSameMoment_data();
    void savedWithinTheSameMoment();

private:
    /** Waits until the stamp of @p file counts, so that the file is not opened for a key that it does not
     * have. */
    bool waitUntilSettled(VTKnownFile &file)
    {
        m_opened.watch(file.path());
        return QTest::qWaitFor(
            [&] {
                m_opened.take();
                find(file, "absent");
                return !m_opened.take();
            },
            20000);
    }

    static std::unique_ptr<VTXmlElement> find(VTKnownFile &file, const QString &key,
                                              const QLocale &locale = usEnglish)
    {
        VTLookUp lookUp;
        auto root = file.entries(key, locale, lookUp);
        return root && root->children().isEmpty() ? nullptr : std::move(root);
    }

    static QStringList keys(VTKnownFile &file)
    {
        VTLookUp lookUp;
        return file.keys(lookUp);
    }

    OpenedFiles m_opened;
};

void tst_VTKnownFile::init()
{
    makeFolder();
}

void tst_VTKnownFile::entriesOfAKey()
{
    VTKnownFile file(
        write("a.xml", "<vidtips><vidtip key='cut'/><vidtip key='copy'/><vidtip key=''/></vidtips>"));
    for (int i = 0; i < 2; ++i) {
        for (const char *key : {"cut", "copy"}) {
            const auto root = find(file, key);
            QVERIFY(root);
            QCOMPARE(root->children().size(), 1);
            QCOMPARE(root->childElement("vidtip")->attribute("key"), QString(key));
        }
        QCOMPARE(keys(file), (QStringList{"cut", "copy", ""}));
    }
    QVERIFY(!find(file, "paste"));
}

void tst_VTKnownFile::otherLocalesAreKnown()
{
    VTKnownFile file(write("a.xml", "<vidtips locale='de'><vidtip key='cut'/></vidtips>"));
    keys(file);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(!find(file, "cut", usEnglish));
        QVERIFY(find(file, "cut", german));
    }
}

void tst_VTKnownFile::unchangedFilesAreNotOpened()
{
    VTKnownFile file(write("a.xml", "<vidtips locale='de'><vidtip key='cut'/></vidtips>"));
    QVERIFY(waitUntilSettled(file));
    m_opened.watch(file.path());
    QVERIFY(!find(file, "copy"));
    QVERIFY(!find(file, "cut", usEnglish));
    QCOMPARE(keys(file), QStringList{"cut"});
    QVERIFY(!m_opened.take());
    QVERIFY(find(file, "cut", german));
    QVERIFY(m_opened.take());
}

void tst_VTKnownFile::oneLookUpReadsOnce()
{
    VTKnownFile file(write("a.xml", "<vidtips><vidtip key='cut'/></vidtips>"));
    m_opened.watch(file.path());
    const VTLookUp lookUp;
    QVERIFY(!find(file, "copy"));
    QVERIFY(m_opened.take());
    QVERIFY(!find(file, "copy", german));
    QCOMPARE(keys(file), QStringList{"cut"});
    QVERIFY(!m_opened.take());
}

void tst_VTKnownFile::aHitIsReadEachTime()
{
    VTKnownFile file(write("a.xml", "<vidtips><vidtip key='cut'/></vidtips>"));
    QVERIFY(waitUntilSettled(file));
    m_opened.watch(file.path());
    for (int i = 0; i < 2; ++i) {
        QVERIFY(find(file, "cut"));
        QVERIFY(m_opened.take());
    }
}

void tst_VTKnownFile::brokenFilesAreReadEachTime()
{
    VTKnownFile file(write("a.xml", "<vidtips><vidtip key='cut'/><oops"));
    MessageRecorder recorder;
    const VTLookUp lookUp;
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(find(file, "cut"));
        QCOMPARE(keys(file), QStringList{"cut"});
        QCOMPARE(recorder.texts().size(), 2 * i);
    }
    QStringList messages = recorder.texts();
    QCOMPARE(messages.removeDuplicates(), 5);
}

void tst_VTKnownFile::otherDocumentsAreKnown()
{
    VTKnownFile file(write("a.xml", "<html><vidtip key='cut'/></html>"));
    QVERIFY(waitUntilSettled(file));
    m_opened.watch(file.path());
    QVERIFY(!find(file, "cut"));
    QVERIFY(keys(file).isEmpty());
    QVERIFY(!m_opened.take());
}

// Its bytes prove that it is as it was; that shows by what it costs, and by nothing else.
void tst_VTKnownFile::youngFilesAreNotParsedAgain()
{
    QByteArray content = "<vidtips>";
    for (int i = 0; i < 10000; ++i)
        content += "<vidtip key='tip" + QByteArray::number(i) + "'/>";
    content += "</vidtips>";
    const QString path = write("a.xml", content);
    const auto ticks = [](VTKnownFile &file) {
        const clock_t before = clock();
        find(file, "absent");
        return clock() - before;
    };
    clock_t first = 0;
    clock_t second = 0;
    VTKnownFile known(path);
    first = ticks(known);
    second = ticks(known);
    QVERIFY2(second * 4 < first, qPrintable(QStringLiteral("%1 after %2").arg(second).arg(first)));
    write("a.xml", content.replace("tip77'", "cut'"));
    QVERIFY(find(known, "cut"));
}

void tst_VTKnownFile::largeFiles()
{
    const QByteArray padding(2 * 1024 * 1024, ' ');
    VTKnownFile file(write("a.xml", "<vidtips>" + padding + "<vidtip key='cut'/></vidtips>"));
    QVERIFY(find(file, "cut"));
    QVERIFY(waitUntilSettled(file));
    QCOMPARE(keys(file), QStringList{"cut"});
    QVERIFY(find(file, "cut"));
    write("a.xml", "<vidtips>" + padding + "<vidtip key='new'/></vidtips>");
    QVERIFY(!find(file, "cut"));
    QVERIFY(find(file, "new"));
}

void tst_VTKnownFile::whatIsNoFile()
{
    const QString path = write("a.xml", "<vidtips><vidtip key='cut'/></vidtips>");
    VTKnownFile file(path);
    QVERIFY(waitUntilSettled(file));
    const auto isGone = [&] { return !find(file, "cut") && keys(file).isEmpty(); };
    QVERIFY(QFile::remove(path) && isGone());
    QVERIFY(QDir().mkdir(path) && isGone() && QDir().rmdir(path));
    QVERIFY(mkfifo(QFile::encodeName(path).constData(), 0600) == 0 && isGone() && QFile::remove(path));
    QVERIFY(QFile::link("nowhere", path) && isGone() && QFile::remove(path));
    write("a.xml", "<vidtips><vidtip key='cut'/></vidtips>");
    QVERIFY(find(file, "cut"));
    QVERIFY(!VTKnownFile(QString()).entries("cut", usEnglish, *std::make_unique<VTLookUp>()));
}

void tst_VTKnownFile::savedWithinTheSameMoment_data()
{
    QTest::addColumn<bool>("isRenamed");
    QTest::newRow("in place") << false;
    QTest::newRow("by rename") << true;
}

void tst_VTKnownFile::savedWithinTheSameMoment()
{
    QFETCH(bool, isRenamed);
    const QString path = m_root + "/a.xml";
    VTKnownFile file(path);
    for (int i = 1000; i < 1300; ++i) {
        const QByteArray key = QByteArray::number(i);
        write(isRenamed ? "b.xml" : "a.xml", "<vidtips><vidtip key='" + key + "'/></vidtips>");
        if (isRenamed)
            QCOMPARE(
                rename(QFile::encodeName(m_root + "/b.xml").constData(), QFile::encodeName(path).constData()),
                0);
        QCOMPARE(keys(file), QStringList{QString::fromLatin1(key)});
    }
}

QTEST_GUILESS_MAIN(tst_VTKnownFile)
#include "tst_vtknownfile.moc"
