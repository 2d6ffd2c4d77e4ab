#pragma once

#include "TextSource.h"

#include <QtCore/QStringList>

/**
 * Finds the texts of a user interface that catalogues translate.
 *
 * These are the texts that the QML passes to the view's translate(text, context), and those in qsTr(),
 * qsTranslate() and the markers QT_TR_NOOP() and QT_TRANSLATE_NOOP(). Only texts that are written out can be
 * found.
 */
namespace QmlTextSource {

/**
 * Appends the texts of the QML and script files @p files to @p texts; Qt's lupdate helps where it is
 * installed. Returns what keeps a file from being read whole, with its place; nothing where nothing does.
 */
QString read(const QStringList &files, QVector<TranslatableText> &texts);

/** Returns the texts of one file without lupdate's help. With @p onlyView, only those for the view. */
QVector<TranslatableText> scan(const QString &path, const QString &code, bool onlyView);

} // namespace QmlTextSource
