#include "PreviewStage.h"

#include "shared/Content.h"
#include "shared/Diagnostics.h"
#include "shared/Places.h"

#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTVideoComponent.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QSize>
#include <QtCore/QUrl>
#include <QtDeclarative/QDeclarativeError>
#include <QtGui/QGuiApplication>
#include <QtGui/QPixmapCache>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

#include <algorithm>

#ifdef VIDTIPS_DECLARATIVE_BUNDLED
#include <QtQuick/private/qquickpixmapcache_p.h>
#endif

using namespace Vidtips;

namespace {

constexpr int mostProblems = 20;

void fill(VTContext &context, const Content &content, const PreviewSettings &settings)
{
    const QString keyData = settings.keyData.isEmpty() ? content.keyDataFiles().value(0) : settings.keyData;
    context.set(IdleInterval, 0);
    context.set(ShowDuration, 0);
    context.set(HideDuration, 0);
    context.set(TooltipOffset, QSize(0, 0));
    context.set(UseSimpleUserInterface, settings.isSimple);
    context.set(AllowDocumentation, true);
    context.set(RestrictContent, settings.isRestricted);
    context.set(UserInterfaceLocale, settings.locale);
    context.set(ContentLocale, settings.locale);
    context.set(KeyDataFile, keyData);
}

Finding findingFrom(const QDeclarativeError &error)
{
    return {"VT601",
            error.url().toLocalFile(),
            {qMax(0, error.line()), qMax(0, error.column())},
            error.description()};
}

// Files are shown to people by their paths.
QString withoutAddresses(QString text)
{
    static const QRegularExpression address("file://\\S+");
    for (auto match = address.match(text); match.hasMatch(); match = address.match(text))
        text.replace(match.capturedStart(), match.capturedLength(),
                     Places::shown(QUrl(match.captured()).toLocalFile()));
    return text;
}

// Warnings of the QML engine come as "file:///path:line:column: text", those of a file that there is not
// without a place in it; what else is said is for developers.
bool readWarning(const QString &message, Finding &finding)
{
    static const QRegularExpression warning("^(file://\\S*?)(?::(\\d+)(?::(\\d+))?)?: (.*)$",
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = warning.match(message);
    finding = {"VT607",
               QUrl(match.captured(1)).toLocalFile(),
               {match.captured(2).toInt(), match.captured(3).toInt()},
               withoutAddresses(match.captured(4).section('\n', 0, 0).simplified())};
    return match.hasMatch();
}

// A script that held the preview up was stopped, and its user interface with it.
bool readStop(const QString &message, Finding &finding)
{
    static const QRegularExpression stop(
        "^(.+) was stopped(?: twice and|, as(?: it has (more than \\d+ items))?)");
    const QRegularExpressionMatch match = stop.match(message);
    const QString items = match.captured(2);
    finding = {"VT608",
               QFileInfo(match.captured(1)).canonicalFilePath(),
               {},
               items.isEmpty() ? "a script of this user interface does not end"
                               : "this user interface goes on making items, and has " + items};
    return match.hasMatch();
}

// What the library tells of content that it restricts.
bool readRefusal(const QString &message, Finding &finding)
{
    static const QRegularExpression refusal(
        "^Package \".*?\", (.+?)(?:, line (\\d+))?: (restricted content is refused .*)$");
    const QRegularExpressionMatch match = refusal.match(message);
    finding = {"VT614", match.captured(1), {match.captured(2).toInt(), 0}, match.captured(3)};
    return match.hasMatch();
}

void addItems(QGraphicsItem *item, QVector<QGraphicsObject *> &items)
{
    if (!item->isVisible())
        return;
    if (QGraphicsObject *const object = item->toGraphicsObject())
        items << object;
    const QList<QGraphicsItem *> children = item->childItems();
    for (QGraphicsItem *child : children)
        addItems(child, items);
}

bool isClipWaiting(const QGraphicsObject *item)
{
    const auto *const clip = qobject_cast<const VTVideoComponent *>(item);
    return clip && clip->status() == VTVideoComponent::Ready && clip->position() < 1;
}

// The first line that opens an object; what is above are imports and comments.
Position rootObjectIn(const QString &path)
{
    static const QRegularExpression object("^\\s*([A-Z][\\w.]*)\\s*\\{");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (int line = 1; !file.atEnd(); ++line) {
        const QRegularExpressionMatch match = object.match(QString::fromUtf8(file.readLine()));
        if (match.hasMatch())
            return {line, match.capturedStart(1) + 1};
    }
    return {};
}

bool hasSize(const VTView &view)
{
    const QGraphicsObject *const root = view.rootObject();
    return !root || (root->property("width").toReal() > 0 && root->property("height").toReal() > 0);
}

// Pictures are remembered by their names for a while, whatever becomes of the files.
void forgetPictures()
{
    QPixmapCache::clear();
#ifdef VIDTIPS_DECLARATIVE_BUNDLED
    QQuickPixmap::purgeCache();
#endif
}

} // namespace

class PreviewStage::Host : public VTInterface
{
public:
    Host(PreviewStage *stage, VTContext &context, VTIndex *index)
        : VTInterface(context, {}, index)
        , m_stage(stage)
    {
    }

    bool openExternalResource(VTExternalResourceType, const QString &resource) override
    {
        Q_EMIT m_stage->requested(QString("The tip asks the host to open \"%1\".").arg(resource));
        return true;
    }

    void handleMessage(VTMessageType type, const QString &message) override
    {
        if (type <= VTMessageWarning)
            warnings << message;
        Finding refusal;
        if (readRefusal(message, refusal))
            refusals << refusal;
    }

    void notification(VTNotification type, const QVariant &value, const QString &) override
    {
        if (type != VTNotificationHidden && type != VTNotificationShown)
            Q_EMIT m_stage->requested(
                QString("The tip sends the notification %1, \"%2\".").arg(int(type)).arg(value.toString()));
    }

    QStringList warnings;
    QVector<Finding> refusals;

private:
    PreviewStage *m_stage;
};

struct PreviewStage::Private
{
    VTContext context;
    std::unique_ptr<VTIndex> index;
    std::unique_ptr<Host> host;
    QPointer<VTWidget> kept;
    bool isKept = false;
    QVector<Finding> problems;
};

PreviewStage::PreviewStage(const Content &content, const PreviewSettings &settings)
    : d(new Private)
{
    const bool isOfLocale = settings.direction == Qt::LayoutDirectionAuto;
    QGuiApplication::setLayoutDirection(isOfLocale ? QLocale(settings.locale).textDirection()
                                                   : settings.direction);
    fill(d->context, content, settings);
    d->index = std::make_unique<VTIndex>(&d->context, QStringList());
    d->host = std::make_unique<Host>(this, d->context, d->index.get());
    for (const Package &package : content.packages())
        d->host->manager()->loadPackage(QFileInfo(package.path));
    for (auto it = settings.properties.cbegin(); it != settings.properties.cend(); ++it)
        d->host->setGlobalProperty(it.key(), *it);
    // As hosts say it to the shared user interface.
    if (settings.isStill)
        d->host->setGlobalProperty("motion", "off");
    if (settings.isUnavailable)
        d->host->setGlobalProperty("available", "off");
}

PreviewStage::~PreviewStage()
{
    blockSignals(true);
    // Not later: whatever the tip holds would otherwise be found in the caches by the next stage.
    delete d->kept.data();
    delete window();
    d->host.reset();
    forgetPictures();
}

bool PreviewStage::show(const QString &key, const QPoint &position)
{
    delete d->kept.data();
    d->isKept = false;
    d->problems.clear();
    d->host->warnings.clear();
    d->host->refusals.clear();
    Diagnostics::take();
    return d->host->show(key, position, nullptr) && window();
}

void PreviewStage::keep()
{
    if (!isShown() || d->isKept)
        return;
    d->kept = window();
    d->isKept = true;
    d->kept->view()->setStayOpen(true);
    d->kept->view()->setReserved(true);
}

VTWidget *PreviewStage::window() const
{
    return d->isKept ? d->kept.data() : d->host->manager()->widget();
}

bool PreviewStage::isShown() const
{
    return window() && window()->isVisible() && window()->view()->rootObject();
}

bool PreviewStage::isReplaced() const
{
    const VTView *const view = window() ? window()->view() : nullptr;
    if (!view || d->context.get(UseSimpleUserInterface, false).toBool())
        return false;
    const FileCategory &simple = Content::simpleUserInterface;
    const QString path =
        view->findComponent(simple.attribute, SimpleUserInterface, simple.defaultPath, QString());
    const QFileInfo shown(view->source().toLocalFile());
    return shown == QFileInfo(path) && shown != QFileInfo(view->uiRootFilePath());
}

QString PreviewStage::warning() const
{
    return d->host->warnings.isEmpty() ? QString() : d->host->warnings.constLast();
}

bool PreviewStage::isBroken() const
{
    const VTView *const view = window() ? window()->view() : nullptr;
    return view && view->status() == QDeclarativeView::Error;
}

QVector<QGraphicsObject *> PreviewStage::items() const
{
    QVector<QGraphicsObject *> items;
    QGraphicsObject *const root = window() ? window()->view()->rootObject() : nullptr;
    if (root)
        addItems(root, items);
    return items;
}

bool PreviewStage::hasStatus(const QGraphicsObject *item, const char *name)
{
    const QMetaObject *const meta = item->metaObject();
    const QMetaProperty status = meta->property(meta->indexOfProperty("status"));
    return status.isEnumType() && status.read(item).toInt() == status.enumerator().keyToValue(name);
}

bool PreviewStage::isLoading() const
{
    const QVector<QGraphicsObject *> all = items();
    return std::any_of(all.cbegin(), all.cend(),
                       [](const QGraphicsObject *item) { return hasStatus(item, "Loading"); });
}

bool PreviewStage::isClipAtStart() const
{
    const QVector<QGraphicsObject *> all = items();
    return std::any_of(all.cbegin(), all.cend(), isClipWaiting);
}

QVector<Finding> PreviewStage::problems()
{
    const auto add = [this](const Finding &finding) {
        if (d->problems.size() < mostProblems && !d->problems.contains(finding))
            d->problems << finding;
    };
    for (const Finding &refusal : qAsConst(d->host->refusals))
        add(refusal);
    const QStringList messages = Diagnostics::take();
    for (const QString &warning : qAsConst(d->host->warnings)) {
        Finding finding;
        // What the engine says of what was stopped follows from that.
        if (readStop(warning, finding))
            return d->problems = {finding};
    }
    if (isBroken()) {
        for (const QDeclarativeError &error : window()->view()->errors())
            add(findingFrom(error));
        return d->problems;
    }
    for (const QString &message : messages) {
        Finding finding;
        if (!readWarning(message, finding))
            continue;
        // What the user interface lacks that is not shown has kept it from being shown.
        if (isReplaced() && finding.file != shownFile())
            finding.code = "VT601";
        add(finding);
    }
    return d->problems + replacement() + sizeProblems() + brokenClips();
}

QString PreviewStage::shownFile() const
{
    return QFileInfo(window()->view()->source().toLocalFile()).canonicalFilePath();
}

QVector<Finding> PreviewStage::replacement() const
{
    const auto isReason = [](const Finding &problem) { return problem.code == "VT601"; };
    if (!isReplaced() || std::any_of(d->problems.cbegin(), d->problems.cend(), isReason))
        return {};
    const QString path = QFileInfo(window()->view()->uiRootFilePath()).canonicalFilePath();
    return {{"VT900", path, {}, "this user interface cannot be loaded, and the simple tip is shown instead"}};
}

QVector<Finding> PreviewStage::brokenClips() const
{
    QVector<Finding> broken;
    for (const VTVideoComponent *clip : failedClips()) {
        const QFileInfo file(window()->view()->findResource(clip->source()));
        if (file.isFile())
            broken << Finding{"VT501", file.canonicalFilePath(), {}, "the clip does not open"};
    }
    return broken;
}

QStringList PreviewStage::missingClips() const
{
    QStringList missing;
    for (const VTVideoComponent *clip : failedClips()) {
        if (!QFileInfo(window()->view()->findResource(clip->source())).isFile())
            missing << clip->source();
    }
    missing.removeDuplicates();
    return missing;
}

// A user interface may hide what is broken.
QVector<const VTVideoComponent *> PreviewStage::failedClips() const
{
    QVector<const VTVideoComponent *> failed;
    const QList<QGraphicsItem *> all =
        isShown() ? window()->view()->scene()->items() : QList<QGraphicsItem *>();
    for (QGraphicsItem *const item : all) {
        const auto *const clip = qobject_cast<const VTVideoComponent *>(item->toGraphicsObject());
        if (clip && clip->status() == VTVideoComponent::Error)
            failed << clip;
    }
    return failed;
}

QVector<Finding> PreviewStage::sizeProblems() const
{
    const VTView *const view = window() ? window()->view() : nullptr;
    if (!view || hasSize(*view))
        return {};
    const QString path = view->source().toLocalFile();
    return {{"VT606", path, rootObjectIn(path), "the tip has no size: give this item a width and a height"}};
}
