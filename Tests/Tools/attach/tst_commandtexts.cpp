#include "CommandTexts.h"

#include <QtTest/QTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>

class tst_CommandTexts : public QObject
{
    Q_OBJECT

private slots:
    void nothingOfWhatIsNoCommand();
    void actions_data();
    void actions();
    void shortcutIsNoSummary();
    void buttons();
    void otherWidgets();
};

void tst_CommandTexts::nothingOfWhatIsNoCommand()
{
    QObject object;
    object.setProperty("text", "Cut");
    for (const QObject *const each : {static_cast<const QObject *>(nullptr), &std::as_const(object)}) {
        const CommandTexts texts = CommandTexts::of(each);
        QVERIFY(texts.title.isEmpty());
        QVERIFY(texts.summary.isEmpty());
        QVERIFY(texts.shortcut.isEmpty());
        QVERIFY(texts.icon.isNull());
    }
}

void tst_CommandTexts::actions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<QString>("statusTip");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("summary");
    QTest::newRow("text only") << "Cu&t..."
                               << ""
                               << ""
                               << "Cut"
                               << "";
    QTest::newRow("status tip") << "Cut"
                                << "Snip"
                                << "Takes it out"
                                << "Cut"
                                << "Takes it out";
    QTest::newRow("tool tip") << "Cut"
                              << "Takes it out"
                              << ""
                              << "Cut"
                              << "Takes it out";
    QTest::newRow("status tip that repeats the title") << "Cut"
                                                       << "Takes it out"
                                                       << "cut..."
                                                       << "Cut"
                                                       << "Takes it out";
    QTest::newRow("rich tool tip") << "Cut"
                                   << "<b>Takes</b> it<br>out"
                                   << ""
                                   << "Cut"
                                   << "Takes it out";
    QTest::newRow("rich tool tip that repeats") << "Cut"
                                                << "<b>Cut</b>"
                                                << ""
                                                << "Cut"
                                                << "";
    QTest::newRow("title in the tool tip") << ""
                                           << "Cut\nTakes it out"
                                           << ""
                                           << "Cut"
                                           << "Cut Takes it out";
    QTest::newRow("title in a rich tool tip") << ""
                                              << "<p>Cut</p><p>Takes it out</p>"
                                              << ""
                                              << "Cut"
                                              << "Cut Takes it out";
}

void tst_CommandTexts::actions()
{
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    QFETCH(QString, statusTip);
    QAction action(text, nullptr);
    action.setToolTip(toolTip);
    action.setStatusTip(statusTip);
    const CommandTexts texts = CommandTexts::of(&action);
    QTEST(texts.title, "title");
    QTEST(texts.summary, "summary");
}

void tst_CommandTexts::shortcutIsNoSummary()
{
    QAction action("Cut", nullptr);
    action.setShortcut(QKeySequence("Ctrl+X"));
    action.setToolTip("Cut (Ctrl+X)");
    QCOMPARE(CommandTexts::of(&action).summary, QString());
    QCOMPARE(CommandTexts::of(&action).shortcut, QKeySequence("Ctrl+X"));
    action.setToolTip("Ctrl+X");
    QCOMPARE(CommandTexts::of(&action).summary, QString());
    action.setToolTip("Ctrl+X takes it out");
    QCOMPARE(CommandTexts::of(&action).summary, QStringLiteral("Ctrl+X takes it out"));
}

void tst_CommandTexts::buttons()
{
    QPushButton button("&Cut");
    QCOMPARE(CommandTexts::of(&button).title, QStringLiteral("Cut"));
    QVERIFY(!button.shortcut().isEmpty());
    QVERIFY(CommandTexts::of(&button).shortcut.isEmpty());
    button.setShortcut(QKeySequence("Ctrl+X"));
    QCOMPARE(CommandTexts::of(&button).shortcut, QKeySequence("Ctrl+X"));
    QToolButton tool;
    tool.setToolTip("Paste");
    QCOMPARE(CommandTexts::of(&tool).title, QStringLiteral("Paste"));
    QPixmap picture(8, 8);
    picture.fill(Qt::red);
    QAction action(QIcon(picture), "Copy", nullptr);
    tool.setDefaultAction(&action);
    tool.setText("Another");
    QCOMPARE(CommandTexts::of(&tool).title, QStringLiteral("Copy"));
    QVERIFY(!CommandTexts::of(&tool).icon.isNull());
}

void tst_CommandTexts::otherWidgets()
{
    QMenu menu("&Edit");
    QCOMPARE(CommandTexts::of(&menu).title, QStringLiteral("Edit"));
    const QGroupBox group("&Margins");
    QCOMPARE(CommandTexts::of(&group).title, QStringLiteral("Margins"));
    const QLabel label("<i>Page</i> 1");
    QCOMPARE(CommandTexts::of(&label).title, QStringLiteral("Page 1"));
    QWidget other;
    other.setWhatsThis("Shows the page");
    other.setWindowTitle("Page");
    QCOMPARE(CommandTexts::of(&other).title, QStringLiteral("Page"));
    QCOMPARE(CommandTexts::of(&other).summary, QStringLiteral("Shows the page"));
}

QTEST_MAIN(tst_CommandTexts)
#include "tst_commandtexts.moc"
