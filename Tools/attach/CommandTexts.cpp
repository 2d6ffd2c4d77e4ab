#include "CommandTexts.h"

#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAction>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

using Vidtips::VTCommandLocator;

namespace {

QString plain(const QString &text)
{
    const QString content =
        Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
    return content.simplified();
}

// What follows the first line of a tool tip says more than a name.
QString titleIn(const QString &toolTip)
{
    const QString text =
        Qt::mightBeRichText(toolTip) ? QTextDocumentFragment::fromHtml(toolTip).toPlainText() : toolTip;
    return VTCommandLocator::plainText(text.section('\n', 0, 0));
}

// Programs put the title, and often the shortcut, into what they say of a command.
bool repeats(const QString &text, const CommandTexts &texts)
{
    const QString keys = texts.shortcut.toString(QKeySequence::NativeText);
    QString rest = VTCommandLocator::plainText(text);
    if (!keys.isEmpty())
        rest.remove('(' + keys + ')').remove(keys);
    rest = VTCommandLocator::plainText(rest);
    return rest.isEmpty() || rest.compare(texts.title, Qt::CaseInsensitive) == 0;
}

QString summaryOf(const QStringList &candidates, const CommandTexts &texts)
{
    for (const QString &candidate : candidates) {
        const QString text = plain(candidate);
        if (!repeats(text, texts))
            return text;
    }
    return {};
}

CommandTexts ofAction(const QAction *action)
{
    CommandTexts texts;
    texts.title = VTCommandLocator::plainText(action->text());
    if (texts.title.isEmpty())
        texts.title = titleIn(action->toolTip());
    texts.shortcut = action->shortcut();
    texts.icon = action->icon();
    texts.summary = summaryOf({action->statusTip(), action->whatsThis(), action->toolTip()}, texts);
    return texts;
}

QString labelOf(const QWidget *widget)
{
    if (const auto *const button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    if (const auto *const group = qobject_cast<const QGroupBox *>(widget))
        return group->title();
    if (const auto *const label = qobject_cast<const QLabel *>(widget))
        return plain(label->text());
    return widget->windowTitle();
}

// A key that comes from a mnemonic is no shortcut worth telling.
QKeySequence shortcutOf(const QAbstractButton *button)
{
    return button->shortcut() == QKeySequence::mnemonic(button->text()) ? QKeySequence() : button->shortcut();
}

CommandTexts ofWidget(const QWidget *widget)
{
    CommandTexts texts;
    texts.title = VTCommandLocator::plainText(labelOf(widget));
    if (texts.title.isEmpty())
        texts.title = titleIn(widget->toolTip());
    if (const auto *const button = qobject_cast<const QAbstractButton *>(widget)) {
        texts.shortcut = shortcutOf(button);
        texts.icon = button->icon();
    }
    texts.summary = summaryOf({widget->statusTip(), widget->whatsThis(), widget->toolTip()}, texts);
    return texts;
}

} // namespace

CommandTexts CommandTexts::of(const QObject *command)
{
    if (const auto *const button = qobject_cast<const QToolButton *>(command)) {
        if (button->defaultAction())
            return ofAction(button->defaultAction());
    }
    if (const auto *const action = qobject_cast<const QAction *>(command))
        return ofAction(action);
    if (const auto *const menu = qobject_cast<const QMenu *>(command))
        return ofAction(menu->menuAction());
    const auto *const widget = qobject_cast<const QWidget *>(command);
    return widget ? ofWidget(widget) : CommandTexts();
}
