#include "Mistakes.h"
#include "ToolRun.h"

#include <QtTest/QtTest>

/** Makes an author's mistakes one by one, and reads what check and preview say of each. */
class tst_Mistakes : public QObject
{
    Q_OBJECT

private slots:
    void saysNothingOfWhatIsRight();
    void check_data();
    void check();
    void preview_data();
    void preview();
};

namespace {

const QStringList screenshot{"preview", "--delay", "0", "--screenshot", "tip.png", "tree", "."};

QString withoutSummary(const QString &output)
{
    return output.left(output.lastIndexOf('\n', output.size() - 2)).trimmed();
}

} // namespace

void tst_Mistakes::saysNothingOfWhatIsRight()
{
    const CheckPackages packages(Garden::with({}));
    QCOMPARE(ToolRun({"check", "."}, packages.path()).output,
             QString("2 packages, 2 control files: nothing found\n"));
    const ToolRun preview(screenshot, packages.path());
    QCOMPARE(preview.errors, QString());
    QCOMPARE(preview.exitCode, 0);
}

void tst_Mistakes::check_data()
{
    QTest::addColumn<Mistake>("mistake");
    for (const Mistake &mistake : allMistakes())
        QTest::newRow(mistake.name) << mistake;
}

void tst_Mistakes::check()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    const ToolRun run({"check", "."}, packages.path());
    QCOMPARE(withoutSummary(run.output), mistake.check);
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 1);
}

void tst_Mistakes::preview_data()
{
    check_data();
}

void tst_Mistakes::preview()
{
    QFETCH(Mistake, mistake);
    const CheckPackages packages(Garden::with(mistake.files));
    const ToolRun run(screenshot, packages.path());
    QCOMPARE(run.errors.trimmed(), mistake.preview);
    const int code = mistake.preview.contains("vidtips: ") ? 2 : mistake.preview.isEmpty() ? 0 : 1;
    QCOMPARE(run.exitCode, code);
}

QTEST_GUILESS_MAIN(tst_Mistakes)

#include "tst_mistakes.moc"
