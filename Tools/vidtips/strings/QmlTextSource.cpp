#include "QmlTextSource.h"

#include "QtTool.h"
#include "TsFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

namespace {

const char literal[] = "(\"(?:[^\"\\\\\\n]|\\\\.)*\"|'(?:[^'\\\\\\n]|\\\\.)*')";

// A call and which of its arguments is what; the context of a call without one is the file's name.
struct Call
{
    QRegularExpression pattern;
    int source;
    int context;
};

QRegularExpression callOf(const QString &function, int arguments)
{
    const QString list = arguments == 1 ? literal : QString("%1\\s*,\\s*%1").arg(literal);
    return QRegularExpression(QString("(?<![\\w$])(?:%1)\\s*\\(\\s*%2").arg(function, list));
}

const QVector<Call> &callsOf(bool onlyView)
{
    static const QVector<Call> view{{callOf("vidTipView\\s*\\.\\s*translate", 2), 1, 2}};
    static const QVector<Call> all{view.constFirst(),
                                   {callOf("qsTr|QT_TR_NOOP", 1), 1, 0},
                                   {callOf("qsTranslate|QT_TRANSLATE_NOOP", 2), 2, 1}};
    return onlyView ? view : all;
}

QString unescaped(const QString &quoted)
{
    QString text;
    for (int i = 1; i < quoted.size() - 1; ++i) {
        QChar c = quoted.at(i);
        if (c == '\\') {
            c = quoted.at(++i);
            if (c == 'u' && i + 4 < quoted.size() - 1) {
                c = QChar(quoted.mid(i + 1, 4).toUShort(nullptr, 16));
                i += 4;
            } else {
                c = c == 'n' ? '\n' : c == 't' ? '\t' : c;
            }
        }
        text += c;
    }
    return text;
}

// Comments become blanks of the same length, so that places stay.
QString withoutComments(QString code)
{
    static const QRegularExpression token(QString("%1|//[^\\n]*|/\\*.*?\\*/").arg(literal),
                                          QRegularExpression::DotMatchesEverythingOption);
    auto matches = token.globalMatch(code);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        if (!match.captured().startsWith('/'))
            continue;
        for (int i = match.capturedStart(); i < match.capturedEnd(); ++i) {
            if (code.at(i) != '\n')
                code[i] = ' ';
        }
    }
    return code;
}

Position positionOf(const QString &code, int offset)
{
    const int lineStart = offset > 0 ? code.lastIndexOf('\n', offset - 1) + 1 : 0;
    return {code.leftRef(offset).count('\n') + 1, offset - lineStart + 1};
}

// lupdate calls it a success when it gives up on a file, whose texts would then seem to be gone.
QString firstError(const QStringList &warnings)
{
    static const QRegularExpression error("^(.*:\\d+:\\d+): error: (.*)$");
    for (const QString &line : warnings) {
        const QRegularExpressionMatch match = error.match(line);
        if (match.hasMatch())
            return match.captured(1) + ": " + match.captured(2);
    }
    return {};
}

// Returns whether lupdate did its work; what it found wrong with a file goes to the problem.
bool askLupdate(const QStringList &files, QVector<TranslatableText> &texts, QString &problem)
{
    const QString lupdate = QtTool::find("lupdate");
    const QTemporaryDir folder;
    if (lupdate.isEmpty() || !folder.isValid())
        return false;
    const QString ts = folder.filePath("texts.ts");
    QStringList arguments{"-silent", "-locations", "absolute"};
    arguments += files;
    arguments << "-ts" << ts;
    TsFile found({}, {});
    QStringList warnings;
    if (!QtTool::run(lupdate, arguments, &warnings).isEmpty())
        return false;
    problem = firstError(warnings);
    if (!problem.isEmpty() || !found.read(ts).isEmpty())
        return false;
    for (const TsMessage &message : found.messages()) {
        for (const auto &location : message.locations) {
            const QString file =
                QFileInfo(QDir(folder.path()).absoluteFilePath(location.first)).canonicalFilePath();
            texts.append({message.context,
                          message.source,
                          file,
                          {location.second, 0},
                          message.comment,
                          message.isPlural});
        }
    }
    return true;
}

} // namespace

QVector<TranslatableText> QmlTextSource::scan(const QString &path, const QString &code, bool onlyView)
{
    const QString plain = withoutComments(code);
    QVector<TranslatableText> texts;
    for (const Call &call : callsOf(onlyView)) {
        auto matches = call.pattern.globalMatch(plain);
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            const QString context =
                call.context ? unescaped(match.captured(call.context)) : QFileInfo(path).completeBaseName();
            const Position place = positionOf(plain, match.capturedStart(call.source));
            texts.append({context, unescaped(match.captured(call.source)), path, place, {}, false});
        }
    }
    return texts;
}

QString QmlTextSource::read(const QStringList &files, QVector<TranslatableText> &texts)
{
    QString problem;
    const bool isAsked = !files.isEmpty() && askLupdate(files, texts, problem);
    if (!problem.isEmpty())
        return problem;
    for (const QString &path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            return QString("cannot read %1: %2").arg(path, file.errorString());
        texts += scan(path, QString::fromUtf8(file.readAll()), isAsked);
    }
    return {};
}
