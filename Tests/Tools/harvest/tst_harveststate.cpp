#include "harvest/HarvestState.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

class tst_HarvestState : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void nothingWasHarvestedAtFirst();
    void keepsWhatTheProgramSaid();
    void otherLanguagesStay();
    void refusesWhatItHasNotWritten_data();
    void refusesWhatItHasNotWritten();
    void tellsWhatCannotBeWritten();

private:
    QString path() const { return package->filePath("harvest.json"); }
    static HarvestedCommand command(const QString &key, const QString &title)
    {
        HarvestedCommand command;
        command.key = key;
        command.title = title;
        command.summary = title + " summary";
        command.shortcut = "Ctrl+X";
        return command;
    }

    QScopedPointer<QTemporaryDir> package;
};

void tst_HarvestState::init()
{
    package.reset(new QTemporaryDir);
}

void tst_HarvestState::nothingWasHarvestedAtFirst()
{
    HarvestState state(package->path(), "en");
    QCOMPARE(state.read(), QString());
    QCOMPARE(state.keys(), QStringList());
    bool isKnown = true;
    QCOMPARE(state.command("cut", &isKnown).key, QStringLiteral("cut"));
    QVERIFY(!isKnown);
}

void tst_HarvestState::keepsWhatTheProgramSaid()
{
    HarvestState state(package->path(), "en");
    state.set(command("cut", "Old"));
    state.set(command("a b", "Other"));
    state.set(command("cut", "C\u00fct"));
    QCOMPARE(state.write(), QString());
    HarvestState next(package->path(), "en");
    QCOMPARE(next.read(), QString());
    QCOMPARE(next.keys(), QStringList({"a b", "cut"}));
    bool isKnown = false;
    const HarvestedCommand cut = next.command("cut", &isKnown);
    QVERIFY(isKnown);
    QCOMPARE(cut.key, QStringLiteral("cut"));
    QCOMPARE(cut.title, QString("C\u00fct"));
    QCOMPARE(cut.summary, QString("C\u00fct summary"));
    QCOMPARE(cut.shortcut, QStringLiteral("Ctrl+X"));
}

void tst_HarvestState::otherLanguagesStay()
{
    HarvestState english(package->path(), "en");
    english.set(command("cut", "Cut"));
    QCOMPARE(english.write(), QString());
    HarvestState german(package->path(), "de");
    QCOMPARE(german.read(), QString());
    QVERIFY(german.keys().isEmpty());
    german.set(command("copy", "Kopieren"));
    QCOMPARE(german.write(), QString());
    HarvestState again(package->path(), "en");
    QCOMPARE(again.read(), QString());
    QCOMPARE(again.keys(), QStringList("cut"));
}

void tst_HarvestState::refusesWhatItHasNotWritten_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << "illegal value";
    QTest::newRow("cut off") << QByteArray("{\"en\": {") << "unterminated object";
    QTest::newRow("a list") << QByteArray("[]") << "it holds no object";
}

void tst_HarvestState::refusesWhatItHasNotWritten()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    HarvestState state(package->path(), "en");
    QCOMPARE(state.read(), QString("cannot read %1: %2").arg(path(), reason));
    QVERIFY(state.keys().isEmpty());
}

void tst_HarvestState::tellsWhatCannotBeWritten()
{
    const HarvestState state(package->filePath("none"), "en");
    const QString problem = state.write();
    QVERIFY2(problem.startsWith("cannot write " + package->filePath("none/harvest.json: ")),
             qPrintable(problem));
}

QTEST_GUILESS_MAIN(tst_HarvestState)
#include "tst_harveststate.moc"
