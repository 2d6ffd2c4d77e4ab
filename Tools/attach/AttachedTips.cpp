#include "AttachedTips.h"

#include "CommandTexts.h"
#include "attach/AttachSettings.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTPlacement.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QLocale>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>

using namespace Vidtips;

namespace {

// A text with a placeholder in it would be filled in again; for one that is null there is no property.
QString fillingIn(const QString &text)
{
    return text.isNull() || text.contains("%(") ? QString("") : text;
}

QString onOneLine(const QString &text)
{
    return text.isEmpty() ? QString("-") : text.simplified();
}

} // namespace

AttachedTips *AttachedTips::create(const AttachSettings &settings)
{
    VTContext context;
    context.set(InstallEventFilter, true);
    context.set(ContentLocale, settings.locale.isEmpty() ? QLocale().name() : settings.locale);
    // What has no content in the program's language is better shown in this one than not at all.
    context.set(UserInterfaceLocale, "en_US");
    auto *const tips = new AttachedTips(context, settings);
    new VTPlacement(tips->manager());
    return tips;
}

AttachedTips::AttachedTips(VTContext &context, const AttachSettings &settings)
    : VTInterface(context, settings.dataPaths, nullptr)
    , m_index(manager()->index())
    , m_traces(settings.isTraced)
{
    m_locator.setFallbacks(CommandTexts::fallbacks);
}

// Packages of another program look like tips that do not work.
AttachedTips::~AttachedTips()
{
    if (m_asked.isEmpty() || m_traces)
        return;
    const QStringList all = keys();
    const auto hasTip = [&](const QString &key) { return all.contains(key); };
    if (std::none_of(m_asked.cbegin(), m_asked.cend(), hasTip))
        std::fprintf(stderr,
                     "vidtips: no command that the pointer rested on has a tip in the packages; --trace "
                     "tells the keys of commands\n");
}

QString AttachedTips::keyAt(QObject *object, const QPoint &position, QRect &rect)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto isForeign = [this](const QWidget *window) { return isForeignTip(window); };
    if (std::any_of(windows.begin(), windows.end(), isForeign)) {
        context().set(TipsOff, true);
        return {};
    }
    m_command = m_locator.commandAt(object, position);
    if (m_traces && !isTraced(object, position))
        trace(object, position);
    if (!m_command.key.isEmpty())
        m_asked.insert(m_command.key);
    rect = m_command.rect;
    return m_command.key;
}

// A part of the program that was loaded later may bring tips of its own.
bool AttachedTips::isForeignTip(const QWidget *window) const
{
    const auto *const tip = qobject_cast<const VTWidget *>(window);
    return tip && tip->manager() && tip->manager() != manager();
}

QString AttachedTips::shortCutForObject(const QString &key, QObject *object, const QString &shortcut)
{
    const QObject *const command = key == m_command.key ? m_command.object.data() : object;
    const QString current = CommandTexts::of(command).shortcut.toString(QKeySequence::NativeText);
    return current.isEmpty() ? shortcut : current;
}

void AttachedTips::notification(VTNotification type, const QVariant &, const QString &)
{
    if (type != VTNotificationShown)
        return;
    const CommandTexts texts = CommandTexts::of(m_command.object);
    setGlobalProperty("title", fillingIn(texts.title));
    setGlobalProperty("summary", fillingIn(texts.summary));
}

void AttachedTips::handleMessage(VTMessageType, const QString &message)
{
    std::fprintf(stderr, "vidtips: %s\n", qPrintable(message));
}

// Qt asks the parents of a widget that has no tool tip as well, for the same place.
bool AttachedTips::isTraced(QObject *object, const QPoint &position) const
{
    const auto *const parent = qobject_cast<QWidget *>(object);
    const auto *const child = qobject_cast<QWidget *>(m_traced.data());
    return m_tracedPosition == position && parent && child && parent->isAncestorOf(child);
}

void AttachedTips::trace(QObject *object, const QPoint &position)
{
    m_traced = object;
    m_tracedPosition = position;
    const QObject *const command = m_command.object ? m_command.object.data() : object;
    const QString text = CommandTexts::of(command).title;
    const bool hasTip = !m_command.key.isEmpty() && keys().contains(m_command.key);
    std::fprintf(stderr, "%s\t%s\t%s%s\n", qPrintable(onOneLine(m_command.key)),
                 command->metaObject()->className(), qPrintable(onOneLine(text)), hasTip ? "\ttip" : "");
    std::fflush(stderr);
}
