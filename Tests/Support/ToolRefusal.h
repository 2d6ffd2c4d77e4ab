#pragma once

#include "TestPackage.h"
#include "ToolRun.h"

#include <QtTest/QTest>

/** A control file in which nothing is wrong, of two entries. */
inline constexpr char validControl[] =
    "<vidtips locale=\"en_US\">\n<vidtip key=\"b\" title=\"Two\n  words\"/>\n"
    "<vidtip key=\"a\" title=\"One\"/>\n</vidtips>\n";

/**
 * Compares what the tool says to wrong use, in a folder that has a package "Tools" and the file "file.txt",
 * with
 * @p error, and sees to it that it writes nothing else.
 */
inline void compareRefusal(const QStringList &arguments, const QString &error)
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    packages.write("file.txt", "text");
    const QStringList before = packages.files();
    // A tool that takes the row for good use would wait for a display that nobody looks at.
    const bool isOnScreen = arguments.value(0) == "preview" && !arguments.contains("--screenshot");
    const QStringList environment =
        isOnScreen && arguments.contains("--all") ? QStringList{"QT_QPA_PLATFORM=offscreen"} : QStringList();
    const ToolRun run(arguments, packages.path(), environment);
    QVERIFY(run.isFinished);
    QCOMPARE(run.errors, "vidtips: " + error + '\n');
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(packages.files(), before);
}

/** Compares what the tool says when @p place of a package cannot be read with the refusal that names it. */
inline void compareUnreadable(const QStringList &arguments, const QString &place)
{
    const TestPackages packages;
    packages.write("Tools.vidtips/Control/T.xml", validControl);
    const QString unreadable = packages.filePath(place);
    const QFile::Permissions before = QFile::permissions(unreadable);
    QVERIFY(QFile::setPermissions(unreadable, {}));
    const ToolRun run = ToolRun::unprivileged(arguments + QStringList{"."}, packages.path());
    QVERIFY(QFile::setPermissions(unreadable, before));
    QCOMPARE(run.errors, "vidtips: cannot read " + place + '\n');
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
}
