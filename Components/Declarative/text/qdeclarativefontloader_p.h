#pragma once

#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtQml/qqml.h>

/**
 * Loads a font, or names one of the system.
 *
 * What it is asked for is left to Qt's own element, which is kept from what is no regular file.
 */
class QDeclarativeFontLoader : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)

public:
    enum Status { Null, Ready, Loading, Error };
    Q_ENUM(Status)

    QDeclarativeFontLoader();

    QUrl source() const;
    void setSource(const QUrl &);
    QString name() const;
    void setName(const QString &);
    Status status() const;

Q_SIGNALS:
    void sourceChanged();
    void nameChanged();
    void statusChanged();

private:
    QObject *loader();
    bool refuses(const QUrl &source);

    QObject *inner = nullptr; ///< made when there is something to ask it for
    QUrl refused; ///< what the source is instead of the one that the loader has
};

QML_DECLARE_TYPE(QDeclarativeFontLoader)
