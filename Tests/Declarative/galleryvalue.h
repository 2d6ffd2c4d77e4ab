#pragma once

#include <QtCore/QDir>
#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

/**
 * Turns property values into the JSON that the gallery's traces record, and compares the two.
 */
namespace GalleryValue {

/** The JSON form of @p value; addresses are given relative to @p folder. */
QJsonValue fromVariant(const QVariant &value, const QDir &folder);

/** @p text without the address of @p folder, in both its forms. */
QString relativeText(QString text, const QDir &folder);

/** Whether both are equal, numbers within @p tolerance. */
bool same(const QJsonValue &recorded, const QJsonValue &seen, double tolerance);

/** One line of JSON for messages. */
QString text(const QJsonValue &value);

} // namespace GalleryValue
