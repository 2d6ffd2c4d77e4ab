#include "TestPackage.h"
#include "ToolRun.h"

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace {

QStringList matches(const QString &text, const char *pattern)
{
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    QStringList found;
    auto match = expression.globalMatch(text);
    while (match.hasNext())
        found << match.next().captured(1);
    return found;
}

} // namespace

/** Has bash complete the tool's command lines. */
class tst_Completion : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void knowsEveryCommand();
    void knowsEveryOption();
    void completes_data();
    void completes();

private:
    QStringList completed(const QStringList &words);

    TestPackages m_packages;
};

void tst_Completion::initTestCase()
{
    m_packages.writeControl("Tools", "de.xml",
                            "<vidtip key=\"draw.line\" title=\"Linie\"/><vidtip key=\"draw arc\"/>",
                            "locale=\"de_DE\"");
    m_packages.writeControl("More", "en.xml", "<vidtip key=\"other\"/>", "locale=\"is_IS\"");
    m_packages.write("plain/file.txt", "");
}

// What readline does: the words so far, the last of them unfinished.
QStringList tst_Completion::completed(const QStringList &words)
{
    QProcess shell;
    shell.setWorkingDirectory(m_packages.path());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", QFileInfo(ToolRun::tool()).path() + ':' + environment.value("PATH"));
    shell.setProcessEnvironment(environment);
    shell.start("bash",
                QStringList{"--norc", "-c",
                            "source \"$0\"; COMP_WORDS=(\"$@\") COMP_CWORD=$(($# - 1)); "
                            "_vidtips \"$1\" \"${!#}\"; [[ ${#COMPREPLY[@]} == 0 ]] || "
                            "printf '%s\\n' \"${COMPREPLY[@]}\"",
                            TestPaths::source("Tools/completion/vidtips.bash"), "vidtips"}
                    + words);
    if (!shell.waitForFinished(100000))
        return {"bash did not end"};
    const QString errors = QString::fromUtf8(shell.readAllStandardError());
    if (!errors.isEmpty())
        return {errors};
    return QString::fromUtf8(shell.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts);
}

void tst_Completion::knowsEveryCommand()
{
    const QStringList commands = matches(ToolRun({"--help"}).output, "^    ([a-z]+)  ");
    QVERIFY(commands.contains("check") && commands.contains("harvest"));
    QCOMPARE(completed({""}),
             QStringList("help") + commands + QStringList({"-h", "--help", "-v", "--version"}));
    QCOMPARE(completed({"help", ""}), commands);
}

void tst_Completion::knowsEveryOption()
{
    for (const QString &command : matches(ToolRun({"--help"}).output, "^    ([a-z]+)  ")) {
        const QStringList options =
            matches(ToolRun({command, "--help"}).output, "^    (--[a-z-]+)( [A-Z=]+)?$");
        QCOMPARE(completed({command, "-"}), options + QStringList({"-h", "--help"}));
    }
}

void tst_Completion::completes_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("candidates");
    const auto row = [](const char *name, const QStringList &words, const QStringList &candidates) {
        QTest::newRow(name) << words << candidates;
    };
    row("a command", {"har"}, {"harvest"});
    row("an option", {"preview", "--sc"}, {"--scale", "--screenshot"});
    row("folders", {"check", "pl"}, {"plain"});
    row("no option's value", {"check", "--json", "pl"}, {"plain"});
    row("a folder for an option", {"attach", "--data-path", "To"}, {"Tools.vidtips"});
    row("a file for an option", {"check", "--key-data", "plain/"}, {"plain/file.txt"});
    row("no guess for a number", {"check", "--budget", ""}, {});
    row("keys", {"preview", "d"}, {"draw arc", "draw.line"});
    row("keys of the packages named", {"preview", "More.vidtips", "o"}, {"other"});
    row("none of other packages", {"preview", "More.vidtips", "dr"}, {});
    row("the content's locales", {"preview", "--locale", "is"}, {"is_IS"});
    row("a value after an equals sign", {"preview", "--locale", "=", "is"}, {"is_IS"});
    row("codes", {"explain", "VT30"}, {"VT301", "VT302", "VT303", "VT304", "VT305"});
    row("packages to search", {"new", "--search", "T"}, {"Tools"});
    row("a word of the command", {"new", "ti"}, {"tip"});
    row("programs", {"attach", "--trace", "vidtip"}, {"vidtips"});
    row("programs after the options", {"harvest", "--", "vidtip"}, {"vidtips"});
    row("the program's own options", {"attach", "vidtips", "--tr"}, {});
    row("the program's files", {"attach", "--trace", "vidtips", "plain/f"}, {"plain/file.txt"});
    row("an unknown command", {"frobnicate", ""}, {});
}

void tst_Completion::completes()
{
    QFETCH(QStringList, words);
    QStringList found = completed(words);
    found.removeAll("vidtips_manual");
    QTEST(found, "candidates");
}

QTEST_GUILESS_MAIN(tst_Completion)

#include "tst_completion.moc"
