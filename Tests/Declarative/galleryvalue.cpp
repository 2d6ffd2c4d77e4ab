#include "galleryvalue.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMetaEnum>
#include <QtCore/QRectF>
#include <QtCore/QUrl>
#include <QtGui/QColor>
#include <QtGui/QVector3D>
#include <QtQml/QJSValue>

#include <cmath>

namespace {

QJsonValue number(double value)
{
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-Infinity") : QStringLiteral("Infinity");
    if (std::isnan(value))
        return QStringLiteral("NaN");
    return std::round(value * 100) / 100;
}

QJsonArray numbers(std::initializer_list<double> values)
{
    QJsonArray array;
    for (double value : values)
        array.append(number(value));
    return array;
}

QJsonValue fromObject(const QObject *object)
{
    if (!object)
        return QJsonValue::Null;
    if (object->objectName().isEmpty())
        return QStringLiteral("<object>");
    return QLatin1Char('@') + object->objectName();
}

QJsonValue fromList(const QVariantList &list, const QDir &folder)
{
    QJsonArray array;
    for (const QVariant &entry : list)
        array.append(GalleryValue::fromVariant(entry, folder));
    return array;
}

QJsonValue fromMap(const QVariantMap &map, const QDir &folder)
{
    QJsonObject object;
    for (auto it = map.begin(); it != map.end(); ++it)
        object.insert(it.key(), GalleryValue::fromVariant(it.value(), folder));
    return object;
}

} // namespace

QJsonValue GalleryValue::fromVariant(const QVariant &value, const QDir &folder)
{
    switch (int(value.userType())) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
    case QMetaType::QFont: // not recorded
        return QJsonValue::Null;
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QColor:
        return value.value<QColor>().isValid() ? value.value<QColor>().name(QColor::HexArgb)
                                               : QStringLiteral("invalid");
    case QMetaType::QUrl:
    case QMetaType::QString:
        return relativeText(value.toString(), folder);
    case QMetaType::QPoint:
    case QMetaType::QPointF:
        return numbers({value.toPointF().x(), value.toPointF().y()});
    case QMetaType::QSize:
    case QMetaType::QSizeF:
        return numbers({value.toSizeF().width(), value.toSizeF().height()});
    case QMetaType::QRect:
    case QMetaType::QRectF: {
        const QRectF rect = value.toRectF();
        return numbers({rect.x(), rect.y(), rect.width(), rect.height()});
    }
    case QMetaType::QVector3D: {
        const auto vector = value.value<QVector3D>();
        return numbers({vector.x(), vector.y(), vector.z()});
    }
    case QMetaType::QDateTime:
        return value.toDateTime().toString(Qt::ISODate);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return fromList(value.toList(), folder);
    case QMetaType::QVariantMap:
        return fromMap(value.toMap(), folder);
    default:
        break;
    }
    if (value.userType() == qMetaTypeId<QJSValue>())
        return fromVariant(value.value<QJSValue>().toVariant(), folder);
    if (value.canConvert<QObject *>())
        return fromObject(value.value<QObject *>());
    if (value.canConvert<double>())
        return number(value.toDouble());
    // A flags or enumeration type that is not registered converts to nothing, but holds an int.
    if (QMetaType::typeFlags(value.userType()) & QMetaType::IsEnumeration)
        return *static_cast<const int *>(value.constData());
    return value.canConvert<QString>() ? QJsonValue(relativeText(value.toString(), folder)) : QJsonValue();
}

QString GalleryValue::relativeText(QString text, const QDir &folder)
{
    text.remove(QUrl::fromLocalFile(folder.path() + QLatin1Char('/')).toString());
    return text.remove(folder.path() + QLatin1Char('/'));
}

bool GalleryValue::same(const QJsonValue &recorded, const QJsonValue &seen, double tolerance)
{
    if (recorded.isDouble() && seen.isDouble())
        return std::abs(recorded.toDouble() - seen.toDouble()) <= tolerance;
    if (recorded.isArray() && seen.isArray()) {
        const QJsonArray left = recorded.toArray(), right = seen.toArray();
        if (left.count() != right.count())
            return false;
        for (int i = 0; i < left.count(); ++i) {
            if (!same(left.at(i), right.at(i), tolerance))
                return false;
        }
        return true;
    }
    return recorded == seen;
}

QString GalleryValue::text(const QJsonValue &value)
{
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}
