#include "qdeclarativetextdocument_p.h"

#include "bounds/qdeclarativebounds_p.h"
#include "engine/qdeclarativelocalfile_p.h"
#include "engine/qdeclarativepicturefile_p.h"

#include <QtCore/QFileInfo>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>
#include <QtGui/QTextCursor>
#include <QtGui/QTextFrame>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlInfo>
#include <QtQml/qqml.h>

#include <private/qquickpixmapcache_p.h>

#include <algorithm>

namespace {

/** A text that nobody lays out, and that fetches nothing. */
class Draft : public QTextDocument
{
protected:
    QVariant loadResource(int, const QUrl &) override { return QByteArray(); }
};

/** Tells whether @p frame would be laid out too often: each table asks those in it twice for their sizes. */
bool isTooDeep(const QTextFrame *frame, int levels = 0)
{
    if (levels > QDeclarativeBounds::tables)
        return true;
    const QList<QTextFrame *> frames = frame->childFrames();
    return std::any_of(frames.cbegin(), frames.cend(),
                       [levels](const QTextFrame *inner) { return isTooDeep(inner, levels + 1); });
}

} // namespace

QDeclarativeTextDocument::QDeclarativeTextDocument(QObject *owner)
    : owner(owner)
{
    setUndoRedoEnabled(false);
    setDocumentMargin(0);
}

QDeclarativeTextDocument::~QDeclarativeTextDocument()
{
    for (const Picture &picture : qAsConst(pictures))
        delete picture.source;
}

void QDeclarativeTextDocument::setMarkup(const QString &markup)
{
    // Kept until the new text has asked for its own, so that what both of them show stays in the cache.
    const QHash<QUrl, Picture> before = std::exchange(pictures, {});
    setHtml(bounded(markup));
    size();
    for (const Picture &picture : before)
        delete picture.source;
}

QString QDeclarativeTextDocument::bounded(const QString &markup) const
{
    if (markup.count(QLatin1String("<table"), Qt::CaseInsensitive) <= QDeclarativeBounds::tables)
        return markup;
    Draft draft;
    draft.setHtml(markup);
    if (!isTooDeep(draft.rootFrame()))
        return markup;
    qmlWarning(owner)
        << QStringLiteral("Text of tables in more than %1 levels").arg(QDeclarativeBounds::tables);
    return Qt::convertFromPlainText(draft.toPlainText());
}

QVariant QDeclarativeTextDocument::loadResource(int type, const QUrl &name)
{
    QQmlContext *context = qmlContext(owner);
    if (type != QTextDocument::ImageResource || !context)
        return refuses(name) ? QVariant() : QTextDocument::loadResource(type, name);
    const QUrl url = context->resolvedUrl(name);
    Picture &entry = pictures[url];
    if (!entry.source) {
        entry.source = new QQuickPixmap;
        if (!QDeclarativePictureFile::refuse(url, owner))
            entry.source->load(context->engine(), url);
        if (entry.source->isLoading())
            entry.source->connectFinished(this, SLOT(pictureFinished()));
        else
            settle(entry);
    }
    QVariant shown = picture(entry);
    // Kept by the document, which else would ask again, and convert again, at every painting.
    if (!entry.isPending)
        addResource(type, name, shown);
    return shown;
}

/** What is no picture is a style sheet, of which the whole file is read. */
bool QDeclarativeTextDocument::refuses(const QUrl &name) const
{
    if (QDeclarativeLocalFile::isRefused(name, owner))
        return true;
    const bool isTooLarge = QFileInfo(name.path()).size() > QDeclarativeBounds::document;
    if (isTooLarge)
        qmlWarning(owner) << QDeclarativeBounds::message("Document", QDeclarativeBounds::document) << ": "
                          << name.toString();
    return isTooLarge;
}

QVariant QDeclarativeTextDocument::picture(const Picture &picture) const
{
    if (picture.source->isReady())
        return QPixmap::fromImage(picture.source->image());
    // Never nothing at all: the document would go on to look for a file of that name by itself.
    if (!picture.isPending)
        return QPixmap(QStringLiteral(":/qt-project.org/styles/commonstyle/images/file-16.png"));
    QPixmap nothing(1, 1);
    nothing.fill(Qt::transparent);
    return nothing;
}

void QDeclarativeTextDocument::settle(Picture &picture)
{
    picture.isPending = false;
    if (picture.source->isError())
        qmlWarning(owner) << picture.source->error();
}

void QDeclarativeTextDocument::pictureFinished()
{
    for (Picture &picture : pictures) {
        if (picture.isPending && !picture.source->isLoading())
            settle(picture);
    }
    markContentsDirty(0, characterCount());
    Q_EMIT loaded();
}

void QDeclarativeTextDocument::draw(QPainter *painter, const QColor &color, bool everything,
                                    const QRectF &exposed)
{
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = exposed;
    context.palette.setColor(QPalette::Text, color);
    if (everything) {
        QAbstractTextDocumentLayout::Selection all;
        all.cursor = QTextCursor(this);
        all.cursor.select(QTextCursor::Document);
        all.format.setForeground(color);
        context.selections.append(all);
    }
    documentLayout()->draw(painter, context);
}
