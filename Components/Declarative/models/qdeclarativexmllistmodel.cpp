#include "qdeclarativexmllistmodel_p.h"

#include "bounds/qdeclarativebounds_p.h"
#include "bounds/qdeclarativedownloads_p.h"
#include "engine/qdeclarativelocalfile_p.h"
#include "guard/qdeclarativeguards_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtCore/QThreadPool>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlInfo>

void QDeclarativeXmlRole::setName(const QString &name)
{
    if (name == roleName)
        return;
    roleName = name;
    Q_EMIT nameChanged();
}

void QDeclarativeXmlRole::setQuery(const QString &query)
{
    if (query.startsWith(QLatin1Char('/'))) {
        qmlWarning(this) << tr("An XmlRole query must not start with '/'");
        return;
    }
    if (query == path)
        return;
    path = query;
    Q_EMIT queryChanged();
}

void QDeclarativeXmlRole::setIsKey(bool isKey)
{
    if (isKey == key)
        return;
    key = isKey;
    Q_EMIT isKeyChanged();
}

QDeclarativeXmlListModel::QDeclarativeXmlListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

QDeclarativeXmlListModel::~QDeclarativeXmlListModel()
{
    cancel();
}

void QDeclarativeXmlListModel::setSource(const QUrl &source)
{
    if (source == address)
        return;
    address = source;
    if (text.isEmpty())
        reload();
    Q_EMIT sourceChanged();
}

void QDeclarativeXmlListModel::setXml(const QString &xml)
{
    if (xml == text)
        return;
    text = xml;
    reload();
    Q_EMIT xmlChanged();
}

void QDeclarativeXmlListModel::setQuery(const QString &query)
{
    if (!query.startsWith(QLatin1Char('/'))) {
        qmlWarning(this) << tr("An XmlListModel query must start with '/' or \"//\"");
        return;
    }
    if (query == path)
        return;
    path = query;
    reload();
    Q_EMIT queryChanged();
}

void QDeclarativeXmlListModel::setNamespaceDeclarations(const QString &declarations)
{
    if (declarations == namespaces)
        return;
    namespaces = declarations;
    reload();
    Q_EMIT namespaceDeclarationsChanged();
}

void QDeclarativeXmlListModel::appendRole(QQmlListProperty<QDeclarativeXmlRole> *list,
                                          QDeclarativeXmlRole *role)
{
    if (!role)
        return;
    auto *model = static_cast<QDeclarativeXmlListModel *>(list->object);
    for (const QDeclarativeXmlRole *other : qAsConst(model->allRoles)) {
        if (other->name() != role->name())
            continue;
        qmlWarning(role)
            << tr("\"%1\" duplicates a previous role name and will be disabled.").arg(role->name());
        return;
    }
    model->allRoles.append(role);
}

QQmlListProperty<QDeclarativeXmlRole> QDeclarativeXmlListModel::roles()
{
    using List = QQmlListProperty<QDeclarativeXmlRole>;
    return List(
        this, nullptr, appendRole,
        [](List *list) { return static_cast<QDeclarativeXmlListModel *>(list->object)->allRoles.count(); },
        [](List *list, int index) {
            return static_cast<QDeclarativeXmlListModel *>(list->object)->allRoles.value(index);
        },
        [](List *list) { static_cast<QDeclarativeXmlListModel *>(list->object)->allRoles.clear(); });
}

int QDeclarativeXmlListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows;
}

QVariant QDeclarativeXmlListModel::data(const QModelIndex &index, int role) const
{
    return columns.value(role - Qt::UserRole).value(index.row());
}

QHash<int, QByteArray> QDeclarativeXmlListModel::roleNames() const
{
    QHash<int, QByteArray> names;
    for (int i = 0; i < allRoles.count(); ++i)
        names.insert(Qt::UserRole + i, allRoles.at(i)->name().toUtf8());
    return names;
}

QVariant QDeclarativeXmlListModel::get(int index) const
{
    if (index < 0 || index >= rows)
        return {};
    QVariantMap row;
    for (int i = 0; i < qMin(allRoles.count(), columns.count()); ++i)
        row.insert(allRoles.at(i)->name(), columns.at(i).value(index));
    return row;
}

QString QDeclarativeXmlListModel::errorString() const
{
    return error;
}

void QDeclarativeXmlListModel::setStatus(Status status)
{
    if (status == state)
        return;
    state = status;
    Q_EMIT statusChanged(status);
}

void QDeclarativeXmlListModel::setProgress(qreal progress)
{
    if (progress == loaded)
        return;
    loaded = progress;
    Q_EMIT progressChanged(progress);
}

void QDeclarativeXmlListModel::componentComplete()
{
    isComplete = true;
    reload();
}

void QDeclarativeXmlListModel::cancel()
{
    if (isCancelled)
        *isCancelled = true;
    isCancelled.reset();
    if (!reply)
        return;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
    reply = nullptr;
}

void QDeclarativeXmlListModel::reload()
{
    if (!isComplete)
        return;
    cancel();
    error.clear();
    if (text.isEmpty() && address.isEmpty()) {
        adopt({});
        return;
    }
    const bool isGiven = !text.isEmpty();
    setProgress(isGiven ? 1 : 0);
    setStatus(Loading);
    if (isGiven) {
        startQuery(text.toUtf8());
    } else {
        QQmlContext *context = qmlContext(this);
        request(context ? context->resolvedUrl(address) : address);
    }
}

void QDeclarativeXmlListModel::request(const QUrl &url)
{
    QQmlEngine *engine = qmlEngine(this);
    if (!engine)
        return;
    if (QDeclarativeLocalFile::isRefused(url, this)) {
        fail(QDeclarativeLocalFile::message(url));
        return;
    }
    QNetworkRequest request(url);
    request.setRawHeader("Accept", "application/xml,*/*");
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setOriginatingObject(this);
    reply = engine->networkAccessManager()->get(request);
    connect(reply, &QNetworkReply::finished, this, &QDeclarativeXmlListModel::finishRequest);
    connect(reply, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64 total) {
        if (total > 0 && received < total)
            setProgress(qreal(received) / qreal(total));
    });
}

void QDeclarativeXmlListModel::finishRequest()
{
    QNetworkReply *const finished = reply;
    reply = nullptr;
    finished->deleteLater();
    if (finished->error() == QNetworkReply::NoError) {
        startQuery(finished->readAll());
        return;
    }
    if (QDeclarativeDownloads::isRefused(finished))
        refuse(finished->errorString());
    else
        fail(finished->errorString());
}

void QDeclarativeXmlListModel::refuse(const QString &message)
{
    qmlWarning(this) << message;
    fail(message);
}

void QDeclarativeXmlListModel::fail(const QString &message)
{
    error = message;
    const bool hadRows = rows > 0;
    adoptAll({});
    if (hadRows)
        Q_EMIT countChanged();
    setStatus(Error);
}

// A function that calls itself takes the thread's stack, and nothing interrupts it.
QString QDeclarativeXmlListModel::admittedNamespaces() const
{
    static const QRegularExpression namespacesAlone(QStringLiteral(
        "^(\\s*declare\\s+(namespace\\s+[\\w.-]+\\s*=|default\\s+(element|function)\\s+namespace)"
        "\\s*(\"[^\"]*\"|'[^']*')\\s*;)*\\s*$"));
    const QString what = QStringLiteral("declaring more than namespaces in namespaceDeclarations");
    const bool isRefused =
        !namespacesAlone.match(namespaces).hasMatch() && QDeclarativeGuards::refuses(what, this);
    return isRefused ? QString() : namespaces;
}

void QDeclarativeXmlListModel::startQuery(const QByteArray &document)
{
    if (document.size() > QDeclarativeBounds::document) {
        refuse(QDeclarativeBounds::message("Document", QDeclarativeBounds::document));
        return;
    }
    QDeclarativeXmlQuery query;
    query.document = document;
    query.query = path;
    query.namespaces = admittedNamespaces();
    query.engine = qmlEngine(this);
    for (const QDeclarativeXmlRole *role : qAsConst(allRoles))
        query.roleQueries.append(role->query());
    isCancelled = std::make_shared<std::atomic_bool>(false);
    query.isCancelled = isCancelled;
    // The model may go meanwhile, but only on this thread, where it is asked for next.
    const QPointer<QDeclarativeXmlListModel> model(this);
    QThreadPool::globalInstance()->start([query, model, application = QCoreApplication::instance()] {
        const Result result = evaluateXmlQuery(query);
        const auto deliver = [query, model, result] {
            if (model && !*query.isCancelled)
                model->adopt(result);
        };
        QMetaObject::invokeMethod(application, deliver, Qt::QueuedConnection);
    });
}

void QDeclarativeXmlListModel::adopt(const Result &result)
{
    rowsRead = result.count;
    for (const Result::Message &message : result.messages) {
        const QObject *wrong = message.role < 0 ? this : static_cast<QObject *>(allRoles.value(message.role));
        qmlWarning(wrong) << message.text;
    }
    bool hasKey = false;
    for (const QDeclarativeXmlRole *role : qAsConst(allRoles))
        hasKey = hasKey || role->isKey();
    const int before = rows;
    if (hasKey && before && result.count)
        adoptByKey(result);
    else
        adoptAll(result);
    if (rows != before)
        Q_EMIT countChanged();
    setProgress(1);
    setStatus(Ready);
}

void QDeclarativeXmlListModel::adoptAll(const Result &result)
{
    if (rows)
        remove(0, rows);
    columns = QVector<QVariantList>(result.columns.count());
    if (result.count)
        insert(result, 0, 0, result.count);
}

QStringList QDeclarativeXmlListModel::keys(const QVector<QVariantList> &values, int number) const
{
    QStringList all;
    for (int row = 0; row < number; ++row) {
        QString key;
        for (int role = 0; role < qMin(allRoles.count(), values.count()); ++role) {
            if (allRoles.at(role)->isKey())
                key += values.at(role).value(row).toString() + QLatin1Char('\0');
        }
        all.append(key);
    }
    return all;
}

void QDeclarativeXmlListModel::adoptByKey(const Result &result)
{
    columns.resize(result.columns.count());
    QHash<QString, int> places;
    const QStringList old = keys(columns, rows);
    for (int i = 0; i < old.count(); ++i)
        places.insert(old.at(i), i);
    // Rows that changed their order count as removed and new.
    QVector<bool> isKept(rows, false);
    QVector<int> oldPlaces;
    int last = -1;
    const QStringList wanted = keys(result.columns, result.count);
    for (const QString &key : wanted) {
        const int place = places.value(key, -1);
        oldPlaces.append(place > last ? place : -1);
        if (place <= last)
            continue;
        last = place;
        isKept[place] = true;
    }
    for (int end = rows; end > 0; --end) {
        int begin = end;
        while (begin > 0 && !isKept.at(begin - 1))
            --begin;
        if (begin < end)
            remove(begin, end - begin);
        end = begin;
    }
    for (int i = 0; i < result.count;) {
        int end = i;
        while (end < result.count && oldPlaces.at(end) < 0)
            ++end;
        if (i < end)
            insert(result, i, i, end - i);
        if (end < result.count)
            update(result, end);
        i = end + 1;
    }
}

void QDeclarativeXmlListModel::update(const Result &result, int at)
{
    // The keys say that it is the same row: who shows it is not told of other values.
    for (int role = 0; role < columns.count(); ++role)
        columns[role][at] = result.columns.at(role).value(at);
}

void QDeclarativeXmlListModel::insert(const Result &result, int from, int at, int number)
{
    beginInsertRows({}, at, at + number - 1);
    for (int role = 0; role < columns.count(); ++role) {
        QVariantList &column = columns[role];
        column = column.mid(0, at) + result.columns.at(role).mid(from, number) + column.mid(at);
    }
    rows += number;
    endInsertRows();
    Q_EMIT itemsInserted(at, number);
}

void QDeclarativeXmlListModel::remove(int at, int number)
{
    beginRemoveRows({}, at, at + number - 1);
    for (QVariantList &column : columns)
        column = column.mid(0, at) + column.mid(at + number);
    rows -= number;
    endRemoveRows();
    Q_EMIT itemsRemoved(at, number);
}

#include "moc_qdeclarativexmllistmodel_p.cpp"
