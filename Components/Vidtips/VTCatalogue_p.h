#pragma once

#include <QtCore/QString>
#include <QtCore/QTranslator>

namespace Vidtips {

/** The catalogue of translations in use: the file of the content that asked last. */
class VTCatalogue
{
public:
    /** Loads the file at @p path instead of the one before; there is no catalogue when that cannot be done.
     */
    void load(const QString &path);

    /** Tells whether the file at @p path is loaded. */
    bool isOf(const QString &path) const { return !path.isEmpty() && path == m_path; }

    /** Returns the translation of @p text in @p context; empty where the catalogue has none. */
    QString translate(const QString &text, const QString &context) const;

private:
    QTranslator m_translator;
    QString m_path;
};

} // namespace Vidtips
