#include "MessageRecorder.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QLoggingCategory>
#include <QtGui/QMouseEvent>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

/** The log tells why a tip is shown or not, in one line for each decision. */
class tst_VTShowLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isOffByDefault();
    void shownTip();
    void tipThatIsOnScreen();
    void keyWithoutContent();
    void objectWithoutKey();
    void otherLocale();
    void filesWithFaults_data();
    void filesWithFaults();
    void manyFiles();
    void noFiles();
    void fallback();
    void tipsOff();
    void requiredModifiers();
    void tipThatStaysOrGoes();
    void hostThatTakesTheContentAway();
    void clickElsewhere();
    void anotherApplication();
    void commandThatIsGone();
    void popupOverTheCommand();
    void keysOfTheHost_data();
    void keysOfTheHost();
    void pointerThatIsAway();

private:
    QString path(const QString &name) const { return m_packages->filePath("Basic.vidtips/Control/" + name); }

    QStringList lines() const
    {
        QStringList texts;
        for (const MessageRecorder::Message &message : m_log->messages()) {
            if (message.category == "vidtips.show" && message.type == QtDebugMsg)
                texts << message.text;
        }
        return texts;
    }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<MessageRecorder> m_log;
};

void tst_VTShowLog::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Basic", "a.xml", R"(<vidtip key="cut"/><vidtip key="tip.fallback"/>)");
    m_packages->writeUserInterface("Basic");
    VTContext settings;
    settings.set(IdleInterval, 0);
    settings.set(HideDuration, 0);
    settings.set(UserInterfaceLocale, "en_US");
    settings.set(ContentLocale, "de_DE");
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    QLoggingCategory::setFilterRules("vidtips.show=true");
    m_log = std::make_unique<MessageRecorder>();
}

void tst_VTShowLog::cleanup()
{
    m_log.reset();
    m_session.reset();
    m_packages.reset();
    QLoggingCategory::setFilterRules(QString());
}

void tst_VTShowLog::isOffByDefault()
{
    QLoggingCategory::setFilterRules(QString());
    m_session->host->show("cut", {}, nullptr);
    m_session->host->show("paste", {}, nullptr);
    QCOMPARE(lines(), QStringList());
}

void tst_VTShowLog::shownTip()
{
    QPushButton button;
    button.setObjectName("cutButton");
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), &button));
    QCOMPARE(lines(),
             (QStringList{"\"cut\" for de_DE: found in " + path("a.xml"),
                          "\"cut\" at 10,20 for QPushButton \"cutButton\": shows " + path("a.xml")}));
}

void tst_VTShowLog::tipThatIsOnScreen()
{
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), nullptr));
    QVERIFY(m_session->host->show("cut", QPoint(30, 40), nullptr));
    QCOMPARE(lines().last(), QString("\"cut\" at 30,40 for no object: is on screen already"));
}

void tst_VTShowLog::keyWithoutContent()
{
    QVERIFY(!m_session->host->show("paste", QPoint(10, 20), nullptr));
    const QString files = ": not found; control files: " + path("a.xml");
    QCOMPARE(lines(),
             (QStringList{"\"paste\" for de_DE" + files, "\"paste\" for en_US" + files,
                          "\"paste\" at 10,20 for no object: not shown, as there is no content"}));
}

void tst_VTShowLog::objectWithoutKey()
{
    QWidget widget;
    QVERIFY(!m_session->host->show(QString(), QPoint(10, 20), &widget));
    QCOMPARE(lines().last(), QString("\"\" at 10,20 for QWidget: not shown, as it has no key"));
}

void tst_VTShowLog::otherLocale()
{
    const QString file =
        m_packages->writeControl("Basic", "fr.xml", R"(<vidtip key="paste"/>)", "locale=\"fr_FR\"");
    m_session->manager()->loadPackage(QFileInfo(m_packages->filePath("Basic.vidtips")));
    QVERIFY(!m_session->host->show("paste", {}, nullptr));
    QVERIFY(lines().first().contains(file + " (has it for fr_FR)"));
}

void tst_VTShowLog::filesWithFaults_data()
{
    QTest::addColumn<QByteArray>("tips");
    QTest::addColumn<QString>("fault");
    QTest::newRow("twice") << QByteArray("<vidtip key=\"paste\"/><vidtip key=\"paste\"/>")
                           << "has the key 2 times";
    QTest::newRow("malformed") << QByteArray("<vidtip key=\"copy\"></vidtips><oops") << "is malformed";
    QTest::newRow("gone") << QByteArray() << "cannot be read";
}

void tst_VTShowLog::filesWithFaults()
{
    QFETCH(QByteArray, tips);
    QFETCH(QString, fault);
    const QString file = m_packages->writeControl("Basic", "b.xml", tips);
    m_session->manager()->loadPackage(QFileInfo(m_packages->filePath("Basic.vidtips")));
    if (tips.isEmpty())
        QVERIFY(QFile::remove(file));
    QVERIFY(!m_session->host->show("paste", {}, nullptr));
    const QStringList notFound = lines().filter("not found");
    QVERIFY2(notFound.value(0).contains(file + " (" + fault + ")"), qPrintable(notFound.value(0)));
}

void tst_VTShowLog::manyFiles()
{
    for (int i = 0; i < 40; ++i)
        m_packages->writeControl("Basic", QStringLiteral("file%1.xml").arg(i), R"(<vidtip key="other"/>)");
    m_packages->writeControl("Basic", "fr.xml", R"(<vidtip key="paste"/>)", "locale=\"fr_FR\"");
    m_session->manager()->loadPackage(QFileInfo(m_packages->filePath("Basic.vidtips")));
    QVERIFY(!m_session->host->show("paste", {}, nullptr));
    const QString line = lines().first();
    QVERIFY2(line.endsWith(" more"), qPrintable(line));
    QVERIFY(line.contains("fr.xml (has it for fr_FR)"));
    QVERIFY(line.count(".xml") <= 21);
}

void tst_VTShowLog::noFiles()
{
    VTContext settings;
    TestIndex index(&settings, {});
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    QVERIFY(!index.retrieve("cut", QLocale("de_DE"), directory, depth, root));
    QCOMPARE(lines().last(), QString("\"cut\" for de_DE: not found; control files: there are none"));
}

void tst_VTShowLog::fallback()
{
    m_session->set(FallbackKey, "tip.fallback");
    QVERIFY(m_session->host->show("paste", QPoint(10, 20), nullptr));
    QCOMPARE(lines().mid(2),
             (QStringList{"\"tip.fallback\" for en_US: found in " + path("a.xml"),
                          "\"paste\" at 10,20 for no object: shows the fallback \"tip.fallback\" of "
                              + path("a.xml")}));
    QVERIFY(m_session->host->show("copy", QPoint(10, 20), nullptr));
    QCOMPARE(
        lines().last(),
        QString("\"copy\" at 10,20 for no object: has no content, and the fallback is on screen already"));
}

void tst_VTShowLog::tipsOff()
{
    m_session->set(TipsOff, true);
    QVERIFY(!m_session->host->show("cut", QPoint(10, 20), nullptr));
    QCOMPARE(lines(), QStringList{"\"cut\" at 10,20 for no object: not shown, as TipsOff is set"});
}

void tst_VTShowLog::requiredModifiers()
{
    m_session->set(RequiredModifiers, int(Qt::ControlModifier));
    QVERIFY(!m_session->host->show("cut", QPoint(10, 20), nullptr));
    QCOMPARE(
        lines(),
        QStringList{"\"cut\" at 10,20 for no object: not shown, as RequiredModifiers is 0x4000000, and 0x0 "
                    "are held"});
}

void tst_VTShowLog::tipThatStaysOrGoes()
{
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), nullptr));
    QVERIFY(m_session->host->show("paste", m_session->window()->pos(), nullptr));
    QVERIFY(lines().last().endsWith(
        "not shown, as there is no content; the tip on screen stays, as the pointer is near"));
    QVERIFY(!m_session->host->show("paste", QPoint(5000, 5000), nullptr));
    QVERIFY(lines().last().endsWith("not shown, as there is no content; the tip on screen goes"));
}

void tst_VTShowLog::hostThatTakesTheContentAway()
{
    m_session->host->onShortcut = [this](const QString &, QObject *, const QString &shortcut) {
        delete m_session->content();
        return shortcut;
    };
    QVERIFY(!m_session->host->show("cut", QPoint(10, 20), nullptr));
    QVERIFY(lines().last().endsWith("not shown, as the host has done something else meanwhile"));
}

void tst_VTShowLog::clickElsewhere()
{
    QPushButton button;
    button.setObjectName("other");
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), nullptr));
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    m_session->host->mouseButtonEventFilter(&button, &press);
    QCOMPARE(lines().last(), QString("the tip goes, as there was a click on QPushButton \"other\""));
}

void tst_VTShowLog::anotherApplication()
{
    QEvent event(QEvent::ApplicationDeactivate);
    QObject *const filter = m_session->manager();
    filter->eventFilter(qApp, &event);
    QCOMPARE(lines(), QStringList());
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), nullptr));
    filter->eventFilter(qApp, &event);
    QCOMPARE(lines().last(), QString("the tip goes, as the application is no longer active"));
}

void tst_VTShowLog::commandThatIsGone()
{
    auto command = std::make_unique<QPushButton>();
    command->show();
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), command.get()));
    command.reset();
    QCOMPARE(lines().last(), QString("the tip goes, as its command is gone or blocked"));
}

void tst_VTShowLog::popupOverTheCommand()
{
    QPushButton command;
    command.show();
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), &command));
    QMenu menu;
    QShowEvent event;
    QObject *const filter = m_session->manager();
    filter->eventFilter(&menu, &event);
    QCOMPARE(lines().last(), QString("the tip goes, as a popup opened"));
}

void tst_VTShowLog::keysOfTheHost_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("reason");
    QTest::newRow("Escape") << int(Qt::Key_Escape) << "Escape was pressed";
    QTest::newRow("typing") << int(Qt::Key_X) << "there was typing in QLineEdit \"name\"";
}

void tst_VTShowLog::keysOfTheHost()
{
    QFETCH(int, key);
    QFETCH(QString, reason);
    QLineEdit edit;
    edit.setObjectName("name");
    QVERIFY(m_session->host->show("cut", QPoint(10, 20), nullptr));
    QKeyEvent press(QEvent::KeyPress, key, {});
    QObject *const filter = m_session->manager();
    filter->eventFilter(&edit, &press);
    QCOMPARE(lines().last(), "the tip goes, as " + reason);
}

void tst_VTShowLog::pointerThatIsAway()
{
    m_session->set(IdleInterval, 1);
    QVERIFY(m_session->host->show("cut", QCursor::pos() + QPoint(300, 300), nullptr));
    QTRY_COMPARE(lines().last(), QString("the tip goes, as the pointer has been away for 1 ms"));
}

QTEST_MAIN(tst_VTShowLog)
#include "tst_vtshowlog.moc"
