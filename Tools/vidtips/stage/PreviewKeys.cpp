#include "PreviewKeys.h"

#include "shared/Content.h"

#include <QtCore/QLocale>
#include <QtCore/QMap>

QVector<PreviewKey> PreviewKeys::in(const Content &content, const QString &locale)
{
    QMap<QString, QString> titles;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted || !(file.locale().isEmpty() || QLocale(file.locale()) == QLocale(locale)))
            continue;
        for (const XmlNode *entry : file.entries()) {
            if (!titles.contains(entry->attribute("key")))
                titles.insert(entry->attribute("key"), entry->attribute("title").simplified());
        }
    }
    QVector<PreviewKey> keys;
    for (auto it = titles.cbegin(); it != titles.cend(); ++it)
        keys.append({it.key(), *it});
    return keys;
}

QString PreviewKeys::defaultLocale(const Content &content)
{
    QString usual = "en_US";
    QString first;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted || file.locale().isEmpty())
            continue;
        if (QLocale(file.locale()).name() == usual)
            return usual;
        if (first.isEmpty())
            first = QLocale(file.locale()).name();
    }
    return first.isEmpty() ? usual : first;
}
