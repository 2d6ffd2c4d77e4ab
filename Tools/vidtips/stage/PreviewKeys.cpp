#include "PreviewKeys.h"

#include "shared/Content.h"
#include "shared/Nearest.h"

#include <QtCore/QLocale>
#include <QtCore/QMap>

const QString PreviewKeys::usualLocale = QStringLiteral("en_US");

QVector<PreviewKey> PreviewKeys::in(const Content &content, const QString &locale)
{
    QMap<QString, PreviewKey> keys;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.serves(locale))
            continue;
        for (const XmlNode *entry : file.entries()) {
            const QString key = entry->attribute("key");
            if (!keys.contains(key))
                keys.insert(key, {key, entry->attribute("title").simplified(), &file, entry});
        }
    }
    return keys.values().toVector();
}

PreviewKey PreviewKeys::find(const Content &content, const QString &key, const QString &locale)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.serves(locale))
            continue;
        for (const XmlNode *entry : file.entries()) {
            if (entry->attribute("key") == key)
                return {key, entry->attribute("title").simplified(), &file, entry};
        }
    }
    return {key, {}, nullptr, nullptr};
}

QStringList PreviewKeys::localesOf(const Content &content, const QString &key)
{
    QStringList locales;
    for (const ControlFile &file : content.controlFiles()) {
        const bool hasTips = key.isEmpty() ? !file.entries().empty() : file.hasKey(key);
        if (file.isAdmitted && !file.locale().isEmpty() && hasTips)
            locales << QLocale(file.locale()).name();
    }
    locales.removeDuplicates();
    locales.removeAll("C");
    return locales;
}

QString PreviewKeys::defaultLocale(const Content &content, const QString &key)
{
    if (find(content, key, usualLocale).file)
        return usualLocale;
    const QStringList ofKey = key.isEmpty() ? QStringList() : localesOf(content, key);
    if (!ofKey.isEmpty())
        return ofKey.constFirst();
    const QStringList all = localesOf(content, QString());
    return all.isEmpty() || all.contains(usualLocale) ? usualLocale : all.constFirst();
}

QString PreviewKeys::problemWith(const Content &content, const QString &key, const QString &locale)
{
    QStringList keys;
    for (const PreviewKey &tip : in(content, locale))
        keys << tip.key;
    if (key.isEmpty() ? !keys.isEmpty() : keys.contains(key))
        return {};
    const QStringList others = localesOf(content, key);
    if (key.isEmpty() || keys.isEmpty())
        return QString("there are no tips for %1").arg(locale)
            + (others.isEmpty() ? QString() : QString("; there are for %1").arg(others.join(", ")));
    const QString problem = QString("there is no tip \"%1\" for %2").arg(key, locale);
    const QString nearest = Nearest::to(key, keys);
    if (!others.isEmpty())
        return problem + QString("; it is there for %1").arg(others.join(", "));
    return nearest.isEmpty() ? problem : problem + QString("; did you mean \"%1\"?").arg(nearest);
}
