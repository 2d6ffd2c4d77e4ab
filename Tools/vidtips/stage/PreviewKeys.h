#pragma once

#include <QtCore/QString>
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

/** The keys of @p content that have an entry for @p locale, each once, in order. */
QVector<PreviewKey> in(const Content &content, const QString &locale);

/** The locale to preview where none is asked for: en_US where there is content for it, else the first one. */
QString defaultLocale(const Content &content);

} // namespace PreviewKeys
