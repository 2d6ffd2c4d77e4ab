#include "PreviewKeys.h"

#include "shared/Content.h"

#include <QtCore/QLocale>
#include <QtCore/QMap>

QVector<PreviewKey> PreviewKeys::in(const Content &content, const QString &locale)
{
    QMap<QString, PreviewKey> keys;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted || !(file.locale().isEmpty() || QLocale(file.locale()) == QLocale(locale)))
            continue;
        for (const XmlNode *entry : file.entries()) {
            const QString key = entry->attribute("key");
            if (!keys.contains(key))
                keys.insert(key, {key, entry->attribute("title").simplified(), &file, entry});
        }
    }
    return keys.values().toVector();
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
