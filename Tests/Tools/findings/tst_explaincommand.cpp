#include "ToolRefusal.h"

#include <QtTest/QtTest>

/** Runs the command that explains findings. */
class tst_ExplainCommand : public QObject
{
    Q_OBJECT

private slots:
    void explainsEveryCode();
    void refusesBadUse_data();
    void refusesBadUse();
};

void tst_ExplainCommand::explainsEveryCode()
{
    const QJsonArray kinds = ToolRun({"explain", "--json"}).json().array();
    const QString list = ToolRun({"explain"}).output;
    QCOMPARE(list.count('\n'), kinds.size());
    for (const QJsonValue value : kinds) {
        const QJsonObject kind = value.toObject();
        const QString code = kind["code"].toString();
        QVERIFY2(QRegularExpression("^VT[1-9]\\d\\d$").match(code).hasMatch(), qPrintable(code));
        for (const char *part : {"severity", "title", "why", "mend", "example"})
            QVERIFY2(!kind[part].toString().isEmpty(), qPrintable(code + ' ' + part));
        QVERIFY(list.contains(code + "  " + kind["severity"].toString()));
    }
    const ToolRun one({"explain", "vt303"});
    QCOMPARE(one.exitCode, 0);
    QVERIFY(one.output.startsWith("VT303  error"));
    for (const char *heading : {"\nWHY IT MATTERS\n", "\nHOW TO MEND IT\n", "\nEXAMPLE\n"})
        QVERIFY2(one.output.contains(heading), heading);
}

void tst_ExplainCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const QString &error) {
        QTest::newRow(name) << arguments << error;
    };
    row("unknown code", {"explain", "VT303", "VT999"},
        "there is no code \"VT999\"; \"vidtips explain\" lists all");
}

void tst_ExplainCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    compareRefusal(arguments, error);
}

QTEST_GUILESS_MAIN(tst_ExplainCommand)

#include "tst_explaincommand.moc"
