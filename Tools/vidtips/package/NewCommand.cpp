#include "NewCommand.h"

#include "NewTip.h"
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

constexpr int argumentsOfTip = 3; // "tip", its key, the package

bool isTip(const QStringList &names)
{
    return names.size() == argumentsOfTip && names.constFirst() == "tip";
}

QString writeTranslations(const QString &package, const QStringList &locales, QStringList &written)
{
    QStringList names;
    for (const QString &locale : locales)
        names << QLocale(locale).name();
    Content content;
    CatalogueJobs jobs("en_US");
    QString problem = content.load({package});
    if (problem.isEmpty())
        problem = jobs.plan(content, names);
    if (problem.isEmpty())
        problem = jobs.write();
    for (const CatalogueJob &job : jobs.jobs())
        written << Places::shown(job.translations);
    return problem;
}

QString problemWithLocales(const QCommandLineParser &arguments)
{
    for (const QString &locale : arguments.values("locale")) {
        QString problem = Locales::problemWith(locale);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString problemWith(const QCommandLineParser &arguments)
{
    const QStringList names = arguments.positionalArguments();
    if (names.size() != 1)
        return "new needs one name; see \"vidtips new --help\"";
    const QString unknown = problemWithLocales(arguments);
    if (!unknown.isEmpty())
        return unknown;
    const QString shared = arguments.value("search");
    const QString problem = shared.isEmpty() ? QString() : PackageSkeleton::problemWith(shared);
    return problem.isEmpty() ? PackageSkeleton::problemWith(names.constFirst()) : problem;
}

QString dataPath(const QCommandLineParser &arguments)
{
    return Places::shown(QFileInfo(arguments.value("directory")).canonicalFilePath());
}

bool lacksShared(const QCommandLineParser &arguments)
{
    const QString shared = arguments.value("search");
    return !shared.isEmpty() && !QFileInfo(arguments.value("directory") + '/' + shared + ".vidtips").isDir();
}

// A preview looks only in what it is given, which has to have both packages.
QString seenIn(const QCommandLineParser &arguments, const QString &package)
{
    if (arguments.value("search").isEmpty())
        return package;
    return dataPath(arguments) + (lacksShared(arguments) ? " FOLDER" : "");
}

void writeNotes(const QCommandLineParser &arguments, const QStringList &translations, Console &console)
{
    const QString shared = arguments.value("search");
    if (arguments.isSet("locale") && translations.isEmpty())
        console.note(
            QString("vidtips: there is nothing to translate yet: the words of the user interface are "
                    "translated in the package \"%1\", and tips have a control file for each locale")
                .arg(shared));
    if (lacksShared(arguments))
        console.note(QString("vidtips: there is no package \"%1\" in %2, where its user interface is looked "
                             "for: put it there, or name the folder that has it, FOLDER below")
                         .arg(shared, dataPath(arguments)));
}

} // namespace

QStringList NewCommand::description() const
{
    return {"Makes the package NAME.vidtips with a control file for en_US that holds two tips, a picture and "
            "a user interface, full and simple, to start from. It checks clean and can be previewed at once.",
            "The words of the user interface are marked for translation: --locale writes them to a file for "
            "Qt's Linguist.",
            "With the word tip, adds an entry with the key KEY to the control file of the package folder "
            "PACKAGE that "
            "is for en_US or every locale; --locale chooses others."};
}

QList<Command::Example> NewCommand::examples() const
{
    return {{"Tools", "Make Tools.vidtips in the current folder."},
            {"--search Shared --directory Content Tools",
             "Make Content/Tools.vidtips, which takes its user interface from Content/Shared.vidtips."},
            {"tip draw.line Tools.vidtips", "Add a tip to the package."},
            {"--locale de_DE Tools", "Begin a translation into German as well."}};
}

QList<QCommandLineOption> NewCommand::options() const
{
    return {{"directory", "Make the package in the folder DIR.", "DIR", "."},
            {"search", "Use the user interface of the package SHARED instead of one of its own.", "SHARED"},
            {"locale",
             "Write l10n/Vidtips_LOCALE.ts, or add a tip to the file for LOCALE; may be given several times.",
             "LOCALE"}};
}

int NewCommand::run(const QCommandLineParser &arguments, Console &console)
{
    if (isTip(arguments.positionalArguments()))
        return addTip(arguments, console);
    const QString problem = problemWith(arguments);
    if (!problem.isEmpty())
        return console.fail(problem);
    PackageSkeleton skeleton(arguments.value("directory"), arguments.positionalArguments().constFirst());
    skeleton.setShared(arguments.value("search"));
    const QString unwritten = skeleton.write();
    if (!unwritten.isEmpty())
        return console.fail(unwritten);
    QStringList translations;
    const QString untranslated = writeTranslations(skeleton.path(), arguments.values("locale"), translations);
    if (!untranslated.isEmpty()) {
        QDir(skeleton.path()).removeRecursively();
        return console.fail(untranslated);
    }
    const QString path = Places::shown(QFileInfo(skeleton.path()).canonicalFilePath());
    for (const QString &file : skeleton.files())
        console.writeLine(path + '/' + file);
    for (const QString &file : qAsConst(translations))
        console.writeLine(file);
    writeNotes(arguments, translations, console);
    console.writeLine("\n" + console.in(Console::Dim, "See it: ")
                      + QString("vidtips preview %1 %2").arg(skeleton.firstKey(), seenIn(arguments, path)));
    return ExitFine;
}

int NewCommand::addTip(const QCommandLineParser &arguments, Console &console)
{
    const QStringList names = arguments.positionalArguments();
    Content content;
    NewTip tip(names.at(1));
    QString problem = problemWithLocales(arguments);
    if (problem.isEmpty())
        problem = content.loadWhole({names.at(2)});
    if (problem.isEmpty())
        problem = tip.add(content, arguments.values("locale"));
    if (!problem.isEmpty())
        return console.fail(problem);
    for (const QString &place : tip.places())
        console.writeLine(place);
    return ExitFine;
}
