#include "qdeclarativefontloader_p.h"

#include "bounds/qdeclarativefontfile_p.h"
#include "engine/qdeclarativelocalfile_p.h"
#include "engine/qdeclarativeqttype_p.h"

#include <QtCore/QFile>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlInfo>

#include <private/qqmldata_p.h>
#include <private/qqmltype_p.h>

QDeclarativeFontLoader::QDeclarativeFontLoader() = default;

QObject *QDeclarativeFontLoader::loader()
{
    if (inner)
        return inner;
    inner = QDeclarativeQtType::find("QtQuick", "FontLoader").create();
    inner->setParent(this);
    // Its messages and its requests are this element's.
    if (QQmlContext *context = qmlContext(this)) {
        QQmlEngine::setContextForObject(inner, context);
        const QQmlData *place = QQmlData::get(this);
        QQmlData *data = QQmlData::get(inner);
        data->outerContext = place->outerContext;
        data->lineNumber = place->lineNumber;
        data->columnNumber = place->columnNumber;
    }
    connect(inner, SIGNAL(sourceChanged()), this, SIGNAL(sourceChanged()));
    connect(inner, SIGNAL(nameChanged()), this, SIGNAL(nameChanged()));
    connect(inner, SIGNAL(statusChanged()), this, SIGNAL(statusChanged()));
    return inner;
}

QUrl QDeclarativeFontLoader::source() const
{
    return inner && refused.isEmpty() ? inner->property("source").toUrl() : refused;
}

void QDeclarativeFontLoader::setSource(const QUrl &source)
{
    if (source == this->source())
        return;
    refused.clear();
    if (refuses(source)) {
        refused = source;
    } else if (loader()->property("source").toUrl() != source) {
        inner->setProperty("source", source);
        return;
    }
    // Also when what was refused came after that very source.
    Q_EMIT sourceChanged();
    Q_EMIT statusChanged();
}

bool QDeclarativeFontLoader::refuses(const QUrl &source)
{
    if (QDeclarativeLocalFile::refuse(source, this))
        return true;
    const QString path = QQmlFile::urlToLocalFileOrQrc(source);
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return false;
    const QString problem = QDeclarativeFontFile::problem(&file);
    if (!problem.isEmpty())
        qmlWarning(this) << problem << ": " << source.toString();
    return !problem.isEmpty();
}

QString QDeclarativeFontLoader::name() const
{
    return inner ? inner->property("name").toString() : QString();
}

void QDeclarativeFontLoader::setName(const QString &name)
{
    loader()->setProperty("name", name);
}

QDeclarativeFontLoader::Status QDeclarativeFontLoader::status() const
{
    if (!refused.isEmpty())
        return Error;
    return inner ? Status(inner->property("status").toInt()) : Null;
}

#include "moc_qdeclarativefontloader_p.cpp"
