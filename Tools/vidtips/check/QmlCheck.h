#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

class Findings;

/** Compiles every QML file, without showing it, with the types that the library registers. */
class QmlCheck
{
public:
    void run(const QStringList &files, Findings &findings, const std::function<void(int, int)> &progress);

    /** Reports the first import of the file at @p path that no tip can have; tells whether there is one. */
    static bool importsWhatCannotBe(const QString &path, Findings &findings);

private:
    static void checkNamedFiles(const QString &path, Findings &findings);
};
