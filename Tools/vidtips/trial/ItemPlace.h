#pragma once

#include "shared/Position.h"

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

/** Where an item of a tip is written. */
struct ItemPlace
{
    QString file;
    Position position;

    /** The place of @p item; without a file where that cannot be told. */
    static ItemPlace of(QObject *item);
};
