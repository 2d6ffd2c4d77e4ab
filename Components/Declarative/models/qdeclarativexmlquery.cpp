#include "qdeclarativexmlquery_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QXmlStreamReader>
#include <QtXmlPatterns/QAbstractMessageHandler>
#include <QtXmlPatterns/QXmlItem>
#include <QtXmlPatterns/QXmlQuery>
#include <QtXmlPatterns/QXmlResultItems>

namespace {

/** Keeps what is said about a query instead of writing it to the standard error. */
class Messages : public QAbstractMessageHandler
{
public:
    QString take() { return std::exchange(first, {}); }

protected:
    void handleMessage(QtMsgType, const QString &description, const QUrl &, const QSourceLocation &) override
    {
        if (!first.isEmpty())
            return;
        // It comes as a page of XHTML.
        QXmlStreamReader page(description);
        if (page.readNextStartElement())
            first = page.readElementText(QXmlStreamReader::IncludeChildElements);
    }

private:
    QString first;
};

/** Evaluates one query after the other on the same document. */
class Evaluation
{
public:
    explicit Evaluation(QDeclarativeXmlQuery &asked)
        : asked(asked)
        , document(&asked.document)
    {
        document.open(QIODevice::ReadOnly);
        query.setMessageHandler(&messages);
        query.bindVariable(QStringLiteral("document"), &document);
    }

    /** Returns the values of @p step below each thing found; false where it is wrong. */
    bool evaluate(const QString &step, QVariantList *values)
    {
        query.setQuery(asked.namespaces + QLatin1String("doc($document)") + asked.query + step);
        QXmlResultItems items;
        if (!query.isValid())
            return false;
        query.evaluateTo(&items);
        for (QXmlItem item = items.next(); !item.isNull(); item = items.next())
            values->append(item.isAtomicValue() ? item.toAtomicValue() : QVariant());
        return !items.hasError();
    }

    QString message() { return messages.take(); }

private:
    QDeclarativeXmlQuery &asked;
    QBuffer document;
    Messages messages;
    QXmlQuery query;
};

QString invalid(const QString &query, const QString &reason)
{
    const QString message =
        QCoreApplication::translate("QDeclarativeXmlListModel", "invalid query: \"%1\"").arg(query);
    return reason.isEmpty() ? message : message + QLatin1String(": ") + reason;
}

} // namespace

QDeclarativeXmlResult evaluateXmlQuery(QDeclarativeXmlQuery query)
{
    QDeclarativeXmlResult result;
    result.columns.resize(query.roleQueries.count());
    if (query.query.isEmpty() || query.document.isEmpty())
        return result;
    Evaluation evaluation(query);
    QVariantList rows;
    const bool isFound = evaluation.evaluate(QStringLiteral("/1"), &rows);
    const QString reason = evaluation.message();
    if (!isFound || !reason.isEmpty()) {
        result.messages.append({-1, invalid(query.query, reason)});
        return result;
    }
    result.count = rows.count();
    for (int role = 0; role < query.roleQueries.count() && !*query.isCancelled; ++role) {
        const QString asked = query.roleQueries.at(role);
        QVariantList &column = result.columns[role];
        if (!asked.isEmpty()
            && !evaluation.evaluate(QStringLiteral("/((data(%1), \"\")[1])").arg(asked), &column))
            result.messages.append({role, invalid(asked, evaluation.message())});
        while (column.count() < result.count)
            column.append(QString());
    }
    return result;
}
