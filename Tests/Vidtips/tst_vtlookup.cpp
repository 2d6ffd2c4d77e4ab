#include <Vidtips/VTLookUp_p.h>

#include "IndexTest.h"

#include <fcntl.h>

using Vidtips::VTFileStamp;
using Vidtips::VTLookUp;

class tst_VTLookUp : public IndexTest
{
    Q_OBJECT

private slots:
    void init();
    void eachHasANumberOfItsOwn();
    void oneInsideAnotherContinuesIt();
    void stampsAreThoseOfTheFiles();
    void foldersMayBeReplaced();
};

static VTFileStamp stampAt(const QByteArray &path)
{
    return VTFileStamp::at(path.constData(), AT_FDCWD);
}

void tst_VTLookUp::init()
{
    makeFolder();
}

void tst_VTLookUp::eachHasANumberOfItsOwn()
{
    quint64 before = 0;
    for (int i = 0; i < 3; ++i) {
        const VTLookUp lookUp;
        QVERIFY(lookUp.number() != 0 && lookUp.number() != before);
        before = lookUp.number();
    }
}

void tst_VTLookUp::oneInsideAnotherContinuesIt()
{
    const VTLookUp outer;
    for (int i = 0; i < 2; ++i)
        QCOMPARE(VTLookUp().number(), outer.number());
}

void tst_VTLookUp::stampsAreThoseOfTheFiles()
{
    QByteArrayList paths;
    for (const char *name :
         {"a/1.xml", "a/2.xml", "a/3.xml", "a/b/1.xml", "a/b/2.xml", "a/4.xml", "ab/1.xml", "5.xml"})
        paths << QFile::encodeName(write(name, name));
    paths << QFile::encodeName(m_root + "/a/absent.xml") << QFile::encodeName(m_root + "/absent/1.xml")
          << QFile::encodeName(m_root + "/absent/2.xml") << paths.first() << "/1.xml"
          << "relative.xml"
          << "other.xml" << QByteArray();
    VTLookUp lookUp;
    for (const QByteArray &path : qAsConst(paths)) {
        const VTFileStamp expected = stampAt(path);
        const VTFileStamp stamp = lookUp.stampOf(path);
        QVERIFY2(stamp.isNull() == expected.isNull() && (stamp.isNull() || stamp == expected),
                 path.constData());
    }
}

void tst_VTLookUp::foldersMayBeReplaced()
{
    const QByteArray first = QFile::encodeName(write("a/1.xml", "1"));
    const QByteArray second = QFile::encodeName(write("a/2.xml", "1"));
    write("b/1.xml", "2");
    write("b/2.xml", "2");
    {
        VTLookUp lookUp;
        for (const QByteArray &path : {first, second})
            QVERIFY(lookUp.stampOf(path) == stampAt(path));
    }
    const VTFileStamp old = stampAt(second);
    QVERIFY(QDir().rename(m_root + "/a", m_root + "/c") && QDir().rename(m_root + "/b", m_root + "/a"));
    VTLookUp lookUp;
    for (const QByteArray &path : {first, second})
        QVERIFY(lookUp.stampOf(path) == stampAt(path));
    QVERIFY(!(lookUp.stampOf(second) == old));
}

QTEST_GUILESS_MAIN(tst_VTLookUp)
#include "tst_vtlookup.moc"
