#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/qnamespace.h>

/** What becomes of a tip that is shown. */
enum class TipPhase {
    AsItComes, ///< It goes on as it does for users.
    First, ///< It stays as it is when it appears.
    Kept, ///< The user keeps it, in a window of its own.
};

/** How tips are previewed. */
struct PreviewSettings
{
    QStringList folders; ///< Data paths or packages, as for the other commands.
    QString locale;
    QString whyLocale; ///< Where nobody asked for it: why it is this one; empty for the usual one.
    QString keyData; ///< Path of the key-data file; empty for the one that lies beside the packages.
    QMap<QString, QString> properties; ///< What a host would set for placeholders in texts.
    double scale = 1.0;
    bool isSimple = false;
    bool isDark = false;
    bool isRestricted = false; ///< Content reaches nothing outside its packages.
    bool isStill = false; ///< The user wants nothing to move.
    bool isUnavailable = false; ///< The command cannot be used now.
    Qt::LayoutDirection direction = Qt::LayoutDirectionAuto; ///< Automatic is that of the locale.
    TipPhase phase = TipPhase::AsItComes;
};
