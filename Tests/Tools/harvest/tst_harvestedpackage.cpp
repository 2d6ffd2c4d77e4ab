#include "TestPackage.h"
#include "harvest/HarvestedPackage.h"

namespace {

const QByteArray goneMark = "<!-- harvest: the program no longer has this command -->\n";

HarvestedCommand command(const QString &key)
{
    HarvestedCommand command;
    command.key = key;
    command.hasUsableKey = true;
    command.title = key.toUpper();
    command.group = "Draw";
    return command;
}

QVector<HarvestedCommand> commands(const QStringList &keys)
{
    QVector<HarvestedCommand> commands;
    for (const QString &key : keys)
        commands << command(key);
    return commands;
}

} // namespace

/** Brings a package up to date with commands that no program has to be started for. */
class tst_HarvestedPackage : public QObject
{
    Q_OBJECT

private slots:
    void marksAndAddsInOneFile_data();
    void marksAndAddsInOneFile();
};

void tst_HarvestedPackage::marksAndAddsInOneFile_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("whole path") << "%1/Data";
    QTest::newRow("path from here") << "Data";
    QTest::newRow("path with dots") << "%1/Data/../Data";
    QTest::newRow("link") << "%1/link";
}

// However the folder is named, a file is one file.
void tst_HarvestedPackage::marksAndAddsInOneFile()
{
    QFETCH(QString, folder);
    const TestPackages packages;
    QVERIFY(QDir(packages.path()).mkdir("Data"));
    QVERIFY(QFile::link(packages.filePath("Data"), packages.filePath("link")));
    QVERIFY(QDir::setCurrent(packages.path()));
    if (folder.contains('%'))
        folder = folder.arg(packages.path());
    HarvestedPackage first(folder, "Foreign", "en_US");
    QCOMPARE(first.update(commands({"a", "b"})), QString());
    HarvestedPackage second(folder, "Foreign", "en_US");
    QCOMPARE(second.update(commands({"b", "c"})), QString());
    QCOMPARE(second.gone(), QStringList({"a"}));
    QCOMPARE(second.added(), QStringList({"c"}));
    QCOMPARE(TestPackages::read(packages.filePath("Data/Foreign.vidtips/Control/Draw.en_US.xml")),
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vidtips locale=\"en_US\">\n  " + goneMark
                 + "  <vidtip key=\"a\" title=\"A\"/>\n"
                   "  <vidtip key=\"b\" title=\"B\"/>\n"
                   "  <vidtip key=\"c\" title=\"C\"/>\n"
                   "</vidtips>\n");
}

QTEST_GUILESS_MAIN(tst_HarvestedPackage)

#include "tst_harvestedpackage.moc"
