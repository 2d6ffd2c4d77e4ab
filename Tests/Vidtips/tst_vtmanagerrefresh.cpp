#include "Patience.h"
#include "TestCatalogue.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QTranslator>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

namespace {

/** What Qt sends when an application installs a translator. */
void changeLanguage()
{
    QEvent event(QEvent::LanguageChange);
    QCoreApplication::sendEvent(qApp, &event);
}

} // namespace

/** Tips on screen and kept ones follow the application's language. */
class tst_VTManagerRefresh : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tipOnScreen();
    void tipOnScreenIsNotShownAnew();
    void tipThatIsNotOnScreen();
    void settingsThatTheHostChangesLater();
    void severalWindowsRefreshOnce();
    void tipWithoutContentInTheLanguage();
    void keptTip();
    void keptTipWithoutContentInTheLanguage();
    void keptTipInAWindowOfTheHost();
    void keptTipIsTranslatedFromItsOwnPackage();
    void otherUserInterface();
    void shortcutIsAskedForAgain();
    void hostDeletesTheWindowMeanwhile();
    void hostIsDeletedMeanwhile();

private:
    QString shown(const VTWidget *window) const
    {
        return window->view()->rootObject()->property("shown").toString();
    }
    VTWidget *keep(const QString &key);

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
};

void tst_VTManagerRefresh::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Basic", "en.xml",
                             R"(<vidtip key="cut" title="Cut"/><vidtip key="copy" title="Copy"/>
                                                   <vidtip key="english" title="English"/>)",
                             "locale=\"en_US\"");
    m_packages->writeControl("Basic", "de.xml",
                             R"(<vidtip key="cut" title="Schneiden" ui="ui/Other.qml"/>
                                <vidtip key="copy" title="Kopieren"/>)",
                             "locale=\"de_DE\"");
    m_packages->writeControl("Basic", "all.xml", R"(<vidtip key="line" title="Line"/>)");
    m_packages->writeUserInterface("Basic", R"(
        property string shown: vidtip ? vidtip.attribute("title") + " " + vidtip.attribute("shortcut") : ""
        property string word: vidtip ? vidTipView.translate(vidtip.attribute("title"), "Basic") : "")");
    m_packages->write("Basic.vidtips/ui/Other.qml", R"(import QtQuick 1.0
        Item { property string shown: "other " + vidtip.attribute("title"); width: 300; height: 40 })");
    VTContext settings;
    settings.set(ContentLocale, "en_US");
    settings.set(UserInterfaceLocale, "en_US");
    settings.set(IdleInterval, 0);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
}

void tst_VTManagerRefresh::cleanup()
{
    m_session.reset();
    m_packages.reset();
}

VTWidget *tst_VTManagerRefresh::keep(const QString &key)
{
    m_session->host->show(key, QPoint(100, 100), nullptr);
    VTWidget *const window = m_session->window();
    window->view()->setReserved(true);
    return window;
}

void tst_VTManagerRefresh::tipOnScreen()
{
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    const QPoint place = m_session->window()->pos();
    const QPointer<VTXmlElement> old = m_session->content();
    m_session->set(ContentLocale, "de_DE");
    QCOMPARE(shown(m_session->window()), QString("Copy "));
    changeLanguage();
    QTRY_COMPARE(shown(m_session->window()), QString("Kopieren "));
    QVERIFY(!old);
    QVERIFY(m_session->host->isVisible());
    QCOMPARE(m_session->window()->pos(), place);
}

void tst_VTManagerRefresh::tipOnScreenIsNotShownAnew()
{
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    m_session->set(ContentLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(shown(m_session->window()), QString("Kopieren "));
    QCOMPARE(m_session->host->notificationTexts(), QStringList{"0 copy"});
}

void tst_VTManagerRefresh::tipThatIsNotOnScreen()
{
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    m_session->host->hide();
    const int requests = m_session->index.requests.count();
    changeLanguage();
    QTest::qWait(0);
    QCOMPARE(m_session->index.requests.count(), requests);
    QVERIFY(!m_session->host->isVisible());
}

void tst_VTManagerRefresh::settingsThatTheHostChangesLater()
{
    class Window : public QWidget
    {
    public:
        void changeEvent(QEvent *event) override
        {
            if (event->type() == QEvent::LanguageChange)
                session->set(ContentLocale, "de_DE");
        }
        TestSession *session = nullptr;
    };
    // Whichever comes first among the application's windows.
    Window before;
    before.session = m_session.get();
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    Window after;
    after.session = m_session.get();
    QTranslator translator;
    QVERIFY(translator.load(m_packages->write("any.qm", TestCatalogue("any").add("a", "b").bytes())));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QTRY_COMPARE(shown(m_session->window()), QString("Kopieren "));
}

void tst_VTManagerRefresh::severalWindowsRefreshOnce()
{
    const QPointer<VTWidget> kept = keep("cut");
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    m_session->index.requests.clear();
    m_session->set(ContentLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(shown(m_session->window()), QString("Kopieren "));
    QCOMPARE(m_session->index.requests.count(), 2);
    delete kept;
}

void tst_VTManagerRefresh::tipWithoutContentInTheLanguage()
{
    QVERIFY(m_session->host->show("english", QPoint(100, 100), nullptr));
    m_session->set(ContentLocale, "de_DE");
    m_session->set(UserInterfaceLocale, "de_DE");
    changeLanguage();
    QTRY_VERIFY(!m_session->host->isVisible());
}

void tst_VTManagerRefresh::keptTip()
{
    const QPointer<VTWidget> kept = keep("copy");
    QCOMPARE(kept->windowTitle(), QString("Copy"));
    const QPoint place = kept->pos();
    kept->hide();
    m_session->set(ContentLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(shown(kept), QString("Kopieren "));
    QCOMPARE(kept->windowTitle(), QString("Kopieren"));
    QVERIFY(!kept->isVisible());
    QCOMPARE(kept->pos(), place);
    delete kept;
}

void tst_VTManagerRefresh::keptTipWithoutContentInTheLanguage()
{
    const QPointer<VTWidget> kept = keep("english");
    const QPointer<VTWidget> other = keep("copy");
    m_session->set(ContentLocale, "de_DE");
    m_session->set(UserInterfaceLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(shown(other), QString("Kopieren "));
    QCOMPARE(shown(kept), QString("English "));
    QVERIFY(kept->isVisible());
    delete kept;
    delete other;
}

void tst_VTManagerRefresh::keptTipInAWindowOfTheHost()
{
    QWidget first;
    QWidget renamed;
    QWidget *next = &first;
    m_session->host->onCreateWindow = [&] { return next; };
    const QPointer<VTWidget> kept = keep("copy");
    next = &renamed;
    const QPointer<VTWidget> other = keep("copy");
    QCOMPARE(first.windowTitle(), QString("Copy"));
    renamed.setWindowTitle("Mine");
    m_session->set(ContentLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(shown(kept), QString("Kopieren "));
    QCOMPARE(shown(other), QString("Kopieren "));
    QCOMPARE(first.windowTitle(), QString("Kopieren"));
    QCOMPARE(renamed.windowTitle(), QString("Mine"));
}

void tst_VTManagerRefresh::keptTipIsTranslatedFromItsOwnPackage()
{
    m_packages->write("Basic.vidtips/l10n/Vidtips_de_DE.qm",
                      TestCatalogue("Basic").add("Line", "Linie").bytes());
    m_packages->writeControl("Second", "all.xml", R"(<vidtip key="arc" title="Arc"/>)");
    m_packages->writeUserInterface("Second");
    m_session->manager()->loadPackage(QFileInfo(m_packages->filePath("Second.vidtips")));
    const QPointer<VTWidget> kept = keep("line");
    QVERIFY(m_session->host->show("arc", QPoint(100, 100), nullptr));
    QCOMPARE(kept->view()->rootObject()->property("word").toString(), QString("Line"));
    m_session->set(ContentLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(kept->view()->rootObject()->property("word").toString(), QString("Linie"));
    delete kept;
}

void tst_VTManagerRefresh::otherUserInterface()
{
    QVERIFY(m_session->host->show("cut", QPoint(100, 100), nullptr));
    m_session->set(ContentLocale, "de_DE");
    changeLanguage();
    QTRY_COMPARE(shown(m_session->window()), QString("other Schneiden"));
    QTRY_COMPARE(m_session->window()->width(), 301);
}

void tst_VTManagerRefresh::shortcutIsAskedForAgain()
{
    QWidget command;
    QObject *askedFor = nullptr;
    m_session->host->onShortcut = [&](const QString &key, QObject *object, const QString &) {
        askedFor = object;
        return key
            + (m_session->manager()->currentLocale().language() == QLocale::German ? " Strg" : " Ctrl");
    };
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), &command));
    QCOMPARE(shown(m_session->window()), QString("Copy copy Ctrl"));
    m_session->set(ContentLocale, "de_DE");
    askedFor = nullptr;
    changeLanguage();
    QTRY_COMPARE(shown(m_session->window()), QString("Kopieren copy Strg"));
    QCOMPARE(askedFor, &command);
}

void tst_VTManagerRefresh::hostDeletesTheWindowMeanwhile()
{
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    bool wasAsked = false;
    m_session->host->onShortcut = [&](const QString &, QObject *, const QString &shortcut) {
        wasAsked = true;
        delete m_session->window();
        return shortcut;
    };
    m_session->manager()->refresh();
    QVERIFY(wasAsked);
    QVERIFY(!m_session->host->isVisible());
}

void tst_VTManagerRefresh::hostIsDeletedMeanwhile()
{
    const QPointer<VTWidget> kept = keep("cut");
    QVERIFY(m_session->host->show("copy", QPoint(100, 100), nullptr));
    m_session->host->onShortcut = [this](const QString &, QObject *, const QString &shortcut) {
        QString answer = shortcut;
        delete m_session->host;
        return answer;
    };
    m_session->manager()->refresh();
    QVERIFY(!m_session->host);
    delete kept;
}

QTEST_MAIN(tst_VTManagerRefresh)
#include "tst_vtmanagerrefresh.moc"
