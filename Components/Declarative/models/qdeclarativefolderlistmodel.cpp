#include "qdeclarativefolderlistmodel_p.h"

#include "guard/qdeclarativeguards_p.h"

#include <QtCore/QDateTime>

namespace {

const int settleTime = 100; // ms

QString pathOf(const QUrl &url)
{
    return url.scheme() == QLatin1String("qrc") ? QLatin1Char(':') + url.path() : url.toLocalFile();
}

QUrl urlOf(const QUrl &like, const QString &path)
{
    return like.scheme() == QLatin1String("qrc") ? QUrl(QLatin1String("qrc") + path)
                                                 : QUrl::fromLocalFile(path);
}

bool isSame(const QFileInfo &one, const QFileInfo &other)
{
    return one.fileName() == other.fileName() && one.isDir() == other.isDir();
}

} // namespace

QDeclarativeFolderListModel::QDeclarativeFolderListModel(QObject *parent)
    : QAbstractListModel(parent)
{
    settle.setSingleShot(true);
    settle.setInterval(settleTime);
    connect(&watcher, &QFileSystemWatcher::directoryChanged, &settle, qOverload<>(&QTimer::start));
    connect(&settle, &QTimer::timeout, this, &QDeclarativeFolderListModel::update);
}

void QDeclarativeFolderListModel::setFolder(const QUrl &folder)
{
    if (folder == address)
        return;
    if (QDeclarativeGuards::refuses(folder, this)) {
        isRefused = !isComplete;
        return;
    }
    const QString path = pathOf(folder);
    if (!folder.isEmpty() && (path.isEmpty() || !QFileInfo(path).isDir()))
        return;
    address = folder;
    if (isComplete)
        follow();
    reset();
    Q_EMIT folderChanged();
}

QUrl QDeclarativeFolderListModel::parentFolder() const
{
    QDir folder(pathOf(address));
    if (address.isEmpty() || folder.isRoot() || !folder.cdUp())
        return {};
    const QString path = folder.path();
    return urlOf(address, path.startsWith(QLatin1Char(':')) ? path.mid(1) : path);
}

template <typename T>
void QDeclarativeFolderListModel::change(T &member, const T &value)
{
    if (member == value)
        return;
    member = value;
    reset();
}

void QDeclarativeFolderListModel::setNameFilters(const QStringList &value)
{
    change(filters, value);
}

void QDeclarativeFolderListModel::setSortField(SortField value)
{
    change(field, value);
}

void QDeclarativeFolderListModel::setSortReversed(bool value)
{
    change(isReversed, value);
}

void QDeclarativeFolderListModel::setShowDirs(bool value)
{
    change(withFolders, value);
}

void QDeclarativeFolderListModel::setShowDotAndDotDot(bool value)
{
    change(withDots, value);
}

void QDeclarativeFolderListModel::setShowOnlyReadable(bool value)
{
    change(readableOnly, value);
}

void QDeclarativeFolderListModel::componentComplete()
{
    isComplete = true;
    if (address.isEmpty() && !isRefused) {
        address = QUrl::fromLocalFile(QDir::currentPath());
        Q_EMIT folderChanged();
    }
    follow();
    reset();
}

void QDeclarativeFolderListModel::follow()
{
    if (!watcher.directories().isEmpty())
        watcher.removePaths(watcher.directories());
    if (address.isLocalFile())
        watcher.addPath(pathOf(address));
}

QDir::SortFlags QDeclarativeFolderListModel::sorting() const
{
    QDir::SortFlags flags = QDir::DirsFirst | QDir::IgnoreCase;
    switch (field) {
    case Unsorted:
        flags |= QDir::Unsorted;
        break;
    case Name:
        flags |= QDir::Name;
        break;
    case Time:
        flags |= QDir::Time;
        break;
    case Size:
        flags |= QDir::Size;
        break;
    case Type:
        flags |= QDir::Type;
        break;
    }
    return isReversed ? flags | QDir::Reversed : flags;
}

QFileInfoList QDeclarativeFolderListModel::list() const
{
    // Without a folder there is the root of the file system, alone.
    if (address.isEmpty())
        return QDeclarativeGuards::of(qmlEngine(this)) ? QFileInfoList()
                                                       : QFileInfoList{QFileInfo(QDir::rootPath())};
    if (QDeclarativeGuards::refuses(address, this))
        return {};
    QDir::Filters what = QDir::Files;
    if (withFolders)
        what |= QDir::AllDirs | QDir::Drives;
    if (!withDots)
        what |= QDir::NoDotAndDotDot;
    if (readableOnly)
        what |= QDir::Readable;
    return QDir(pathOf(address)).entryInfoList(filters, what, sorting());
}

void QDeclarativeFolderListModel::reset()
{
    if (!isComplete)
        return;
    const int before = count();
    beginResetModel();
    entries = list();
    endResetModel();
    if (count() != before)
        Q_EMIT countChanged();
}

void QDeclarativeFolderListModel::update()
{
    // Most changes are of some files in a row, for which the delegates of the others may stay.
    const QFileInfoList now = list();
    const int before = count();
    int same = 0;
    while (same < qMin(before, now.count()) && isSame(entries.at(same), now.at(same)))
        ++same;
    int sameAtEnd = 0;
    while (sameAtEnd < qMin(before, now.count()) - same
           && isSame(entries.at(before - 1 - sameAtEnd), now.at(now.count() - 1 - sameAtEnd)))
        ++sameAtEnd;
    const int gone = before - same - sameAtEnd;
    const int added = now.count() - same - sameAtEnd;
    if (gone) {
        beginRemoveRows({}, same, same + gone - 1);
        entries.erase(entries.begin() + same, entries.begin() + same + gone);
        endRemoveRows();
    }
    if (added) {
        beginInsertRows({}, same, same + added - 1);
        entries = now;
        endInsertRows();
    }
    if (count() != before)
        Q_EMIT countChanged();
}

bool QDeclarativeFolderListModel::isFolder(int index) const
{
    return index >= 0 && index < count() && entries.at(index).isDir();
}

int QDeclarativeFolderListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant QDeclarativeFolderListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    const QFileInfo &entry = entries.at(index.row());
    switch (role) {
    case FileNameRole:
        return entry.fileName();
    case FilePathRole: {
        const QString path = entry.filePath();
        return path.startsWith(QLatin1Char(':')) ? QVariant(QLatin1String("qrc") + path) : QVariant(path);
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> QDeclarativeFolderListModel::roleNames() const
{
    return {{FileNameRole, "fileName"}, {FilePathRole, "filePath"}};
}

#include "moc_qdeclarativefolderlistmodel_p.cpp"
