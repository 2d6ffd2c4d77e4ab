#include "PreviewStage.h"

#include "check/ContentCheck.h"
#include "check/FileCheck.h"
#include "check/QmlCheck.h"
#include "findings/FindingReport.h"
#include "shared/Content.h"
#include "shared/Diagnostics.h"
#include "shared/Places.h"

#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSize>
#include <QtCore/QUrl>
#include <QtDeclarative/QDeclarativeError>
#include <QtGui/QPixmapCache>

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
    context.set(UserInterfaceLocale, settings.locale);
    context.set(ContentLocale, settings.locale);
    context.set(KeyDataFile, keyData);
}

QString describe(const QDeclarativeError &error)
{
    const Position place{qMax(0, error.line()), qMax(0, error.column())};
    return Places::shown(error.url().toLocalFile(), place) + ": " + error.description();
}

// Warnings of the QML engine come as "file:///path:line:column: text"; what else is said is for developers.
QString describe(const QString &message)
{
    static const QRegularExpression warning("^(file://\\S*?):(\\d+)(?::(\\d+))?: (.*)$",
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = warning.match(message);
    if (!match.hasMatch())
        return {};
    const Position place{match.captured(2).toInt(), match.captured(3).toInt()};
    return Places::shown(QUrl(match.captured(1)).toLocalFile(), place) + ": "
        + match.captured(4).simplified();
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

    void handleMessage(VTMessageType, const QString &) override { }

    void notification(VTNotification type, const QVariant &value, const QString &) override
    {
        if (type != VTNotificationHidden && type != VTNotificationShown)
            Q_EMIT m_stage->requested(
                QString("The tip sends the notification %1, \"%2\".").arg(int(type)).arg(value.toString()));
    }

private:
    PreviewStage *m_stage;
};

struct PreviewStage::Private
{
    VTContext context;
    std::unique_ptr<VTIndex> index;
    std::unique_ptr<Host> host;
    const Content *content = nullptr;
    Findings findings;
    QString locale;
    bool isSimple = false;
    bool isRefused =
        false; ///< The user interface cannot be one, which is told in better words than the engine's.
    QStringList found;
    QStringList problems;
};

PreviewStage::PreviewStage(const Content &content, const PreviewSettings &settings)
    : d(new Private)
{
    fill(d->context, content, settings);
    d->content = &content;
    d->locale = settings.locale;
    d->isSimple = settings.isSimple;
    FileCheck files;
    ContentCheck::run(content, files, d->findings);
    d->index = std::make_unique<VTIndex>(&d->context, QStringList());
    d->host = std::make_unique<Host>(this, d->context, d->index.get());
    for (const Package &package : content.packages())
        d->host->manager()->loadPackage(QFileInfo(package.path));
    for (auto it = settings.properties.cbegin(); it != settings.properties.cend(); ++it)
        d->host->setGlobalProperty(it.key(), *it);
}

PreviewStage::~PreviewStage()
{
    blockSignals(true);
    // Not later: whatever the tip holds would otherwise be found in the caches by the next stage.
    delete window();
    d->host.reset();
    forgetPictures();
}

bool PreviewStage::show(const QString &key, const QPoint &position)
{
    d->problems.clear();
    d->found = findingsOf(key);
    Diagnostics::take();
    return d->host->show(key, position, nullptr) && window();
}

VTWidget *PreviewStage::window() const
{
    return d->host->manager()->widget();
}

QString PreviewStage::userInterfaceOf(const QString &key) const
{
    const FileCategory &category = d->isSimple ? Content::simpleUserInterface : Content::fullUserInterface;
    for (const ControlFile &file : d->content->controlFiles()) {
        for (const XmlNode *entry : file.entries()) {
            if (file.isAdmitted && entry->attribute("key") == key)
                return d->content->find(file, entry, category);
        }
    }
    return {};
}

QStringList PreviewStage::findingsOf(const QString &key)
{
    QVector<Finding> found = ContentCheck::ofTip(*d->content, d->findings, key, d->locale);
    Findings imports;
    d->isRefused = QmlCheck::importsWhatCannotBe(userInterfaceOf(key), imports);
    found += imports.sorted();
    // Other locales and the other user interface are not on the screen.
    const QStringList elsewhere{"VT304", d->isSimple ? "VT402" : "VT403"};
    QStringList lines;
    for (const Finding &finding : qAsConst(found)) {
        if (!elsewhere.contains(finding.code))
            lines << FindingReport::line(finding);
    }
    return lines;
}

QStringList PreviewStage::problems()
{
    const QStringList messages = Diagnostics::take();
    const VTView *const view = window() ? window()->view() : nullptr;
    const bool isBroken = view && view->status() == QDeclarativeView::Error;
    if (isBroken && !d->isRefused) {
        for (const QDeclarativeError &error : view->errors())
            d->problems << describe(error);
    } else if (!isBroken) {
        for (const QString &message : messages)
            d->problems << describe(message);
    }
    d->problems.removeAll(QString());
    d->problems.removeDuplicates();
    d->problems = d->problems.mid(0, mostProblems);
    return d->found + d->problems;
}
