// Writes the description of the library's QML types for editors, or compares one that is there with the
// library.

#include "TypeDescription.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTManager.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtCore/QTextStream>
#include <QtDeclarative/qdeclarative.h>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <memory>

namespace {

int fail(const QString &message)
{
    QTextStream(stderr) << "qmltypes: " << message << '\n';
    return EXIT_FAILURE;
}

int write(const QString &path, const QByteArray &text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return fail(QStringLiteral("%1: %2").arg(path, file.errorString()));
    return EXIT_SUCCESS;
}

int firstDifference(const QList<QByteArray> &one, const QList<QByteArray> &other)
{
    const auto difference = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return int(difference.first - one.begin());
}

int compare(const QString &path, const QByteArray &text)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(QStringLiteral("%1: %2").arg(path, file.errorString()));
    const QByteArray present = file.readAll();
    if (present == text)
        return EXIT_SUCCESS;
    const QList<QByteArray> expected = text.split('\n');
    const QList<QByteArray> actual = present.split('\n');
    const int line = firstDifference(expected, actual);
    return fail(
        QStringLiteral("%1:%2: this is not what the library's types give:\n  there is %3\n  should be %4\n"
                       "Write it anew: %5 %1")
            .arg(path)
            .arg(line + 1)
            .arg(QString::fromUtf8(actual.value(line).trimmed()),
                 QString::fromUtf8(expected.value(line).trimmed()), QCoreApplication::applicationFilePath()));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QCommandLineOption check(QStringLiteral("check"),
                                   QStringLiteral("Compare FILE instead of writing it."));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Describes the QML types of com.corvale.vidtips.qml for editors."));
    parser.addHelpOption();
    parser.addOption(check);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The plugins.qmltypes file."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(EXIT_FAILURE);

    // A manager registers the library's types, and a view those of QML 1 that they are made of.
    qmlRegisterDeclarativeTypes();
    VTContext settings;
    const Vidtips::VTManager manager(nullptr, settings, {}, nullptr);
    const std::unique_ptr<Vidtips::VTIndex> index(manager.index());

    const TypeDescription description(QStringLiteral("com.corvale.vidtips.qml"));
    if (description.isEmpty())
        return fail(QStringLiteral("the library registers no QML types"));
    const QString path = parser.positionalArguments().constFirst();
    return parser.isSet(check) ? compare(path, description.text()) : write(path, description.text());
}
