#pragma once

#include <QtQml/QQmlParserStatus>

/** The base of objects that want to know when QML begins to make them and when their properties are set. */
class QDeclarativeParserStatus : public QQmlParserStatus
{
};

/** What Qt's own class is known by, as the engine asks for that. */
#define QDeclarativeParserStatus_iid QQmlParserStatus_iid
Q_DECLARE_INTERFACE(QDeclarativeParserStatus, QDeclarativeParserStatus_iid)
