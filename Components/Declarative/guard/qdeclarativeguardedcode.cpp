#include "qdeclarativeguardedcode_p.h"

#include "bounds/qdeclarativeqtcompat_p.h"
#include "qdeclarativeguard.h"
#include "qdeclarativeguards_p.h"

#include <QtCore/QFileInfo>
#include <QtQml/QQmlFile>

#include <private/qqmldirparser_p.h>
#include <private/qqmlirbuilder_p.h>
#include <private/qqmljslexer_p.h>

namespace {

using Import = QV4::CompiledData::Import;

/** Asks the guard about one import after the other of a file, until one is refused. */
class Imports : public QQmlJS::Directives
{
public:
    Imports(QDeclarativeGuard &guard, const QUrl &file)
        : guard(guard)
        , file(file)
    {
    }

    void addModule(const QString &name, int major, int minor, int line)
    {
        const QString version = QStringLiteral("%1.%2").arg(major).arg(minor);
        if (isAdmitted && !guard.admitsModule(name, major, minor))
            refuse(QStringLiteral("importing %1 %2").arg(name, version), line);
    }

    void addAddress(const QString &address, int line)
    {
        const QUrl url = file.resolved(QUrl(address));
        if (isAdmitted && !guard.admits(url))
            refuse(QDeclarativeGuards::message(url), line);
    }

    void refuse(const QString &what, int line)
    {
        isAdmitted = false;
        guard.refused(what, file, line);
    }

    void importFile(const QString &script, const QString &, int line, int) override
    {
        addAddress(script, line);
    }

    void importModule(const QString &name, const QString &version, const QString &, int line, int) override
    {
        addModule(name, version.section(QLatin1Char('.'), 0, 0).toInt(),
                  version.section(QLatin1Char('.'), 1, 1).toInt(), line);
    }

    QDeclarativeGuard &guard;
    const QUrl file;
    bool isAdmitted = true;
};

// What does not parse is not run, and the engine says why.
void readDocument(const QString &text, Imports *imports)
{
    QmlIR::Document document(false);
    QmlIR::IRBuilder builder({});
    builder.generateFromQml(text, imports->file.toString(), &document);
    for (const Import *import : qAsConst(document.imports)) {
        const QString name = document.stringAt(import->uriIndex);
        const int line = QtCompat::line(import->location);
        if (import->type == Import::ImportLibrary)
            imports->addModule(name, import->majorVersion, import->minorVersion, line);
        else
            imports->addAddress(name, line);
    }
}

void readScript(const QString &text, Imports *imports)
{
    QQmlJS::Engine engine;
    QQmlJS::Lexer lexer(&engine);
    lexer.setCode(text, 1, false);
    QQmlJS::DiagnosticMessage error;
    lexer.scanDirectives(imports, &error);
}

void readModule(const QString &text, Imports *imports)
{
    QQmlDirParser parser;
    parser.parse(text);
    if (!parser.plugins().isEmpty() || !parser.className().isEmpty())
        imports->refuse(QStringLiteral("loading a plugin"), 0);
    const QStringList modules = parser.imports() + parser.dependencies().keys();
    for (const QString &module : modules)
        imports->addModule(module, -1, -1, 0);
    const auto components = parser.components();
    for (const QQmlDirParser::Component &component : components)
        imports->addAddress(component.fileName, 0);
    const auto scripts = parser.scripts();
    for (const QQmlDirParser::Script &script : scripts)
        imports->addAddress(script.fileName, 0);
}

} // namespace

bool QDeclarativeGuardedCode::isAdmitted(QDeclarativeGuard &guard, const QUrl &url,
                                         QQmlAbstractUrlInterceptor::DataType type)
{
    const QString path = QQmlFile::urlToLocalFileOrQrc(url);
    Imports imports(guard, url);
    // The engine would run it in place of the source, and trusts it with its memory.
    if (type != QQmlAbstractUrlInterceptor::QmldirFile && QFile::exists(path + QLatin1Char('c')))
        imports.refuse(QStringLiteral("running compiled code"), 0);
    QFile file(path);
    if (!imports.isAdmitted || !QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return imports.isAdmitted;
    const QString text = QString::fromUtf8(file.readAll());
    if (type == QQmlAbstractUrlInterceptor::QmldirFile)
        readModule(text, &imports);
    else if (type == QQmlAbstractUrlInterceptor::JavaScriptFile)
        readScript(text, &imports);
    else
        readDocument(text, &imports);
    return imports.isAdmitted;
}

bool QDeclarativeGuardedCode::isDocumentAdmitted(QDeclarativeGuard &guard, const QString &text,
                                                 const QUrl &url)
{
    Imports imports(guard, url);
    readDocument(text, &imports);
    return imports.isAdmitted;
}
