#include "qdeclarativexmlquery_p.h"

#include "bounds/qdeclarativedownloads_p.h"
#include "guard/qdeclarativeguardednetwork_p.h"
#include "guard/qdeclarativeguards_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtNetwork/QNetworkAccessManager>
#include <QtXmlPatterns/QAbstractMessageHandler>
#include <QtXmlPatterns/QAbstractUriResolver>
#include <QtXmlPatterns/QXmlItem>
#include <QtXmlPatterns/QXmlQuery>
#include <QtXmlPatterns/QXmlResultItems>

namespace {

/** What is said about a query goes nowhere: the model names the query alone. */
class Silence : public QAbstractMessageHandler
{
protected:
    void handleMessage(QtMsgType, const QString &, const QUrl &, const QSourceLocation &) override { }
};

/** Keeps queries from files that are too large, or no files, and remembers why. */
class Bound : public QAbstractUriResolver
{
public:
    QUrl resolve(const QUrl &relative, const QUrl &base) const override
    {
        const QUrl url = base.resolved(relative);
        const QString found = QDeclarativeDownloads::problemOfFile(url);
        if (found.isEmpty())
            return url;
        problem = found;
        return {};
    }

    mutable QString problem;
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
        query.setMessageHandler(&silence);
        query.setUriResolver(&bound);
        if (QDeclarativeGuards::of(asked.engine))
            query.setNetworkAccessManager(network());
        query.bindVariable(QStringLiteral("document"), &document);
    }

    /** Gives the values of @p step below each thing found, none where the document is broken; whether it is a
     * query. */
    bool evaluate(const QString &step, QVariantList *values)
    {
        query.setQuery(asked.namespaces + QLatin1String("doc($document)") + asked.query + step);
        QXmlResultItems items;
        if (!query.isValid())
            return false;
        query.evaluateTo(&items);
        for (QXmlItem item = items.next(); !item.isNull(); item = items.next())
            values->append(item.isAtomicValue() ? item.toAtomicValue() : QVariant());
        if (items.hasError())
            values->clear();
        return true;
    }

    /** Why a file was not read that a query names, or nothing. */
    QString problem() const { return bound.problem; }

private:
    QNetworkAccessManager *network()
    {
        manager.reset(QDeclarativeGuardedNetworkFactory(asked.engine).create(nullptr));
        return manager.get();
    }

    QDeclarativeXmlQuery &asked;
    QBuffer document;
    Silence silence;
    Bound bound;
    std::unique_ptr<QNetworkAccessManager> manager;
    QXmlQuery query;
};

QString invalid(const QString &query)
{
    return QCoreApplication::translate("QDeclarativeXmlListModel", "invalid query: \"%1\"").arg(query);
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
    // A query that is wrong makes those of the roles wrong, which say so.
    evaluation.evaluate(QStringLiteral("/1"), &rows);
    result.count = rows.count();
    for (int role = 0; role < query.roleQueries.count() && !*query.isCancelled; ++role) {
        const QString asked = query.roleQueries.at(role);
        QVariantList &column = result.columns[role];
        if (!asked.isEmpty()
            && !evaluation.evaluate(QStringLiteral("/((data(%1), \"\")[1])").arg(asked), &column))
            result.messages.append({role, invalid(asked)});
        while (column.count() < result.count)
            column.append(QString());
    }
    if (!evaluation.problem().isEmpty())
        result.messages.append({-1, evaluation.problem()});
    return result;
}
