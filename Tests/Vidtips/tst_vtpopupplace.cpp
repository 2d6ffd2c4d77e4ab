#include <Vidtips/VTPopupPlace_p.h>

#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTPopupPlace : public QObject
{
    Q_OBJECT

private slots:
    void beside_data();
    void beside();
};

void tst_VTPopupPlace::beside_data()
{
    QTest::addColumn<QRect>("popup");
    QTest::addColumn<int>("top");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("place");
    const QSize tip(200, 100);
    QTest::newRow("right") << QRect(100, 100, 150, 300) << 180 << tip << QPoint(256, 180);
    QTest::newRow("just fits") << QRect(100, 100, 694, 300) << 180 << tip << QPoint(800, 180);
    QTest::newRow("left") << QRect(700, 100, 150, 300) << 180 << tip << QPoint(494, 180);
    QTest::newRow("more room right") << QRect(300, 100, 300, 300) << 180 << QSize(500, 100)
                                     << QPoint(606, 180);
    QTest::newRow("more room left") << QRect(500, 100, 300, 300) << 180 << QSize(600, 100)
                                    << QPoint(-106, 180);
    QTest::newRow("up from the bottom") << QRect(100, 500, 150, 300) << 750 << tip << QPoint(256, 700);
    QTest::newRow("down from the top") << QRect(100, -50, 150, 300) << -40 << tip << QPoint(256, 0);
    QTest::newRow("higher than the screen")
        << QRect(100, 100, 150, 300) << 180 << QSize(200, 900) << QPoint(256, 0);
}

void tst_VTPopupPlace::beside()
{
    QFETCH(QRect, popup);
    QFETCH(int, top);
    QFETCH(QSize, size);
    const VTPopupPlace place(popup, QRect(0, 0, 1000, 800));
    QTEST(place.beside(top, size), "place");
}

QTEST_MAIN(tst_VTPopupPlace)
#include "tst_vtpopupplace.moc"
