#include <Vidtips/VTTipWatch_p.h>

#include "TipWindow.h"

#include <QtGui/QCursor>
#include <QtTest/QTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

class tst_VTTipWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void watchesNothingAtFirst();
    void tipGoesWithItsCommand_data();
    void tipGoesWithItsCommand();
    void endLetsTheTipAlone();
    void hiddenTipIsNotWatched();
    void tipWithoutACommandStays();
    void anotherCommandTakesItsPlace();
    void popupEndsTheTip();
    void menuOfTheCommandDoesNot();
    void pointerBesideTheCommand();

private:
    void begin(QObject *object);

    std::unique_ptr<QWidget> host;
    QPointer<QPushButton> button;
    std::unique_ptr<TipWindow> tip;
    std::unique_ptr<VTTipWatch> watch;
};

void tst_VTTipWatch::init()
{
    watch = std::make_unique<VTTipWatch>();
    tip = std::make_unique<TipWindow>("cut");
    host = std::make_unique<QWidget>();
    host->setGeometry(400, 400, 200, 100);
    button = new QPushButton(host.get());
    button->setGeometry(10, 10, 80, 30);
    host->show();
    QCursor::setPos(button->mapToGlobal(QPoint(5, 5)));
    tip->setGeometry(10, 10, 50, 40);
    tip->show();
}

void tst_VTTipWatch::begin(QObject *object)
{
    watch->begin(tip.get(), object, QRect(), button->mapToGlobal(QPoint(5, 5)));
}

void tst_VTTipWatch::watchesNothingAtFirst()
{
    QVERIFY(!watch->isAtWork());
    QEvent show(QEvent::Show);
    QVERIFY(!watch->filter(button, &show));
    QVERIFY(!watch->filter(nullptr, &show));
    watch->pointerMoved(button, QPoint(1, 1));
    watch->end();
    QVERIFY(tip->isVisible());
}

void tst_VTTipWatch::tipGoesWithItsCommand_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how : {"hidden", "deleted", "window hidden", "window deleted"})
        QTest::newRow(how) << how;
}

void tst_VTTipWatch::tipGoesWithItsCommand()
{
    QFETCH(QString, how);
    begin(button);
    QVERIFY(watch->isAtWork());
    if (how == "hidden")
        button->hide();
    else if (how == "deleted")
        delete button;
    else if (how == "window hidden")
        host->hide();
    else
        host.reset();
    QVERIFY(!tip->isVisible());
    QVERIFY(!watch->isAtWork());
}

void tst_VTTipWatch::endLetsTheTipAlone()
{
    begin(button);
    watch->end();
    QVERIFY(!watch->isAtWork());
    button->hide();
    QVERIFY(tip->isVisible());
}

void tst_VTTipWatch::hiddenTipIsNotWatched()
{
    begin(button);
    tip->hide();
    QVERIFY(!watch->isAtWork());
    tip->show();
    button->hide();
    QVERIFY(tip->isVisible());
}

void tst_VTTipWatch::tipWithoutACommandStays()
{
    begin(nullptr);
    QVERIFY(watch->isAtWork());
    button->hide();
    QVERIFY(tip->isVisible());
    watch->pointerMoved(host.get(), host->mapToGlobal(QPoint(0, 0)));
    QVERIFY(tip->isVisible());
}

void tst_VTTipWatch::anotherCommandTakesItsPlace()
{
    QPushButton other(host.get());
    other.show();
    begin(&other);
    begin(button);
    other.hide();
    QVERIFY(tip->isVisible());
    button->hide();
    QVERIFY(!tip->isVisible());
}

void tst_VTTipWatch::popupEndsTheTip()
{
    begin(button);
    QMenu menu;
    QEvent show(QEvent::Show);
    QVERIFY(!watch->filter(&menu, &show));
    QVERIFY(!tip->isVisible());
}

// What the command stands in is no reason to go.
void tst_VTTipWatch::menuOfTheCommandDoesNot()
{
    QMenu menu;
    QAction *const entry = menu.addAction("Cut");
    menu.popup(QPoint(300, 300));
    watch->begin(tip.get(), &menu, QRect(menu.mapToGlobal(menu.actionGeometry(entry).topLeft()), QSize(5, 5)),
                 menu.mapToGlobal(menu.actionGeometry(entry).center()));
    QEvent show(QEvent::Show);
    QVERIFY(!watch->filter(&menu, &show));
    QVERIFY(tip->isVisible());
    menu.hide();
    QVERIFY(!tip->isVisible());
}

// It is where the command is that keeps the tip, as long as nothing covers it.
void tst_VTTipWatch::pointerBesideTheCommand()
{
    begin(button);
    const QPoint onIt = button->mapToGlobal(QPoint(5, 5));
    watch->pointerMoved(button, onIt);
    QVERIFY(tip->isSafe(onIt));
    QVERIFY(!tip->isSafe(host->mapToGlobal(QPoint(150, 90))));
    QPushButton cover(host.get());
    watch->pointerMoved(&cover, onIt);
    QVERIFY(!tip->isSafe(onIt));
    watch->pointerMoved(button, onIt);
    QVERIFY(tip->isSafe(onIt));
}

QTEST_MAIN(tst_VTTipWatch)
#include "tst_vttipwatch.moc"
