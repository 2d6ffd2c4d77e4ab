#pragma once

#include <Vidtips/VTCommandLocator.h>

#include <QtCore/QString>
#include <QtGui/QIcon>
#include <QtGui/QKeySequence>

QT_BEGIN_NAMESPACE
class QAction;
class QWidget;
QT_END_NAMESPACE

/** What a program itself says of a command, as plain text. */
struct CommandTexts
{
    QString title; ///< Without mnemonic and ellipsis.
    QString summary; ///< From status tip, what's this or tool tip; empty where that only repeats the title.
    QKeySequence shortcut;
    QIcon icon;

    /** What gives keys to commands of programs that were not made for tips. */
    static constexpr auto fallbacks = Vidtips::VTCommandLocator::Fallbacks(
        Vidtips::VTCommandLocator::IconName | Vidtips::VTCommandLocator::StandardButton
        | Vidtips::VTCommandLocator::Text | Vidtips::VTCommandLocator::Container);

    /** Returns what is said of @p command, an action or a widget; of anything else and of null nothing. */
    static CommandTexts of(const QObject *command);
};
