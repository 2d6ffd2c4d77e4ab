#pragma once

#include "VTFileStamp_p.h"

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
        return m_isLoaded && path == m_path && mayNameOthers == m_mayNameOthers;
    }

    /** Tells whether load() would change nothing: of a file that could not be loaded, until it changes. */
    bool isCurrent(const QString &path, bool mayNameOthers = true) const;

    /** Tells whether the file that was named last was not loaded as it names others. */
    bool isRefused() const { return m_isRefused; }

    /** Returns the translation of @p text in @p context; empty where the catalogue has none. */
    QString translate(const QString &text, const QString &context) const;

private:
    QTranslator m_translator;
    QString m_path;
    VTFileStamp m_stamp; ///< of what could not be loaded
    bool m_mayNameOthers = true;
    bool m_isLoaded = false;
    bool m_isRefused = false;
};

} // namespace Vidtips
