#include <Vidtips/VTPointerWatch_p.h>

#include <QtCore/QTimer>
#include <QtGui/QCursor>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>

using namespace Vidtips;

Q_DECLARE_METATYPE(QWidget *)

class tst_VTPointerWatch : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void severalCallsMakeOneLook();
    void looksAgainOnlyWhileThePointerIsElsewhere();
    void blockedWindowIsElsewhere();
    void restsWhenTold();

private:
    QScopedPointer<QWidget> window;
};

void tst_VTPointerWatch::init()
{
    window.reset(new QWidget);
    window->setGeometry(100, 100, 200, 100);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.data()));
    QCursor::setPos(150, 150);
}

void tst_VTPointerWatch::severalCallsMakeOneLook()
{
    VTPointerWatch watch;
    QWidget *seen = nullptr;
    QPoint place;
    int looks = 0;
    connect(&watch, &VTPointerWatch::looked, this, [&](QWidget *widget, const QPoint &position) {
        seen = widget;
        place = position;
        ++looks;
    });
    watch.lookSoon();
    watch.lookSoon();
    QCOMPARE(looks, 0);
    QTRY_COMPARE(looks, 1);
    QCOMPARE(seen, window.data());
    QCOMPARE(place, QPoint(150, 150));
}

// A timer that went on while the pointer rests would be the cost of every idle tip.
void tst_VTPointerWatch::looksAgainOnlyWhileThePointerIsElsewhere()
{
    VTPointerWatch watch;
    QSignalSpy looks(&watch, &VTPointerWatch::looked);
    QCursor::setPos(500, 500);
    watch.lookSoon();
    QTRY_VERIFY(looks.count() > 1);
    QCursor::setPos(150, 150);
    const int before = looks.count();
    QTRY_COMPARE(looks.count(), before + 1);
    QVERIFY(!looks.wait(1200));
}

void tst_VTPointerWatch::blockedWindowIsElsewhere()
{
    VTPointerWatch watch;
    QSignalSpy looks(&watch, &VTPointerWatch::looked);
    QDialog dialog;
    dialog.setGeometry(400, 400, 100, 100);
    dialog.setModal(true);
    dialog.show();
    watch.lookSoon();
    QTRY_VERIFY(looks.count() > 1);
    QCursor::setPos(450, 450);
    const int before = looks.count();
    QTRY_COMPARE(looks.count(), before + 1);
    QVERIFY(!looks.wait(1200));
}

void tst_VTPointerWatch::restsWhenTold()
{
    VTPointerWatch watch;
    QSignalSpy looks(&watch, &VTPointerWatch::looked);
    watch.lookSoon();
    watch.rest();
    QVERIFY(!looks.wait(200));
}

QTEST_MAIN(tst_VTPointerWatch)
#include "tst_vtpointerwatch.moc"
