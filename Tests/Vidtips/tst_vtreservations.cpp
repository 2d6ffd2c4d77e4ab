#include <Vidtips/VTReservations_p.h>

#include "TipWindow.h"

#include <QtTest/QTest>

#include <memory>

using namespace Vidtips;

/** Deletes another window when one is shown. */
class Revenge : public QObject
{
public:
    explicit Revenge(const QPointer<VTWidget> &victim)
        : m_victim(victim)
    {
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Show)
            delete m_victim;
        return false;
    }

private:
    QPointer<VTWidget> m_victim;
};

class tst_VTReservations : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void windowsLastFirst();
    void windowThatIsGoneIsForgotten();
    void contentOfTheFirstWithTheKey();
    void stayOnTop();
    void windowThatTakesAnotherAlong();

private:
    QPointer<VTWidget> first;
    QPointer<VTWidget> second;
    QPointer<VTWidget> third;
    std::unique_ptr<VTReservations> reservations;
};

void tst_VTReservations::init()
{
    first = new TipWindow("cut");
    second = new TipWindow("copy");
    third = new TipWindow("cut");
    reservations = std::make_unique<VTReservations>();
    for (VTWidget *window : {first.data(), second.data(), third.data()})
        reservations->add(window);
}

void tst_VTReservations::cleanup()
{
    reservations.reset();
    delete first;
    delete second;
    delete third;
}

void tst_VTReservations::windowsLastFirst()
{
    QCOMPARE(reservations->windows(), (QList<QPointer<VTWidget>>{third, second, first}));
    QVERIFY(VTReservations().windows().isEmpty());
}

void tst_VTReservations::windowThatIsGoneIsForgotten()
{
    delete second;
    QCOMPARE(reservations->windows(), (QList<QPointer<VTWidget>>{third, first}));
    QVERIFY(!reservations->contentWithKey("copy"));
}

void tst_VTReservations::contentOfTheFirstWithTheKey()
{
    QCOMPARE(reservations->contentWithKey("cut"), first->view()->content());
    QCOMPARE(reservations->contentWithKey("copy"), second->view()->content());
    QVERIFY(!reservations->contentWithKey("paste"));
    delete first;
    QCOMPARE(reservations->contentWithKey("cut"), third->view()->content());
}

void tst_VTReservations::stayOnTop()
{
    second->setWindowFlags(Qt::Tool);
    reservations->setStayOnTop(true);
    QVERIFY(second->windowFlags() & Qt::WindowStaysOnTopHint);
    reservations->setStayOnTop(false);
    for (const QPointer<VTWidget> &window : reservations->windows()) {
        QVERIFY(!(window->windowFlags() & Qt::WindowStaysOnTopHint));
        QVERIFY(window->isVisible());
    }
}

void tst_VTReservations::windowThatTakesAnotherAlong()
{
    Revenge revenge(second);
    third->installEventFilter(&revenge);
    reservations->setStayOnTop(true);
    QVERIFY(!second);
    QVERIFY(first->isVisible());
    delete third;
    reservations->raise();
    QCOMPARE(reservations->windows(), QList<QPointer<VTWidget>>{first});
}

QTEST_MAIN(tst_VTReservations)
#include "tst_vtreservations.moc"
