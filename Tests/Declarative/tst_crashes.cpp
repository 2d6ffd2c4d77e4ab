#include "ProcessorTime.h"
#include "QmlScene.h"

#include <QtCore/QDirIterator>

/** Scenes that once ended or stopped their host: each is loaded, clicked, typed at and unloaded in time. */
class CrashesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scenes_data();
    void scenes();
};

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int longest = 60000; // milliseconds; sanitizers take many times as long
#else
constexpr int longest = 10000;
#endif

void step(QDeclarativeView *view)
{
    for (int i = 0; i < 5; ++i) {
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(20, 20));
        QCoreApplication::processEvents();
    }
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(view->viewport(), Qt::Key_A);
        QCoreApplication::processEvents();
    }
}

} // namespace

void CrashesTest::scenes_data()
{
    QTest::addColumn<QUrl>("source");
    QDirIterator scenes(QFINDTESTDATA("crashes"), {QStringLiteral("*.qml")});
    while (scenes.hasNext()) {
        const QUrl source = QUrl::fromLocalFile(scenes.next());
        QTest::newRow(qPrintable(source.fileName())) << source;
    }
}

void CrashesTest::scenes()
{
    QFETCH(QUrl, source);
    const double before = processorTime();
    {
        QDeclarativeView view;
        view.engine()->setOutputWarningsToStandardError(false);
        view.setSource(source);
        QCOMPARE(view.status(), QDeclarativeView::Ready);
        view.resize(400, 400);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        step(&view);
        view.setSource(QUrl());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    const double time = processorTime() - before;
    QVERIFY2(time < longest, qPrintable(QString::number(time)));
}

QTEST_MAIN(CrashesTest)
#include "tst_crashes.moc"
