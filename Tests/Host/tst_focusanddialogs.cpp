#include "ForeignHost.h"
#include "RealPointer.h"

#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>

using namespace Vidtips;

/** Who has the keyboard, and what stands above what, in a host with several windows and dialogs. */
class tst_FocusAndDialogs : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickLeavesTheFocusWhereItWas();
    void escapeClosesTheTipAndNothingElse();
    void keysOfTheTipWorkWhileTheHostHasTheFocus();
    void keysThatTheTipLeavesAloneAreTheHosts();
    void keptTipTakesTheFocus();
    void dialogs_data();
    void dialogs();
    void nestedDialogs();
    void objectThatIsNoWidgetInADialog();
    void tipOfADialogAndThenOfTheWindow();
    void aboveItsWindow_data();
    void aboveItsWindow();

private:
    QPoint pin() const { return m_host->tip()->mapToGlobal(QPoint(40, 40)); }
    QPoint button() const { return m_host->tip()->mapToGlobal(QPoint(120, 40)); }
    QColor pixelInTip() const;
    void worksIn(QWidget *window, const QString &key);

    std::unique_ptr<ForeignHost> m_host;
};

void tst_FocusAndDialogs::init()
{
    RealPointer::jumpTo({1240, 760});
    m_host = std::make_unique<ForeignHost>();
    QVERIFY(m_host->window->isActiveWindow());
}

void tst_FocusAndDialogs::cleanup()
{
    m_host.reset();
}

QColor tst_FocusAndDialogs::pixelInTip() const
{
    const QPoint place = m_host->tip()->mapToGlobal(QPoint(80, 90));
    const QPixmap shot = m_host->tip()->screen()->grabWindow(0, place.x(), place.y(), 1, 1);
    return shot.toImage().pixelColor(0, 0);
}

void tst_FocusAndDialogs::clickLeavesTheFocusWhereItWas()
{
    m_host->edit->setFocus();
    QSignalSpy focusChanges(qApp, &QApplication::focusChanged);
    QVERIFY(m_host->hover(m_host->plain));
    QVERIFY(RealPointer::click(button()));
    QTRY_COMPARE(m_host->host()->notificationTexts(), (QStringList{"0 plain", "20 plain"}));
    QVERIFY(m_host->isShown());
    QVERIFY(m_host->window->isActiveWindow());
    QVERIFY(!m_host->tip()->isActiveWindow());
    QCOMPARE(QApplication::focusWidget(), m_host->edit);
    QCOMPARE(focusChanges.count(), 0);
    QCOMPARE(m_host->tip()->windowFlags(), Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    QVERIFY(RealPointer::type("y"));
    QTRY_COMPARE(m_host->edit->text(), QString("y"));
}

void tst_FocusAndDialogs::escapeClosesTheTipAndNothingElse()
{
    QDialog *const dialog = m_host->openDialog(m_host->window, Qt::ApplicationModal, "asked");
    QVERIFY(m_host->hover(dialog->findChild<QPushButton *>()));
    QVERIFY(RealPointer::type("Escape"));
    QTRY_VERIFY(!m_host->isShown());
    QVERIFY(dialog->isVisible());
    QVERIFY(RealPointer::type("Escape"));
    QTRY_VERIFY(!dialog->isVisible());
}

void tst_FocusAndDialogs::keysOfTheTipWorkWhileTheHostHasTheFocus()
{
    QAction help;
    help.setShortcut(Qt::Key_F1);
    m_host->window->addAction(&help);
    QSignalSpy helped(&help, &QAction::triggered);
    m_host->tree->setFocus();
    QVERIFY(m_host->hover(m_host->plain));
    QVERIFY(RealPointer::type("F1"));
    QTRY_COMPARE(m_host->host()->notificationTexts(), (QStringList{"0 plain", "21 plain"}));
    QVERIFY(RealPointer::type("space"));
    QTRY_COMPARE(m_host->host()->notificationTexts(), (QStringList{"0 plain", "21 plain", "22 plain"}));
    QVERIFY(m_host->isShown());
    QCOMPARE(helped.count(), 0);
    QCOMPARE(QApplication::focusWidget(), m_host->tree);
    QVERIFY(RealPointer::type("Escape"));
    QTRY_VERIFY(!m_host->isShown());
    QVERIFY(RealPointer::type("F1"));
    QTRY_COMPARE(helped.count(), 1);
}

void tst_FocusAndDialogs::keysThatTheTipLeavesAloneAreTheHosts()
{
    m_host->edit->setFocus();
    QVERIFY(m_host->hover(m_host->plain));
    QObject *const root = qobject_cast<QObject *>(m_host->tip()->view()->rootObject());
    root->setProperty("focus", false);
    QAction help;
    help.setShortcut(Qt::Key_F1);
    m_host->window->addAction(&help);
    QSignalSpy helped(&help, &QAction::triggered);
    QVERIFY(RealPointer::type("F1"));
    QTRY_COMPARE(helped.count(), 1);
    QVERIFY(RealPointer::type("space"));
    QTRY_COMPARE(m_host->edit->text(), QString(" "));
}

void tst_FocusAndDialogs::keptTipTakesTheFocus()
{
    m_host->edit->setFocus();
    QVERIFY(m_host->hover(m_host->plain));
    const QPointer<VTWidget> kept = m_host->tip();
    QVERIFY(RealPointer::click(pin()));
    QTRY_VERIFY(m_host->tip() != kept);
    QTRY_VERIFY(kept->isActiveWindow());
    m_host->window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_host->window));
    QVERIFY(RealPointer::click(kept->mapToGlobal(QPoint(120, 40))));
    QTRY_VERIFY(kept->isActiveWindow());
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 plain"));
    QVERIFY(RealPointer::type("F1"));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("21 plain"));
    QVERIFY(m_host->edit->text().isEmpty());
}

// Shows, is clicked, is kept, and works as a window.
void tst_FocusAndDialogs::worksIn(QWidget *window, const QString &key)
{
    QVERIFY(m_host->hover(window->findChild<QPushButton *>(key)));
    QTRY_COMPARE(pixelInTip(), QColor("#2060c0"));
    m_host->picture(QTest::currentTestFunction() + QString(" ") + key);
    QVERIFY(RealPointer::click(button()));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 " + key));
    QVERIFY(window->isActiveWindow());
    const QPointer<VTWidget> kept = m_host->tip();
    QVERIFY(RealPointer::click(pin()));
    QTRY_VERIFY(m_host->tip() != kept);
    QCOMPARE(kept->parentWidget(), window);
    QVERIFY(RealPointer::waitForWindow(kept));
    m_host->host()->notifications.clear();
    QVERIFY(RealPointer::click(kept->mapToGlobal(QPoint(120, 40))));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 " + key));
    QVERIFY(kept->isVisible());
    kept->close();
    window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(window));
}

void tst_FocusAndDialogs::dialogs_data()
{
    QTest::addColumn<Qt::WindowModality>("modality");
    QTest::newRow("application-modal") << Qt::ApplicationModal;
    QTest::newRow("window-modal") << Qt::WindowModal;
    QTest::newRow("not modal") << Qt::NonModal;
}

void tst_FocusAndDialogs::dialogs()
{
    QFETCH(Qt::WindowModality, modality);
    QDialog *const dialog = m_host->openDialog(m_host->window, modality, "asked");
    worksIn(dialog, "asked");
}

void tst_FocusAndDialogs::nestedDialogs()
{
    QDialog *const outer = m_host->openDialog(m_host->window, Qt::ApplicationModal, "asked");
    worksIn(outer, "asked");
    QDialog *const inner = m_host->openDialog(outer, Qt::ApplicationModal, "asked again");
    worksIn(inner, "asked again");
    inner->close();
    outer->activateWindow();
    QVERIFY(RealPointer::waitForWindow(outer));
    worksIn(outer, "asked");
}

void tst_FocusAndDialogs::objectThatIsNoWidgetInADialog()
{
    QDialog *const dialog = m_host->openDialog(m_host->window, Qt::ApplicationModal, "asked");
    QAction action;
    const QPoint place = dialog->mapToGlobal(QPoint(40, 100));
    QVERIFY(RealPointer::moveTo(place));
    QVERIFY(m_host->host()->show("plain", place, &action));
    QTRY_COMPARE(pixelInTip(), QColor("#2060c0"));
    QVERIFY(RealPointer::click(button()));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 plain"));
}

void tst_FocusAndDialogs::tipOfADialogAndThenOfTheWindow()
{
    QVERIFY(m_host->hover(m_host->plain));
    QDialog *const dialog = m_host->openDialog(m_host->window, Qt::ApplicationModal, "asked");
    worksIn(dialog, "asked");
    QVERIFY(m_host->hover(dialog->findChild<QPushButton *>()));
    QCOMPARE(m_host->tip()->windowHandle()->transientParent(), dialog->windowHandle());
    delete dialog;
    QTRY_VERIFY(!m_host->isShown());
    m_host->window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_host->window));
    QVERIFY(m_host->hover(m_host->other));
    QVERIFY(RealPointer::click(button()));
    QTRY_VERIFY(m_host->host()->notificationTexts().contains("20 other"));
}

void tst_FocusAndDialogs::aboveItsWindow_data()
{
    QTest::addColumn<bool>("fullScreen");
    QTest::newRow("full screen") << true;
    QTest::newRow("always on top") << false;
}

void tst_FocusAndDialogs::aboveItsWindow()
{
    QFETCH(bool, fullScreen);
    // The tip's window is older than the one that it is to stand above.
    m_host->secondWindow->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_host->secondWindow));
    QVERIFY(m_host->hover(m_host->farther));
    // A window that was just hidden may lose the state it is shown with: window managers clear it when they
    // hear of it.
    if (fullScreen) {
        m_host->window->showFullScreen();
    } else {
        m_host->window->setWindowFlag(Qt::WindowStaysOnTopHint);
        m_host->window->show();
    }
    m_host->window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_host->window));
    // It is active before it is that large, and its commands are elsewhere then. Only window managers make it
    // so.
    const bool grows = fullScreen && qgetenv("VIDTIPS_WINDOW_MANAGER") != "none";
    const QWidget *const window = m_host->window;
    QTRY_VERIFY_WITH_TIMEOUT(!grows || window->geometry() == window->screen()->geometry(),
                             RealPointer::patience);
    QVERIFY(m_host->hover(m_host->plain));
    QTRY_COMPARE(pixelInTip(), QColor("#2060c0"));
    m_host->picture(QTest::currentDataTag());
}

QTEST_MAIN(tst_FocusAndDialogs)
#include "tst_focusanddialogs.moc"
