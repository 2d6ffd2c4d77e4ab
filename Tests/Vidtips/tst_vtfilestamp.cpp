#include <Vidtips/VTFileStamp_p.h>

#include "IndexTest.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QStorageInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using Vidtips::VTFileStamp;

class tst_VTFileStamp : public IndexTest
{
    Q_OBJECT

private slots:
    void init();
    void stampsOfRegularFilesOnly_data();
    void stampsOfRegularFilesOnly();
    void equality_data();
    void equality();
    void settled_data();
    void settled();
    void youngFilesHaveNoSettledStamp();
    void filesSettle();
    void generatedFilesNeverSettle();

private:
    VTFileStamp at(const QString &path)
    {
        return VTFileStamp::at(QFile::encodeName(m_root + '/' + path).constData(), AT_FDCWD);
    }
};

static VTFileStamp settledOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? VTFileStamp::settledOf(file) : VTFileStamp();
}

void tst_VTFileStamp::init()
{
    makeFolder();
}

void tst_VTFileStamp::stampsOfRegularFilesOnly_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("hasStamp");
    QTest::newRow("a file") << "a.xml" << true;
    QTest::newRow("a link to it") << "link.xml" << true;
    QTest::newRow("a link to nothing") << "broken.xml" << false;
    QTest::newRow("nothing") << "absent.xml" << false;
    QTest::newRow("a folder") << "Tools.vidtips" << false;
    QTest::newRow("a pipe") << "pipe.xml" << false;
}

void tst_VTFileStamp::stampsOfRegularFilesOnly()
{
    QFETCH(QString, path);
    write("a.xml", "12345");
    QVERIFY(QFile::link("a.xml", m_root + "/link.xml"));
    QVERIFY(QFile::link("absent.xml", m_root + "/broken.xml"));
    QCOMPARE(mkfifo(QFile::encodeName(m_root + "/pipe.xml").constData(), 0600), 0);
    const VTFileStamp stamp = at(path);
    QTEST(!stamp.isNull(), "hasStamp");
    QCOMPARE(stamp.size, stamp.isNull() ? 0 : 5);
    const int folder = open(QFile::encodeName(m_root).constData(), O_RDONLY | O_DIRECTORY);
    QCOMPARE(VTFileStamp::at(QFile::encodeName(path).constData(), folder) == stamp, !stamp.isNull());
    close(folder);
}

void tst_VTFileStamp::equality_data()
{
    QTest::addColumn<quint64>("device");
    QTest::addColumn<quint64>("inode");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("modified");
    QTest::addColumn<qint64>("changed");
    QTest::addColumn<bool>("isEqual");
    QTest::newRow("the same") << quint64(1) << quint64(2) << qint64(3) << qint64(4) << qint64(5) << true;
    QTest::newRow("device") << quint64(9) << quint64(2) << qint64(3) << qint64(4) << qint64(5) << false;
    QTest::newRow("inode") << quint64(1) << quint64(9) << qint64(3) << qint64(4) << qint64(5) << false;
    QTest::newRow("size") << quint64(1) << quint64(2) << qint64(9) << qint64(4) << qint64(5) << false;
    QTest::newRow("modified") << quint64(1) << quint64(2) << qint64(3) << qint64(9) << qint64(5) << false;
    QTest::newRow("changed") << quint64(1) << quint64(2) << qint64(3) << qint64(4) << qint64(9) << false;
}

void tst_VTFileStamp::equality()
{
    QFETCH(quint64, device);
    QFETCH(quint64, inode);
    QFETCH(qint64, size);
    QFETCH(qint64, modified);
    QFETCH(qint64, changed);
    const VTFileStamp stamp{1, 2, 3, 4, 5};
    QTEST((VTFileStamp{device, inode, size, modified, changed} == stamp), "isEqual");
    QVERIFY(!(VTFileStamp() == VTFileStamp()));
}

void tst_VTFileStamp::settled_data()
{
    QTest::addColumn<qint64>("changed");
    QTest::addColumn<qint64>("age");
    QTest::addColumn<bool>("isSettled");
    constexpr qint64 time = 1700000000123456789;
    constexpr qint64 second = 1000000000;
    QTest::newRow("long ago") << time << 3600 * second << true;
    QTest::newRow("long enough") << time << VTFileStamp::settlingTime << true;
    QTest::newRow("not long enough") << time << VTFileStamp::settlingTime - 1 << false;
    QTest::newRow("just now") << time << qint64(0) << false;
    QTest::newRow("to come") << time << -3600 * second << false;
    QTest::newRow("whole seconds") << time / second * second << 3600 * second << false;
    QTest::newRow("whole milliseconds") << time / 1000000 * 1000000 << 3600 * second << false;
    QTest::newRow("never") << qint64(0) << time << false;
}

void tst_VTFileStamp::settled()
{
    QFETCH(qint64, changed);
    QFETCH(qint64, age);
    const VTFileStamp stamp{1, 2, 3, 4, changed};
    QTEST(stamp.isSettled(changed + age), "isSettled");
    QVERIFY(!VTFileStamp().isSettled(changed + age));
}

// The row that a machine in a hurry could miss: the file is as old as its look is late.
void tst_VTFileStamp::youngFilesHaveNoSettledStamp()
{
    const QString path = m_root + "/a.xml";
    bool isSettled = true;
    QElapsedTimer timer;
    do {
        timer.start();
        write("a.xml", "1");
        isSettled = !settledOf(path).isNull();
    } while (timer.nsecsElapsed() >= VTFileStamp::settlingTime);
    QVERIFY(!isSettled);
}

void tst_VTFileStamp::filesSettle()
{
    const QStringList exact{"ext4", "xfs", "btrfs", "f2fs", "tmpfs", "overlay"};
    const bool isExact = exact.contains(QString::fromLatin1(QStorageInfo(m_root).fileSystemType()));
    const QString path = write("a.xml", "1");
    QTRY_VERIFY_WITH_TIMEOUT(isExact == (settledOf(path) == at("a.xml")), 10000);
}

void tst_VTFileStamp::generatedFilesNeverSettle()
{
    QVERIFY(QFile::exists("/proc/self/status"));
    QVERIFY(settledOf("/proc/self/status").isNull());
}

QTEST_GUILESS_MAIN(tst_VTFileStamp)
#include "tst_vtfilestamp.moc"
