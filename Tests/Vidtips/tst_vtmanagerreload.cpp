#include "MessageRecorder.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** A host that runs takes the QML as it has become. */
class tst_VTManagerReload : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tipOnScreen_data();
    void tipOnScreen();
    void isNotTakenUnasked();
    void tipThatIsShownNext();
    void keptTip();
    void brokenGivesTheSimpleOne();
    void brokenWithoutASimpleOneGoes();
    void askedForByTheQml();
    void askedForByTheHostWhileItShows();

private:
    QString shown(const VTWidget *window) const
    {
        const QGraphicsObject *const root = window->view()->rootObject();
        return root ? root->property("shown").toString() : "nothing";
    }
    void writeParts(const QByteArray &word)
    {
        m_packages->write("Basic.vidtips/ui/Part.qml",
                          "import QtQuick 1.0\nItem { property string word: \"" + word + "\" }");
        m_packages->write("Basic.vidtips/ui/words.js", "function word() { return \"" + word + "\"; }");
    }
    void writeWord(const QByteArray &word)
    {
        m_packages->writeUserInterface("Basic", "property string shown: \"" + word + "\"");
    }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
};

void tst_VTManagerReload::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Basic", "tips.xml", R"(<vidtip key="cut"/><vidtip key="copy"/>)");
    writeWord("old");
    VTContext settings;
    settings.set(IdleInterval, 0);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
}

void tst_VTManagerReload::cleanup()
{
    m_session.reset();
    m_packages.reset();
}

void tst_VTManagerReload::tipOnScreen_data()
{
    QTest::addColumn<QByteArray>("imports");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("the file") << QByteArray() << QByteArray("property string shown: \"%1\"");
    QTest::newRow("a part") << QByteArray()
                            << QByteArray("property string shown: part.word\nPart { id: part }");
    QTest::newRow("a script") << QByteArray("import \"words.js\" as Words\n")
                              << QByteArray("property string shown: Words.word()");
}

void tst_VTManagerReload::tipOnScreen()
{
    QFETCH(QByteArray, imports);
    QFETCH(QByteArray, body);
    int width = 100;
    for (const QByteArray word : {"old", "new", "newer"}) {
        writeParts(word);
        m_packages->writeUserInterface("Basic", QByteArray(body).replace("%1", word), ++width, 80, imports);
        if (word == "old")
            QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
        else
            m_session->manager()->reloadUserInterfaces();
        QCOMPARE(shown(m_session->window()), QString(word));
        QVERIFY(m_session->host->isVisible());
        QTRY_COMPARE(m_session->window()->view()->width(), width);
    }
    QCOMPARE(m_session->host->notificationTexts(), QStringList{"0 cut"});
}

void tst_VTManagerReload::isNotTakenUnasked()
{
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    writeWord("new");
    m_session->manager()->refresh();
    QCOMPARE(shown(m_session->window()), QString("old"));
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    QCOMPARE(shown(m_session->window()), QString("old"));
}

void tst_VTManagerReload::tipThatIsShownNext()
{
    m_session->manager()->reloadUserInterfaces();
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    m_session->host->hide();
    writeWord("new");
    m_session->manager()->reloadUserInterfaces();
    QVERIFY(!m_session->host->isVisible());
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    QCOMPARE(shown(m_session->window()), QString("new"));
}

void tst_VTManagerReload::keptTip()
{
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    VTWidget *const kept = m_session->window();
    kept->view()->setReserved(true);
    writeWord("new");
    m_session->manager()->reloadUserInterfaces();
    QCOMPARE(shown(kept), QString("new"));
    QVERIFY(kept->isVisible() && kept->view()->reserved());
    delete kept;
}

void tst_VTManagerReload::brokenGivesTheSimpleOne()
{
    const MessageRecorder silence;
    m_packages->write("Basic.vidtips/ui/SimpleTooltip.qml",
                      "import QtQuick 1.0\nItem { width: 9; height: 9; property string shown: \"simple\" }");
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    m_packages->writeUserInterface("Basic", "{");
    m_session->manager()->reloadUserInterfaces();
    QCOMPARE(shown(m_session->window()), QString("simple"));
    QVERIFY(m_session->host->isVisible());
    writeWord("mended");
    m_session->manager()->reloadUserInterfaces();
    QCOMPARE(shown(m_session->window()), QString("mended"));
}

void tst_VTManagerReload::brokenWithoutASimpleOneGoes()
{
    const MessageRecorder silence;
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    m_packages->writeUserInterface("Basic", "{");
    m_session->manager()->reloadUserInterfaces();
    QVERIFY(!m_session->host->isVisible());
    writeWord("mended");
    m_session->manager()->reloadUserInterfaces();
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    QCOMPARE(shown(m_session->window()), QString("mended"));
}

// A button of the tip may be what asks for it: its handler has yet to return.
void tst_VTManagerReload::askedForByTheQml()
{
    m_packages->writeUserInterface(
        "Basic",
        "property string shown: \"old\"\nfunction ask() { vidTipView.notification(40, 0); return shown; }");
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    m_session->host->onNotification = [this](int type, const QString &) {
        if (type != 40)
            return;
        writeWord("new");
        m_session->manager()->reloadUserInterfaces();
    };
    QVariant answer;
    QVERIFY(QMetaObject::invokeMethod(m_session->window()->view()->rootObject(), "ask",
                                      Q_RETURN_ARG(QVariant, answer)));
    QCOMPARE(answer.toString(), QString("old"));
    QTRY_COMPARE(shown(m_session->window()), QString("new"));
    QVERIFY(m_session->host->isVisible());
}

void tst_VTManagerReload::askedForByTheHostWhileItShows()
{
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    m_session->host->onNotification = [this](int, const QString &) {
        writeWord("new");
        m_session->manager()->reloadUserInterfaces();
    };
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    QTRY_COMPARE(shown(m_session->window()), QString("new"));
    QVERIFY(m_session->host->isVisible());
}

QTEST_MAIN(tst_VTManagerReload)

#include "tst_vtmanagerreload.moc"
