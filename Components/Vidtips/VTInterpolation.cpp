#include "VTInterpolation_p.h"

#include <QtCore/QRegExp>

#include <algorithm>

namespace Vidtips {

namespace {

// Writes the insertion into what stands before the position, and returns where it starts.
int putBefore(int position, const QString &insertion, QString *text)
{
    if (insertion.size() > position) {
        const int room = insertion.size() + text->size() - position;
        *text = QString(room, Qt::Uninitialized) + text->midRef(position);
        position = room;
    }
    const int start = position - insertion.size();
    std::copy(insertion.cbegin(), insertion.cend(), text->begin() + start);
    return start;
}

} // namespace

QString interpolated(const QString &text, const QMap<QString, QVariant> &properties)
{
    QRegExp placeholder(QStringLiteral("\\%\\(([-_a-zA-Z0-9]+)\\)s"));
    QString result = QStringLiteral("");
    // What is still to be looked at starts here: before it is room for replacements, so that a text of many
    // placeholders is not moved as a whole for each of them.
    QString rest = text;
    int start = 0;
    for (int at = placeholder.indexIn(rest); at >= 0; at = placeholder.indexIn(rest, start)) {
        result += rest.midRef(start, at - start);
        start = at + placeholder.matchedLength();
        const QString replacement = properties.value(placeholder.cap(1)).toString();
        if (replacement.isNull())
            result += placeholder.cap();
        else
            start = putBefore(start, replacement, &rest);
    }
    return result.isEmpty() && start == 0 ? rest : result + rest.midRef(start);
}

} // namespace Vidtips
