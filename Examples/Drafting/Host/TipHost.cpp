#include "TipHost.h"

#include "Commands.h"
#include "Core/DraftingScene.h"
#include "MessageLog.h"
#include "Options.h"

#include <Vidtips/VTIndex.h>
#include <Vidtips/VTManager.h>

#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

using namespace Vidtips;

namespace {

const QString fallbackTip = QStringLiteral("tip.fallback");

// Handing the settings over happens while the base class is made, before any member exists.
VTContext &filled(VTContext &context, const Options &options)
{
    TipHost::fill(context, options);
    return context;
}

QString onOff(bool on)
{
    return on ? QStringLiteral("on") : QStringLiteral("off");
}

} // namespace

void TipHost::fill(VTContext &context, const Options &options)
{
    context.set(InstallEventFilter, true);
    context.set(AlwaysShowToolTips, true);
    context.set(ShowDuration, options.motion ? 120 : 0);
    context.set(HideDuration, options.motion ? 160 : 0);
    context.set(TooltipOffset, QSize(20, 24));
    context.set(TipsOff, options.tipsOff);
    context.set(UseSimpleUserInterface, options.simpleTips);
    context.set(RequiredModifiers, options.modifierOnly ? int(Qt::ControlModifier) : 0);
    context.set(KeyDataFile, Options::shareFolder() + QStringLiteral("/Content/Keys.xml"));
    context.set(MessageThreshold, int(options.debugMessages ? VTMessageDebug : VTMessageWarning));
    context.set(AllowDocumentation, true);
    if (options.idleInterval >= 0)
        context.set(IdleInterval, options.idleInterval);
}

TipHost::TipHost(VTContext &context, const Options &options, Commands *commands, MessageLog *log)
    : VTInterface(filled(context, options), options.dataPaths, nullptr)
    , m_commands(commands)
    , m_log(log)
    , m_container(options.reserveInContainer)
    , m_fallback(options.fallback)
{
    setMotion(options.motion);
    setGlobalProperty(QStringLiteral("application"), QCoreApplication::applicationName());
}

TipHost::~TipHost()
{
    // An index is the host's to delete, also the one that the manager makes.
    delete manager()->index();
}

void TipHost::setMotion(bool on)
{
    setGlobalProperty(QStringLiteral("motion"), onOff(on));
    context().set(ShowDuration, on ? 120 : 0);
    context().set(HideDuration, on ? 160 : 0);
}

void TipHost::setLanguage(const QString &localeName)
{
    context().set(UserInterfaceLocale, localeName);
    context().set(ContentLocale, localeName);
    const QString step = QLocale(localeName).toString(DraftingScene::gridStep, 'f', 0);
    setGlobalProperty(QStringLiteral("grid"), step + QStringLiteral("\u00a0mm"));
}

bool TipHost::showUnderPointer()
{
    const QPoint position = QCursor::pos();
    QWidget *widget = QApplication::widgetAt(position);
    QRect rect;
    const QString key = keyAt(widget, position, rect);
    if (key.isEmpty())
        return false;
    // The user has asked: no further key need be held, and one that was just pressed is not yet known to be.
    const QVariant required = context().get(RequiredModifiers, 0);
    context().set(RequiredModifiers, 0);
    const bool shown = show(key, position, widget, rect);
    context().set(RequiredModifiers, required);
    return shown;
}

bool TipHost::openHelp(const QString &key)
{
    const QString help = key.isEmpty() ? QString() : vidTipAttribute(key, QStringLiteral("help"), QString());
    if (help.isEmpty())
        return false;
    if (!QUrl(help).scheme().isEmpty())
        return openExternalResource(VTResourceUrl, help);
    return openExternalResource(help.contains(QLatin1Char('/')) ? VTResourcePath : VTResourceTopic, help);
}

QWidget *TipHost::createWindow(VTWindowType type)
{
    if (type != VTWindowTooltip || !m_container)
        return nullptr;
    // Not the active window: that is the tip itself once it was clicked.
    auto *window = new QWidget(m_log ? m_log->window() : nullptr, Qt::Tool);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setObjectName(QStringLiteral("PinnedTip"));
    return window;
}

QString TipHost::keyAt(QObject *object, const QPoint &position, QRect &rect)
{
    QString key = m_locator.keyAt(object, position, rect);
    // Only commands have a say in the fallback: the drawing and the frame of the window stay silent.
    const bool covered = m_fallback && m_commands->action(key);
    context().set(FallbackKey, covered ? fallbackTip : QString());
    return key;
}

bool TipHost::confirms(const QUrl &url) const
{
    QMessageBox question(QMessageBox::Question, tr("Open outside?"),
                         tr("A tip wants to open this outside %1:").arg(QCoreApplication::applicationName()),
                         QMessageBox::NoButton, m_log ? m_log->window() : nullptr);
    question.setInformativeText(url.toDisplayString());
    const QAbstractButton *open = question.addButton(tr("Open"), QMessageBox::AcceptRole);
    question.setDefaultButton(question.addButton(tr("Cancel"), QMessageBox::RejectRole));
    question.exec();
    return question.clickedButton() == open;
}

bool TipHost::openExternalResource(VTExternalResourceType type, const QString &resource)
{
    if (type == VTResourceTopic) {
        Q_EMIT topicRequested(resource);
        return true;
    }
    const QUrl url = type == VTResourceUrl ? QUrl(resource) : QUrl::fromLocalFile(resource);
    return confirms(url) && QDesktopServices::openUrl(url);
}

void TipHost::handleMessage(VTMessageType type, const QString &message)
{
    if (!m_log) {
        VTInterface::handleMessage(type, message);
        return;
    }
    const auto severity = type <= VTMessageError ? MessageLog::Error
        : type <= VTMessageWarning               ? MessageLog::Warning
        : type <= VTMessageInformation           ? MessageLog::Information
                                                 : MessageLog::Debug;
    m_log->append(severity, message);
}

QString TipHost::shortCutForObject(const QString &key, QObject *, const QString &shortcut)
{
    describe(key);
    const QAction *action = m_commands->action(key);
    if (!action || action->shortcut().isEmpty())
        return shortcut;
    return action->shortcut().toString(QKeySequence::NativeText);
}

// The tip reads these when it appears, which is right after it asked for its shortcut.
void TipHost::describe(const QString &key)
{
    const QAction *action = m_commands->action(key);
    setGlobalProperty(QStringLiteral("available"), onOff(!action || action->isEnabled()));
    setGlobalProperty(QStringLiteral("active"), onOff(action && action->isChecked()));
}

void TipHost::notification(VTNotification type, const QVariant &, const QString &text)
{
    if (type == VTNotificationShown) {
        m_shownKey = text;
        Q_EMIT tipShown(text);
    } else if (type == VTNotificationHidden) {
        if (text == m_shownKey)
            m_shownKey.clear();
        Q_EMIT tipHidden(text);
    } else if (int(type) == CloseWindow && QApplication::activeWindow()) {
        QApplication::activeWindow()->close();
    }
}
