#include "PseudoText.h"

#include <QtCore/QRegularExpression>

namespace {

constexpr int charactersPerMore = 3;

QChar accented(QChar c)
{
    static const QString plain("AaCcDdEeGgHhIiJjKkLlNnOoRrSsTtUuWwYyZz");
    static const QString changed = QString::fromUtf8("ÅåÇçÐđÉéĜĝĤĥÎîĴĵĶķĻļÑñÖöŔŕŠšŢţÛûŴŵÝýŽž");
    const int index = plain.indexOf(c);
    return index < 0 ? c : changed.at(index);
}

} // namespace

QString PseudoText::of(const QString &text)
{
    static const QRegularExpression fixed("%\\([-_a-zA-Z0-9]+\\)s|%n|%L?\\d+|&[a-z]+;|<[^>]*>");
    QString result;
    int done = 0;
    auto matches = fixed.globalMatch(text);
    const auto change = [&](int until) {
        for (; done < until; ++done)
            result += accented(text.at(done));
    };
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        change(match.capturedStart());
        result += match.captured();
        done = match.capturedEnd();
    }
    change(text.size());
    return '[' + result + ' ' + QString((text.size() + charactersPerMore - 1) / charactersPerMore, '~') + ']';
}
