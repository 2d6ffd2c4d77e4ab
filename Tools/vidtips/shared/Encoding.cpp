#include "Encoding.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextCodec>

namespace {

constexpr int headSize = 256;
constexpr int leastMib16 = 1013; // the numbers of the encodings of two and four bytes
constexpr int mostMib16 = 1019;
constexpr int mibUtf8 = 106;

struct Declaration
{
    QString name;
    Position position;
};

Declaration declarationOf(const QByteArray &bytes)
{
    static const QRegularExpression pattern("^\\s*<\\?xml[^>]*\\sencoding\\s*=\\s*[\"']([^\"'>]*)[\"']");
    const QString head = QString::fromLatin1(bytes.left(headSize));
    const QRegularExpressionMatch match = pattern.match(head);
    if (!match.hasMatch())
        return {};
    const int start = match.capturedStart(1);
    const int line = head.leftRef(start).count('\n') + 1;
    return {match.captured(1), {line, start - head.lastIndexOf('\n', start)}};
}

bool isUtf8(const char *bytes, int size)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    QTextCodec::codecForMib(mibUtf8)->toUnicode(bytes, size, &state);
    return state.invalidChars == 0;
}

// The first byte that makes the line no text any more; a character that the line's end cuts is one, too.
int firstWrongByte(const QByteArray &line)
{
    int right = 0;
    int wrong = line.size();
    while (wrong - right > 1) {
        const int middle = (right + wrong) / 2;
        (isUtf8(line.constData(), middle) ? right : wrong) = middle;
    }
    return right;
}

Encoding::Problem wrongByte(const QByteArray &line, int number, bool isDeclared)
{
    const int at = firstWrongByte(line);
    // What is noticed at a byte may have begun before it, and a column counts characters.
    const int column = QString::fromUtf8(line.left(at)).remove(QChar::ReplacementCharacter).size() + 1;
    int first = at;
    while (first > 0 && uchar(line.at(first - 1)) >= 0xC0)
        --first;
    const auto byte = uchar(line.at(first));
    const QString message =
        QString("the byte %1 is not UTF-8, %2 (it would be \"%3\" in ISO-8859-1): save the file as UTF-8")
            .arg(QString::number(byte, 16).toUpper(),
                 isDeclared ? "which the file declares" : "which a file is that declares nothing else")
            .arg(QChar(byte));
    return {message, {number, column}};
}

} // namespace

bool Encoding::isUtf16(const QByteArray &bytes)
{
    return bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")
        || bytes.startsWith(QByteArray("<\0", 2)) || bytes.startsWith(QByteArray("\0<", 2));
}

Encoding::Problem Encoding::problemWith(const QByteArray &bytes)
{
    if (isUtf16(bytes))
        return {};
    const Declaration declared = declarationOf(bytes);
    const QTextCodec *const codec = declared.name.isEmpty()
        ? QTextCodec::codecForMib(mibUtf8)
        : QTextCodec::codecForName(declared.name.toLatin1());
    if (!codec)
        return {QString("there is no encoding \"%1\": save the file as UTF-8 and write encoding=\"UTF-8\"")
                    .arg(declared.name),
                declared.position};
    if (codec->mibEnum() >= leastMib16 && codec->mibEnum() <= mostMib16)
        return {QString("the file declares %1 and is not: write encoding=\"UTF-8\"").arg(declared.name),
                declared.position};
    if (codec->mibEnum() != mibUtf8 || isUtf8(bytes.constData(), bytes.size()))
        return {};
    const QList<QByteArray> lines = bytes.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QByteArray whole = lines.at(i) + '\n';
        if (!isUtf8(whole.constData(), whole.size()))
            return wrongByte(whole, i + 1, !declared.name.isEmpty());
    }
    return {};
}
