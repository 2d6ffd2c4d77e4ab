#include "StringsCommand.h"

#include "CatalogueJob.h"
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Locales.h"
#include "shared/Places.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLocale>

namespace {

// Returns what is wrong with the names; the library asks for catalogues in Qt's own spelling.
QString readLocales(const QStringList &names, QStringList &locales)
{
    for (const QString &name : names) {
        QString problem = Locales::problemWith(name);
        if (!problem.isEmpty())
            return problem;
        locales << QLocale(name).name();
    }
    locales.removeDuplicates();
    return {};
}

void writeText(const QVector<CatalogueJob> &jobs, bool isReleased, Console &console)
{
    for (const CatalogueJob &job : jobs) {
        const TsFile::Changes &changes = job.changes;
        QString line = QString("%1: %2, %3 new, %4 vanished, %5 to translate")
                           .arg(console.in(Console::Bold, Places::shown(job.translations)))
                           .arg(changes.texts == 1 ? "1 text" : QString("%1 texts").arg(changes.texts))
                           .arg(changes.added)
                           .arg(changes.vanished)
                           .arg(changes.untranslated);
        if (isReleased)
            line += QString("; built %1").arg(Places::shown(job.catalogue));
        console.writeLine(line);
    }
    if (jobs.isEmpty())
        console.writeLine("There are no texts to translate.");
}

void writeJson(const QVector<CatalogueJob> &jobs, bool isReleased, Console &console)
{
    QJsonArray list;
    for (const CatalogueJob &job : jobs) {
        QJsonObject object{{"package", job.package},
                           {"locale", job.locale},
                           {"translations", job.translations},
                           {"texts", job.changes.texts},
                           {"added", job.changes.added},
                           {"vanished", job.changes.vanished},
                           {"untranslated", job.changes.untranslated}};
        if (isReleased)
            object.insert("catalogue", job.catalogue);
        list.append(object);
    }
    console.write(QString::fromUtf8(QJsonDocument(list).toJson()));
}

} // namespace

QStringList StringsCommand::description() const
{
    return {"Extracts the texts that are translated by catalogues and writes them to the file "
            "l10n/Vidtips_LOCALE.ts of each package, for Qt's Linguist. Translations that are there already "
            "are kept; those of texts that are gone are marked as vanished.",
            "From control files these are the titles and texts of entries that name a translation "
            "\"context\", in files that serve every locale. From QML these are the texts of "
            "vidTipView.translate(text, context), of qsTr() and qsTranslate(), and those marked by "
            "QT_TRANSLATE_NOOP(context, text). Qt's lupdate reads the QML where it is installed.",
            "With --release, Qt's lrelease then builds l10n/Vidtips_LOCALE.qm, which is what the library "
            "loads. The texts of packages that a package searches go into its catalogue too, because the "
            "library asks one catalogue for all texts of a tip. A catalogue that is there without its .ts "
            "file is left alone."};
}

QList<Command::Example> StringsCommand::examples() const
{
    return {{"--locale de_DE Content", "Begin a translation into German."},
            {"Content", "Bring all translations up to date with the content."},
            {"--release Content", "Do the same and build the catalogues."},
            {"--pseudo eo --release Content", "See what is not translated: preview with --locale eo."}};
}

QList<QCommandLineOption> StringsCommand::options() const
{
    return {
        {"locale",
         "Translate into LOCALE; may be given several times. Without it, the translations that exist are "
         "brought up to date.",
         "LOCALE"},
        {"pseudo",
         "Translate into LOCALE by machine, with accents, a third longer and in brackets: what is not "
         "translated and what "
         "has no room is then seen. Choose a locale without translations.",
         "LOCALE"},
        {"release", "Build the catalogues."},
        {"source-locale", "The locale that texts are written in. The default is en_US.", "LOCALE", "en_US"},
        {"json",
         "Write a JSON array of package, locale, translations, texts, added, vanished, untranslated and, "
         "with --release, catalogue."}};
}

int StringsCommand::run(const QCommandLineParser &arguments, Console &console)
{
    if (arguments.positionalArguments().isEmpty())
        return console.fail("strings needs a folder; see \"vidtips strings --help\"");
    QStringList locales;
    QStringList sourceLocale;
    QString problem = readLocales(arguments.values("locale"), locales);
    if (problem.isEmpty())
        problem = readLocales({arguments.value("source-locale")}, sourceLocale);
    QStringList pseudoLocale;
    if (problem.isEmpty() && arguments.isSet("pseudo"))
        problem = readLocales({arguments.value("pseudo")}, pseudoLocale);
    locales += pseudoLocale;
    Content content;
    if (problem.isEmpty())
        problem = content.loadWhole(arguments.positionalArguments());
    CatalogueJobs jobs(sourceLocale.value(0));
    jobs.setPseudoLocale(pseudoLocale.value(0));
    if (problem.isEmpty())
        problem = jobs.plan(content, locales);
    if (problem.isEmpty())
        problem = jobs.write();
    const bool isReleased = arguments.isSet("release");
    if (problem.isEmpty() && isReleased)
        problem = jobs.release();
    if (!problem.isEmpty())
        return console.fail(problem);
    for (const QString &catalogue : jobs.skipped())
        console.note(
            QString("vidtips: left alone, for want of its translations: %1").arg(Places::shown(catalogue)));
    if (arguments.isSet("json"))
        writeJson(jobs.jobs(), isReleased, console);
    else
        writeText(jobs.jobs(), isReleased, console);
    return ExitFine;
}
