#pragma once

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QIODevice;
class QObject;
class QSize;
class QUrl;
QT_END_NAMESPACE

/** Pictures that can be looked at before they are loaded: files, resources, and what is in an address itself.
 */
namespace QDeclarativePictureFile {

/**
 * Returns what to report of the picture at @p url if @p element is not to load it in @p requested size, which
 * those take that have none of their own: it is no file, or too large. Else returns nothing.
 */
QString refusal(const QUrl &url, const QSize &requested, const QObject *element);

/** Returns what to report of the picture in @p device, which came from @p url, if it is too large. */
QString refusal(QIODevice *device, const QUrl &url, const QObject *element);

/** Reports a picture that is refused as a warning of @p element, and returns whether it is. */
bool refuse(const QUrl &url, const QObject *element);

} // namespace QDeclarativePictureFile
