#include "TestCatalogue.h"
#include "TestHost.h"
#include "TestPackage.h"
#include <Vidtips/VTTipWords_p.h>

#include <QtTest/QTest>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

/** What a tip says in words. */
class tst_VTTipWords : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void words_data();
    void words();
    void titleThatTheUserInterfaceSet();
    void reasonComesWithADisabledCommand();
    void translatedWords();
    void nothingToSay();

private:
    void start(const QByteArray &tips);

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};

void tst_VTTipWords::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic");
}

void tst_VTTipWords::cleanup()
{
    session.reset();
}

void tst_VTTipWords::start(const QByteArray &tips)
{
    packages->writeControl("Basic", "tips.xml", tips);
    session.reset(new TestSession({packages->path()}));
}

void tst_VTTipWords::words_data()
{
    QTest::addColumn<QByteArray>("tip");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("description");
    QTest::newRow("title only") << QByteArray("<vidtip key='cut' title='Cut'/>") << "Cut"
                                << "";
    QTest::newRow("summary") << QByteArray(
        "<vidtip key='cut' title='Cut'><summary> Takes\n  it out. </summary></vidtip>")
                             << "Cut"
                             << "Takes it out.";
    QTest::newRow("shortcut") << QByteArray(
        "<vidtip key='cut' shortcut='Ctrl+X'><summary>Out.</summary></vidtip>")
                              << ""
                              << "Out.\nCtrl+X";
    QTest::newRow("steps") << QByteArray(
        "<vidtip key='cut'><step>Select.</step><step> </step><step>Cut.</step></vidtip>")
                           << ""
                           << "1. Select.\n2. Cut.";
    QTest::newRow("placeholders") << QByteArray(
        "<vidtip key='cut' title='Cut %(what)s'><summary>%(what)s!</summary></vidtip>")
                                  << "Cut wood"
                                  << "wood!";
    QTest::newRow("rich text") << QByteArray(
        "<vidtip key='cut' title='Cut'><summary>&lt;b&gt;Takes&lt;/b&gt; "
        "it &amp;amp; goes.</summary></vidtip>")
                               << "Cut"
                               << "Takes it & goes.";
    QTest::newRow("reason of an available command") << QByteArray(
        "<vidtip key='cut'><summary>Out.</summary><unavailable>Nothing selected.</unavailable></vidtip>")
                                                    << ""
                                                    << "Out.";
}

void tst_VTTipWords::words()
{
    QFETCH(QByteArray, tip);
    start(tip);
    session->host->setGlobalProperty("what", "wood");
    QVERIFY(session->host->show("cut", {}, nullptr));
    const VTTipWords words(session->view());
    QTEST(words.title(), "title");
    QTEST(words.description(), "description");
}

void tst_VTTipWords::titleThatTheUserInterfaceSet()
{
    start("<vidtip key='cut' title='Cut'/>");
    QVERIFY(session->host->show("cut", {}, nullptr));
    session->content()->setTitle("Schneiden");
    QCOMPARE(VTTipWords(session->view()).title(), QStringLiteral("Schneiden"));
}

void tst_VTTipWords::reasonComesWithADisabledCommand()
{
    start("<vidtip key='cut'><summary>Out.</summary><unavailable>Nothing selected.</unavailable></vidtip>");
    QPushButton command;
    command.setEnabled(false);
    QVERIFY(session->host->show("cut", {}, &command));
    const VTTipWords words(session->view());
    QCOMPARE(words.description(), QStringLiteral("Out.\nNothing selected."));
    command.setEnabled(true);
    QCOMPARE(words.description(), QStringLiteral("Out."));
    // What the host says goes before: commands need not be widgets.
    session->host->setGlobalProperty("available", "off");
    QCOMPARE(words.description(), QStringLiteral("Out.\nNothing selected."));
    session->host->setGlobalProperty("available", "on");
    command.setEnabled(false);
    QCOMPARE(words.description(), QStringLiteral("Out."));
}

void tst_VTTipWords::translatedWords()
{
    const QByteArray catalogue = TestCatalogue("Base")
                                     .add("Cut", QStringLiteral("Schneiden"))
                                     .add("Select.", QStringLiteral("Auswahl treffen."))
                                     .bytes();
    packages->write("Basic.vidtips/l10n/Vidtips_de_DE.qm", catalogue);
    start("<vidtip key='cut' title='Cut' context='Base'><step>Select.</step><step>Cut it.</step></vidtip>");
    session->set(ContentLocale, "de_DE");
    QVERIFY(session->host->show("cut", {}, nullptr));
    const VTTipWords words(session->view());
    QCOMPARE(words.title(), QStringLiteral("Schneiden"));
    QCOMPARE(words.description(), QStringLiteral("1. Auswahl treffen.\n2. Cut it."));
}

void tst_VTTipWords::nothingToSay()
{
    QCOMPARE(VTTipWords(nullptr).title(), QString());
    QCOMPARE(VTTipWords(nullptr).description(), QString());
    VTView empty(nullptr, nullptr);
    QCOMPARE(VTTipWords(&empty).title(), QString());
    QCOMPARE(VTTipWords(&empty).description(), QString());
}

QTEST_MAIN(tst_VTTipWords)
#include "tst_vttipwords.moc"
