#pragma once

#include <QtCore/QString>
#include <QtCore/QTranslator>

namespace Vidtips {

/** The catalogue of translations in use: the file of the content that asked last. */
class VTCatalogue
{
public:
    /** Tells whether the file at @p path says that other catalogues are to be loaded with it. */
    static bool namesOthers(const QString &path);

    /**
     * Loads the file at @p path instead of the one before, with those that it names if @p mayNameOthers;
     * there is no catalogue when that cannot be done.
     */
    void load(const QString &path, bool mayNameOthers = true);

    /** Tells whether the file at @p path is loaded in that way. */
    bool isOf(const QString &path, bool mayNameOthers = true) const
    {
        return !path.isEmpty() && path == m_path && mayNameOthers == m_mayNameOthers;
    }

    /** Returns the translation of @p text in @p context; empty where the catalogue has none. */
    QString translate(const QString &text, const QString &context) const;

private:
    QTranslator m_translator;
    QString m_path;
    bool m_mayNameOthers = true;
};

} // namespace Vidtips
