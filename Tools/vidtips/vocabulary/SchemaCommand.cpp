#include "SchemaCommand.h"

#include "VocabularySchema.h"
#include "shared/Console.h"
#include "shared/Places.h"
#include "shared/Vocabulary.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

namespace {

// The schema of a package, or the file itself.
QString schemaIn(const QString &argument)
{
    return QFileInfo(argument).isDir() ? argument + "/ui/schema.xml" : argument;
}

} // namespace

QStringList SchemaCommand::description() const
{
    return {"Writes the XML schema (XSD) of control files whose tips PACKAGE shows, for editors that "
            "complete and "
            "check XML. PACKAGE is a package folder, whose file ui/schema.xml says what its user interface "
            "reads, or "
            "such a file. Without one, writes the schema of control files of any user interface.",
            "The schema of the user interface that comes with the library is installed beside this one, as "
            "vidtips-shared.xsd."};
}

QList<Command::Example> SchemaCommand::examples() const
{
    return {{"Plain.vidtips > plain.xsd",
             "Make a schema for the tips that a package's own user interface shows."},
            {"> vidtips.xsd", "Make the schema of any tips."}};
}

QList<QCommandLineOption> SchemaCommand::options() const
{
    return {};
}

int SchemaCommand::run(const QCommandLineParser &arguments, Console &console)
{
    const QStringList packages = arguments.positionalArguments();
    if (packages.size() > 1)
        return console.fail("schema takes one package; see \"vidtips schema --help\"");
    if (packages.isEmpty()) {
        console.write(QString::fromUtf8(VocabularySchema::ofAny()));
        return ExitFine;
    }
    const QString path = schemaIn(packages.constFirst());
    if (!QFileInfo(path).isFile())
        return console.fail(
            QString("there is no schema: %1").arg(Places::shown(QFileInfo(path).absoluteFilePath())));
    const Vocabulary vocabulary = Vocabulary::read(path);
    if (!vocabulary.isUsable())
        return console.fail(QString("%1: %2").arg(
            Places::shown(QFileInfo(path).canonicalFilePath(), vocabulary.problemPosition()),
            vocabulary.problem()));
    console.write(QString::fromUtf8(VocabularySchema::of(vocabulary)));
    return ExitFine;
}
