#include "QmlCheck.h"

#include "findings/Finding.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtDeclarative/QDeclarativeComponent>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeError>

using namespace Vidtips;

namespace {

// The manager registers the types when it is made, and they stay.
void registerTypes()
{
    VTContext context;
    VTIndex index(&context, {});
    VTManager manager(nullptr, context, {}, &index);
}

QString withoutStop(const QString &sentence)
{
    return sentence.endsWith('.') ? sentence.chopped(1) : sentence;
}

bool imports(const QString &path, const QString &module)
{
    const QRegularExpression import("^\\s*import\\s+" + module + "\\b", QRegularExpression::MultilineOption);
    QFile file(path);
    return !file.open(QIODevice::ReadOnly) || import.match(QString::fromUtf8(file.readAll())).hasMatch();
}

// What an error means where the engine names only what follows from it.
QString hintFor(const QDeclarativeError &error)
{
    const QString path = error.url().toLocalFile();
    if (!error.description().endsWith("is not a type"))
        return {};
    if (!imports(path, "(?:QtQuick|Qt)"))
        return ": the file has no line \"import QtQuick 1.1\"";
    const bool isOurs =
        error.description().startsWith("VT") && !imports(path, "com\\.corvale\\.vidtips\\.qml");
    return isOurs ? ": the file has no line \"import com.corvale.vidtips.qml 1.0\"" : QString();
}

} // namespace

void QmlCheck::run(const QStringList &files, Findings &findings,
                   const std::function<void(int, int)> &progress)
{
    if (files.isEmpty())
        return;
    registerTypes();
    // A view's engine has the types of QML 1 that tips are made of.
    VTView view(nullptr, nullptr);
    QDeclarativeEngine *const engine = view.engine();
    engine->setOutputWarningsToStandardError(false);
    QSet<QString> reported;
    for (int i = 0; i < files.size(); ++i) {
        progress(i, files.size());
        if (importsWhatCannotBe(files.at(i), findings))
            continue;
        checkNamedFiles(files.at(i), findings);
        QDeclarativeComponent component(engine, QUrl::fromLocalFile(files.at(i)));
        if (component.isLoading())
            findings.add("VT603", files.at(i), {}, "the file imports something from the network");
        for (const QDeclarativeError &error : component.errors()) {
            const QString local = error.url().toLocalFile();
            const QString file = local.isEmpty() ? files.at(i) : QFileInfo(local).canonicalFilePath();
            const Position place{qMax(0, error.line()), qMax(0, error.column())};
            const QString text = withoutStop(error.description()) + hintFor(error);
            // An error in a file that others use comes with each of them.
            const QString identity =
                QString("%1:%2:%3:%4").arg(file).arg(place.line).arg(place.column).arg(text);
            if (!reported.contains(identity))
                findings.add("VT601", file.isEmpty() ? files.at(i) : file, place, text);
            reported << identity;
        }
    }
    progress(files.size(), files.size());
}

// Compiling a file that has one of these would tell nothing, or go and ask the network.
bool QmlCheck::importsWhatCannotBe(const QString &path, Findings &findings)
{
    struct Import
    {
        QRegularExpression pattern;
        QString code, message;
    };
    static const QVector<Import> imports{
        {QRegularExpression("^\\s*import\\s+QtQuick\\s+2\\."), "VT602", "QtQuick 2 cannot be shown in a tip"},
        {QRegularExpression("^\\s*import\\s+[\"'](?!file:|qrc:)[a-z][a-z0-9+.-]+:"), "VT603",
         "the file imports something from the network"}};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    for (int line = 1; !file.atEnd(); ++line) {
        const QString text = QString::fromUtf8(file.readLine());
        for (const Import &import : imports) {
            if (!import.pattern.match(text).hasMatch())
                continue;
            findings.add(import.code, path, {line, text.indexOf("import") + 1}, import.message);
            return true;
        }
    }
    return false;
}

// Only what is written out: "source" of pictures, fonts and loaders, relative to the file. Clips are looked
// for in the folders of resources, and have no finding here.
void QmlCheck::checkNamedFiles(const QString &path, Findings &findings)
{
    static const QRegularExpression named(
        "^(?!\\s*//"
        ").*?\\bsource\\s*:\\s*\"([^\":]+\\.(?:qml|png|jpe?g|gif|svg|bmp|webp|ttf|otf))\"\\s*(?:[;}]|$|//)");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    for (int line = 1; !file.atEnd(); ++line) {
        QString text = QString::fromUtf8(file.readLine());
        text.chop(text.endsWith('\n') ? 1 : 0);
        const QRegularExpressionMatch match = named.match(text);
        if (match.hasMatch() && !QFileInfo::exists(QFileInfo(path).dir().absoluteFilePath(match.captured(1))))
            findings.add("VT605", path, {line, match.capturedStart(1)},
                         QString("there is no \"%1\" beside this file").arg(match.captured(1)));
    }
}
