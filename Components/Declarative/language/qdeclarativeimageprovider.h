#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtQuick/QQuickImageProvider>

/** The base of what supplies pictures for addresses that begin with `image:`. */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeImageProvider : public QQuickImageProvider
{
public:
    /** Makes a provider of images, whose requestImage() is called on a thread, or of pixmaps. */
    explicit QDeclarativeImageProvider(ImageType type)
        : QQuickImageProvider(type)
    {
    }
};
