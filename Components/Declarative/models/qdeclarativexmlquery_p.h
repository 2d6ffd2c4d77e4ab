#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <atomic>
#include <memory>

class QQmlEngine;

/** What an XmlListModel asks of a document. */
struct QDeclarativeXmlQuery
{
    QByteArray document;
    QString query;
    QString namespaces; ///< declarations that come before the query
    QStringList roleQueries; ///< relative to what the query finds
    const QQmlEngine *engine = nullptr; ///< whose guard decides about other documents that queries name
    std::shared_ptr<std::atomic_bool> isCancelled; ///< checked between roles
};

/** The answer: a list of values for each role, all of the same length, and what was wrong. */
struct QDeclarativeXmlResult
{
    struct Message
    {
        int role; ///< -1 where the query itself or the document is wrong
        QString text;
    };

    QVector<QVariantList> columns;
    QVector<Message> messages;
    int count = 0;
};

/**
 * Evaluates @p query. On any thread; takes as long as the document is large.
 *
 * Where a role finds nothing its value is an empty text, and where it finds several it is the first. A query
 * or document that is wrong gives no rows; a role's query that is wrong gives empty texts.
 */
QDeclarativeXmlResult evaluateXmlQuery(QDeclarativeXmlQuery query);
