#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class Content;
struct ControlFile;
struct XmlNode;

/** A tip that can be previewed. */
struct PreviewKey
{
    QString key;
    QString title;
    const ControlFile *file = nullptr; ///< Of the content, as the entry.
    const XmlNode *entry = nullptr;
};

namespace PreviewKeys {

/** The locale that is previewed where there is content for it and none is asked for. */
extern const QString usualLocale;

/** The keys of @p content that have an entry for @p locale, each once, in order. */
QVector<PreviewKey> in(const Content &content, const QString &locale);

/** The tip of @p key for @p locale; one without a file where there is none. */
PreviewKey find(const Content &content, const QString &key, const QString &locale);

/** The locales that there is content for under @p key, or under any key where that is empty. */
QStringList localesOf(const Content &content, const QString &key);

/**
 * The locale to preview where none is asked for: en_US where there is content for it, else the first one.
 * Content under @p key, if there is one, counts before other content.
 */
QString defaultLocale(const Content &content, const QString &key = QString());

/** Why the tip of @p key, or with an empty one any tip, is not shown for @p locale; empty where it is. */
QString problemWith(const Content &content, const QString &key, const QString &locale);

} // namespace PreviewKeys
