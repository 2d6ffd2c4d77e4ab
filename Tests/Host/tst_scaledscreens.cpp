#include "OuterScreen.h"
#include "RealPointer.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <private/qhighdpiscaling_p.h>

using namespace Vidtips;

namespace {

const QColor tipColor("#2060c0");
const QColor rimColor("#c02060");

/** A tip that is as high as it is told, with a rim of one pixel around its view and a picture of two colours.
 */
const char userInterface[] = R"(
import QtQuick 1.1
Rectangle {
    property QtObject tip: vidtip
    width: 120
    height: 80
    color: "#c02060"
    Rectangle { x: 1; y: 1; width: parent.width - 2; height: parent.height - 2; color: "#2060c0" }
    Image { x: 20; y: 20; source: "../stripes.png" }
}
)";

/** Notes the sizes that a widget takes one after another. */
class SizeLog : public QObject
{
public:
    explicit SizeLog(QWidget *watched) { watched->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            sizes.append(static_cast<QResizeEvent *>(event)->size());
        return false;
    }

    QList<QSize> sizes;
};

QImage stripes()
{
    QImage image(32, 32, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, x % 2 ? Qt::white : Qt::black);
    }
    return image;
}

} // namespace

/** Tips on screens of another scale than 1, measured in the X server's pixels. */
class tst_ScaledScreens : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowIsAsLargeAsItsContent();
    void paintsToTheLastPixel();
    void picturesAreSmoothed();
    void standsOnTheScreenOfThePointer();
    void keptTipIsDraggedAcross();

private:
    bool show(const QPoint &position);
    QSize pixels() const;
    QSize expectedPixels() const;
    VTWidget *tip() const { return m_session->window(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<QWidget> m_window;
};

void tst_ScaledScreens::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Plant", "tips.xml", "<vidtip key=\"pump\" title=\"Pump\"/>\n");
    m_packages->write("Plant.vidtips/ui/VidtipsUI.qml", userInterface);
    QVERIFY(stripes().save(m_packages->path() + "/Plant.vidtips/stripes.png"));
    VTContext settings;
    settings.set(IdleInterval, 60000);
    settings.set(ShowDuration, 0);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    m_window = std::make_unique<QWidget>();
    m_window->setGeometry(
        QRect(QGuiApplication::primaryScreen()->geometry().topLeft() + QPoint(20, 40), QSize(200, 120)));
    m_window->show();
    QVERIFY(RealPointer::waitForWindow(m_window.get()));
}

void tst_ScaledScreens::cleanup()
{
    m_session.reset();
    m_window.reset();
    m_packages.reset();
}

bool tst_ScaledScreens::show(const QPoint &position)
{
    return m_session->host->show("pump", position, m_window.get())
        && QTest::qWaitFor([&] { return tip()->isVisible() && pixels() == expectedPixels(); },
                           RealPointer::patience);
}

// As the X server has them.
QSize tst_ScaledScreens::pixels() const
{
    return OuterScreen::sizeOf(tip()->winId());
}

QSize tst_ScaledScreens::expectedPixels() const
{
    return (QSizeF(tip()->view()->size() + QSize(1, 1)) * tip()->devicePixelRatioF()).toSize();
}

void tst_ScaledScreens::windowIsAsLargeAsItsContent()
{
    QVERIFY(show({60, 60}));
    SizeLog log(tip()->view());
    for (int height = 81; height < 101; ++height) {
        log.sizes.clear();
        tip()->view()->rootObject()->setProperty("height", height);
        QTRY_COMPARE_WITH_TIMEOUT(tip()->size(), QSize(121, height + 1), RealPointer::patience);
        QTRY_COMPARE_WITH_TIMEOUT(pixels(), expectedPixels(), RealPointer::patience);
        QVERIFY(RealPointer::passEvents());
        // Rounding there and back must not set off another change.
        QCOMPARE(log.sizes, QList<QSize>{QSize(120, height)});
        QCOMPARE(tip()->size(), QSize(121, height + 1));
        QCOMPARE(pixels(), expectedPixels());
    }
}

void tst_ScaledScreens::paintsToTheLastPixel()
{
    QVERIFY(show({60, 60}));
    const qreal scale = tip()->devicePixelRatioF();
    for (int height = 80; height < 90; ++height) {
        tip()->view()->rootObject()->setProperty("height", height);
        const QSize rim = (QSizeF(120, height) * scale).toSize();
        QTRY_COMPARE_WITH_TIMEOUT(OuterScreen::find(rimColor).size(), rim, RealPointer::patience);
        const int before = qRound(scale), after = rim.height() - qRound((height - 1) * scale);
        const auto inside = [&] { return OuterScreen::find(tipColor).height(); };
        QTRY_COMPARE_WITH_TIMEOUT(inside(), rim.height() - before - after, RealPointer::patience);
    }
    OuterScreen::picture("scaled " + QString::number(scale));
}

void tst_ScaledScreens::picturesAreSmoothed()
{
    QVERIFY(show({60, 60}));
    const qreal scale = tip()->devicePixelRatioF();
    QTRY_VERIFY_WITH_TIMEOUT(!OuterScreen::find(rimColor).isNull(), RealPointer::patience);
    const QPoint corner = OuterScreen::find(rimColor).topLeft();
    const QRect middle(corner + (QPointF(26, 26) * scale).toPoint(), (QSizeF(20, 20) * scale).toSize());
    const auto isMixed = [&] {
        const QImage picture = OuterScreen::grab().copy(middle);
        for (int x = 0; x < picture.width(); ++x) {
            const int gray = qGray(picture.pixel(x, picture.height() / 2));
            if (gray > 40 && gray < 215)
                return true;
        }
        return false;
    };
    QTRY_COMPARE_WITH_TIMEOUT(isMixed(), scale != 1, RealPointer::patience);
}

void tst_ScaledScreens::standsOnTheScreenOfThePointer()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *const screen : screens) {
        m_session->host->hide();
        QVERIFY(show(screen->geometry().center()));
        QTRY_COMPARE_WITH_TIMEOUT(tip()->windowHandle()->screen(), screen, RealPointer::patience);
        QTRY_COMPARE_WITH_TIMEOUT(pixels(), (QSizeF(121, 81) * screen->devicePixelRatio()).toSize(),
                                  RealPointer::patience);
        QVERIFY(screen->geometry().contains(tip()->geometry()));
        const QSize painted = (QSizeF(120, 80) * screen->devicePixelRatio()).toSize();
        QTRY_COMPARE_WITH_TIMEOUT(OuterScreen::find(rimColor).size(), painted, RealPointer::patience);
        OuterScreen::picture("screen " + screen->name().section('-', -1));
    }
}

void tst_ScaledScreens::keptTipIsDraggedAcross()
{
    QVERIFY(show({60, 60}));
    // Only what is seen can be kept.
    QTRY_VERIFY_WITH_TIMEOUT(!OuterScreen::find(rimColor).isNull(), RealPointer::patience);
    const QPointer<VTWidget> kept = tip();
    kept->view()->setReserved(true);
    QTRY_VERIFY_WITH_TIMEOUT(kept->isVisible() && tip() != kept, RealPointer::patience);
    QVERIFY(RealPointer::waitForWindow(kept));
    QTRY_COMPARE_WITH_TIMEOUT(OuterScreen::find(rimColor).size(),
                              (QSizeF(120, 80) * kept->devicePixelRatioF()).toSize(), RealPointer::patience);
    // Its title bar may come later than what is under it.
    QTRY_VERIFY_WITH_TIMEOUT(kept->frameGeometry().top() < kept->geometry().top(), RealPointer::patience);
    SizeLog log(kept->view());
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (QScreen *const screen : {screens.constLast(), screens.constFirst()}) {
        const QRect there = OuterScreen::find(rimColor);
        const QRect to = QHighDpi::toNativePixels(screen->geometry(), screen);
        const QPoint bar(there.left() + 40, there.top() - 8);
        QVERIFY(RealPointer::xdotool({"mousemove", QString::number(bar.x()), QString::number(bar.y())}));
        QVERIFY(RealPointer::xdotool({"mousedown", "1"}));
        QVERIFY(RealPointer::moveTo(bar + QPoint(20, 20)));
        QTRY_VERIFY_WITH_TIMEOUT(OuterScreen::find(rimColor).topLeft() != there.topLeft(),
                                 RealPointer::patience);
        QVERIFY(RealPointer::moveTo(to.topLeft() + QPoint(120, 120)));
        QVERIFY(RealPointer::xdotool({"mouseup", "1"}));
        const QSize painted = (QSizeF(120, 80) * screen->devicePixelRatio()).toSize();
        QTRY_COMPARE_WITH_TIMEOUT(OuterScreen::find(rimColor).size(), painted, RealPointer::patience);
        QCOMPARE(kept->view()->size(), QSize(120, 80));
        QVERIFY(kept->isVisible());
        QTRY_COMPARE_WITH_TIMEOUT(OuterScreen::sizeOf(kept->winId()),
                                  (QSizeF(121, 81) * screen->devicePixelRatio()).toSize(),
                                  RealPointer::patience);
        OuterScreen::picture("dragged to " + screen->name().section('-', -1));
    }
    QCOMPARE(log.sizes, QList<QSize>());
}

QTEST_MAIN(tst_ScaledScreens)
#include "tst_scaledscreens.moc"
