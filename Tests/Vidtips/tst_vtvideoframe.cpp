#include <Vidtips/VTVideoFrame.h>

#include <QtTest/QTest>

#include <limits>

using Vidtips::VTVideoFrame;

class tst_VTVideoFrame : public QObject
{
    Q_OBJECT

private slots:
    void defaultFrameIsNull();
    void imageIsShared();
    void unsignedTimeBecomesDouble_data();
    void unsignedTimeBecomesDouble();
    void sizedFrameHasThatSize();
    void impossibleSizeGivesNullFrame_data();
    void impossibleSizeGivesNullFrame();
    void copyAndAssignmentShareImageAndCopyTime();
    void writingDetaches();
    void isDestroyedThroughItsBase();
};

namespace {
QImage image()
{
    QImage made(4, 3, QImage::Format_RGB32);
    made.fill(0xFF102030);
    return made;
}
} // namespace

void tst_VTVideoFrame::defaultFrameIsNull()
{
    const VTVideoFrame frame;
    QVERIFY(frame.isNull());
    QCOMPARE(frame.pts(), 0.0);
}

void tst_VTVideoFrame::imageIsShared()
{
    const QImage original = image();
    const VTVideoFrame frame(original, 40);
    QCOMPARE(frame.pts(), 40.0);
    QCOMPARE(frame.constBits(), original.constBits());
}

void tst_VTVideoFrame::unsignedTimeBecomesDouble_data()
{
    QTest::addColumn<quint64>("given");
    QTest::addColumn<double>("expected");
    QTest::newRow("zero") << quint64(0) << 0.0;
    QTest::newRow("forty") << quint64(40) << 40.0;
    QTest::newRow("largest") << std::numeric_limits<quint64>::max() << 18446744073709551616.0;
}

void tst_VTVideoFrame::unsignedTimeBecomesDouble()
{
    QFETCH(quint64, given);
    QFETCH(double, expected);
    QCOMPARE(VTVideoFrame(image(), given).pts(), expected);
    QCOMPARE(VTVideoFrame(2, 2, QImage::Format_RGB32, given).pts(), expected);
}

void tst_VTVideoFrame::sizedFrameHasThatSize()
{
    const VTVideoFrame frame(7, 5, QImage::Format_ARGB32, 0);
    QCOMPARE(frame.size(), QSize(7, 5));
    QCOMPARE(frame.format(), QImage::Format_ARGB32);
}

void tst_VTVideoFrame::impossibleSizeGivesNullFrame_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("empty") << QSize(0, 0);
    QTest::newRow("negative") << QSize(-1, 5);
    QTest::newRow("absurd") << QSize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
}

void tst_VTVideoFrame::impossibleSizeGivesNullFrame()
{
    QFETCH(QSize, size);
    QVERIFY(VTVideoFrame(size.width(), size.height(), QImage::Format_RGB32, 1).isNull());
}

void tst_VTVideoFrame::copyAndAssignmentShareImageAndCopyTime()
{
    VTVideoFrame original(image(), 0);
    original.setPts(1.25);
    const VTVideoFrame copy(original);
    VTVideoFrame assigned;
    assigned = original;
    for (const VTVideoFrame &frame : {copy, assigned}) {
        QCOMPARE(frame.pts(), 1.25);
        QCOMPARE(frame.constBits(), original.constBits());
    }
    VTVideoFrame &alias = assigned;
    assigned = alias;
    QCOMPARE(assigned.pts(), 1.25);
    QVERIFY(!assigned.isNull());
}

void tst_VTVideoFrame::writingDetaches()
{
    VTVideoFrame original(image(), 0);
    const VTVideoFrame copy(original);
    original.setPts(3.0);
    original.fill(0xFF000000);
    QCOMPARE(copy.pts(), 0.0);
    QCOMPARE(copy.pixel(1, 1), 0xFF102030);
}

void tst_VTVideoFrame::isDestroyedThroughItsBase()
{
    const std::unique_ptr<QImage> frame(new VTVideoFrame(image(), 1));
    QCOMPARE(frame->size(), QSize(4, 3));
    QVERIFY(dynamic_cast<VTVideoFrame *>(frame.get()));
}

QTEST_GUILESS_MAIN(tst_VTVideoFrame)
#include "tst_vtvideoframe.moc"
