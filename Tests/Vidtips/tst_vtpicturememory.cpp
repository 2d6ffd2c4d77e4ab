#include <Vidtips/VTPictureMemory_p.h>

#include <QtCore/QFile>
#include <QtTest/QTest>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include <unistd.h>

using namespace Vidtips;

class tst_VTPictureMemory : public QObject
{
    Q_OBJECT

private slots:
    void allocated_data();
    void allocated();
    void tooMuch();
    void nothing();
    void goesBackToTheSystem();
};

void tst_VTPictureMemory::allocated_data()
{
    QTest::addColumn<qulonglong>("bytes");
    for (const std::size_t bytes : {std::size_t(1), VTPictureMemory::leastPages - 1,
                                    VTPictureMemory::leastPages, std::size_t(1280 * 720 * 4 + 1)})
        QTest::addRow("%zu bytes", bytes) << qulonglong(bytes);
}

void tst_VTPictureMemory::allocated()
{
    QFETCH(qulonglong, bytes);
    auto *const first = static_cast<char *>(VTPictureMemory::allocate(bytes));
    auto *const second = static_cast<char *>(VTPictureMemory::allocate(bytes));
    QVERIFY(first && second);
    std::memset(first, 1, bytes);
    std::memset(second, 2, bytes);
    QCOMPARE(first[0], char(1));
    QCOMPARE(first[bytes - 1], char(1));
    VTPictureMemory::release(first, bytes);
    QCOMPARE(second[0], char(2));
    QCOMPARE(second[bytes - 1], char(2));
    VTPictureMemory::release(second, bytes);
}

void tst_VTPictureMemory::tooMuch()
{
    constexpr std::size_t bytes = std::numeric_limits<std::size_t>::max() / 4;
    QVERIFY(!VTPictureMemory::allocate(bytes));
}

void tst_VTPictureMemory::nothing()
{
    VTPictureMemory::release(nullptr, 1);
    VTPictureMemory::release(nullptr, VTPictureMemory::leastPages);
}

static qint64 residentBytes()
{
    QFile file("/proc/self/statm");
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

// Between the pictures lies what outlives them, and the allocator has seen larger pieces come and go, which
// has it keep such for later.
void tst_VTPictureMemory::goesBackToTheSystem()
{
    constexpr std::size_t bytes = 320 * 240 * 4;
    constexpr int count = 100;
    void *const larger = std::malloc(4 * bytes);
    QVERIFY(larger);
    std::memset(larger, 1, 4 * bytes);
    std::free(larger);
    std::vector<void *> pictures;
    std::vector<std::vector<char>> kept;
    pictures.reserve(count);
    kept.reserve(count);
    const qint64 before = residentBytes();
    for (int i = 0; i < count; ++i) {
        pictures.push_back(VTPictureMemory::allocate(bytes));
        QVERIFY(pictures.back());
        std::memset(pictures.back(), i, bytes);
        kept.emplace_back(5000, char(i));
    }
    const qint64 most = residentBytes() - before;
    QVERIFY2(most > qint64(count * bytes * 9 / 10), qPrintable(QString::number(most)));
    for (void *picture : pictures)
        VTPictureMemory::release(picture, bytes);
    const qint64 left = residentBytes() - before;
    QVERIFY2(!VTPictureMemory::hasPages || left < most / 10,
             qPrintable(QStringLiteral("%1 of %2 are left").arg(left).arg(most)));
}

QTEST_APPLESS_MAIN(tst_VTPictureMemory)

#include "tst_vtpicturememory.moc"
