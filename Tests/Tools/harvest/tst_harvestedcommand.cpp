#include "harvest/HarvestedCommand.h"
#include "harvest/HarvestedPackage.h"

#include "TestPackage.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

namespace {

/** Reads @p objects as the tool's module has written them. */
QVector<HarvestedCommand> commandsOf(const QVector<QJsonObject> &objects)
{
    const TestPackages folder;
    QJsonArray array;
    for (const QJsonObject &object : objects)
        array << object;
    folder.write("commands.json", QJsonDocument(array).toJson());
    QVector<HarvestedCommand> commands;
    return HarvestedCommand::read(folder.path(), false, commands).isEmpty() ? commands
                                                                            : QVector<HarvestedCommand>();
}

QJsonObject named(const QString &key, const QString &title = "A title")
{
    return {{"key", key}, {"source", "name"}, {"title", title}, {"group", "Menu"}};
}

} // namespace

/** Reads commands that programs have, among them odd ones. */
class tst_HarvestedCommand : public QObject
{
    Q_OBJECT

private slots:
    void keysThatCannotBeWritten_data();
    void keysThatCannotBeWritten();
    void keysThatCanBeWritten_data();
    void keysThatCanBeWritten();
    void textsLoseWhatXmlCannotHold();
    void groupsOfAnyLength();
};

void tst_HarvestedCommand::keysThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("shown");
    const QString control = "holds a control character";
    QTest::newRow("U+0000") << QString("a%1b").arg(QChar(0)) << control << "a\uFFFDb";
    QTest::newRow("U+0001") << QString("a\u0001b") << control << "a\uFFFDb";
    QTest::newRow("a line end") << "a\nb" << control << "a\uFFFDb";
    QTest::newRow("U+FFFE") << QString(QChar(0xfffe)) << control << "\uFFFD";
    QTest::newRow("U+FFFF") << QString(QChar(0xffff)) << control << "\uFFFD";
    QTest::newRow("too long") << QString(201, 'k') << "is longer than 200 characters"
                              << QString(40, 'k') + "...";
}

// One such command is left out, and the others are written.
void tst_HarvestedCommand::keysThatCannotBeWritten()
{
    QFETCH(QString, key);
    const QVector<HarvestedCommand> commands = commandsOf({named("before"), named(key), named("after")});
    QCOMPARE(commands.size(), 3);
    QVERIFY(!commands.at(1).hasUsableKey);
    QTEST(commands.at(1).keyProblem, "problem");
    QTEST(commands.at(1).shownKey(), "shown");
    const TestPackages folder;
    HarvestedPackage package(folder.path(), "Odd", "en_US");
    QCOMPARE(package.update(commands), QString());
    QCOMPARE(package.added(), QStringList({"before", "after"}));
    const QByteArray written = TestPackages::read(folder.filePath("Odd.vidtips/Control/Menu.en_US.xml"));
    QCOMPARE(written.count("<vidtip "), 2);
}

void tst_HarvestedCommand::keysThatCanBeWritten_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("markup") << "<a b=\"c\">&";
    QTest::newRow("blank") << "a b";
    QTest::newRow("beyond 16 bits") << QString::fromUtf8("\xf0\x9f\x96\x8c");
    QTest::newRow("just not too long") << QString(200, 'k');
}

void tst_HarvestedCommand::keysThatCanBeWritten()
{
    QFETCH(QString, key);
    const QVector<HarvestedCommand> commands = commandsOf({named(key)});
    QVERIFY(commands.constFirst().hasUsableKey);
    QCOMPARE(commands.constFirst().keyProblem, QString());
    const TestPackages folder;
    QCOMPARE(HarvestedPackage(folder.path(), "Odd", "en_US").update(commands), QString());
    HarvestedPackage again(folder.path(), "Odd", "en_US");
    QCOMPARE(again.update(commands), QString());
    QCOMPARE(again.kept(), 1);
}

void tst_HarvestedCommand::textsLoseWhatXmlCannotHold()
{
    const QString odd = QString("\u0001One%1,\ttwo\n\uffff").arg(QChar(0));
    const QVector<HarvestedCommand> commands = commandsOf({named("key", odd)});
    QCOMPARE(commands.constFirst().title, QString("One,\ttwo\n"));
    QVERIFY(commands.constFirst().hasUsableKey);
}

void tst_HarvestedCommand::groupsOfAnyLength()
{
    QJsonObject object = named("key");
    object.insert("group", QString(300, 'g'));
    const TestPackages folder;
    HarvestedPackage package(folder.path(), "Odd", "en_US");
    QCOMPARE(package.update(commandsOf({object})), QString());
    QVERIFY(QFileInfo::exists(folder.filePath("Odd.vidtips/Control/" + QString(200, 'g') + ".en_US.xml")));
}

QTEST_GUILESS_MAIN(tst_HarvestedCommand)
#include "tst_harvestedcommand.moc"
