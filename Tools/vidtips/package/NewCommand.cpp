#include "NewCommand.h"

#include "PackageSkeleton.h"
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Locales.h"
#include "shared/Places.h"
#include "strings/CatalogueJob.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

namespace {

QString writeTranslations(const QString &package, const QStringList &locales)
{
    QStringList names;
    for (const QString &locale : locales)
        names << QLocale(locale).name();
    Content content;
    CatalogueJobs jobs("en_US");
    QString problem = content.load({package});
    if (problem.isEmpty())
        problem = jobs.plan(content, names);
    return problem.isEmpty() ? jobs.write() : problem;
}

QString problemWith(const QCommandLineParser &arguments)
{
    const QStringList names = arguments.positionalArguments();
    if (names.size() != 1)
        return "new needs one name; see \"vidtips new --help\"";
    for (const QString &locale : arguments.values("locale")) {
        QString problem = Locales::problemWith(locale);
        if (!problem.isEmpty())
            return problem;
    }
    const QString shared = arguments.value("search");
    const QString problem = shared.isEmpty() ? QString() : PackageSkeleton::problemWith(shared);
    return problem.isEmpty() ? PackageSkeleton::problemWith(names.constFirst()) : problem;
}

} // namespace

QStringList NewCommand::description() const
{
    return {"Makes the package NAME.vidtips with a control file for en_US that holds two tips, a picture and "
            "a user interface, full and simple, to start from. It checks clean and can be previewed at once.",
            "The words of the user interface are marked for translation: --locale writes them to a file for "
            "Qt's Linguist."};
}

QList<Command::Example> NewCommand::examples() const
{
    return {{"Tools", "Make Tools.vidtips in the current folder."},
            {"--search Shared --directory Content Tools",
             "Make Content/Tools.vidtips, which takes its user interface from Content/Shared.vidtips."},
            {"--locale de_DE Tools", "Begin a translation into German as well."}};
}

QList<QCommandLineOption> NewCommand::options() const
{
    return {{"directory", "Make the package in the folder DIR.", "DIR", "."},
            {"search", "Use the user interface of the package SHARED instead of one of its own.", "SHARED"},
            {"locale", "Write l10n/Vidtips_LOCALE.ts; may be given several times.", "LOCALE"}};
}

int NewCommand::run(const QCommandLineParser &arguments, Console &console)
{
    const QString problem = problemWith(arguments);
    if (!problem.isEmpty())
        return console.fail(problem);
    PackageSkeleton skeleton(arguments.value("directory"), arguments.positionalArguments().constFirst());
    skeleton.setShared(arguments.value("search"));
    const QString unwritten = skeleton.write();
    if (!unwritten.isEmpty())
        return console.fail(unwritten);
    const QString untranslated = writeTranslations(skeleton.path(), arguments.values("locale"));
    if (!untranslated.isEmpty()) {
        QDir(skeleton.path()).removeRecursively();
        return console.fail(untranslated);
    }
    const QString path = Places::shown(QFileInfo(skeleton.path()).canonicalFilePath());
    for (const QString &file : skeleton.files())
        console.writeLine(path + '/' + file);
    console.writeLine("\n" + console.in(Console::Dim, "See it: ")
                      + QString("vidtips preview %1 %2").arg(skeleton.firstKey(), path));
    return ExitFine;
}
