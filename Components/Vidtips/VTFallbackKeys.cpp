#include "VTFallbackKeys_p.h"

#include <QtCore/QMetaEnum>
#include <QtCore/QRegularExpression>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAction>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QWizard>

namespace Vidtips {

namespace {

// The names that Qt gives to the buttons of wizards: asking the wizard for a button would make it.
constexpr const char *const wizardButtons[][2] = {
    {"__qt__passive_wizardbutton0", "QWizard.BackButton"},
    {"__qt__passive_wizardbutton1", "QWizard.NextButton"},
    {"qt_wizard_commit", "QWizard.CommitButton"},
    {"qt_wizard_finish", "QWizard.FinishButton"},
    {"qt_wizard_cancel", "QWizard.CancelButton"},
    {"__qt__passive_wizardbutton5", "QWizard.HelpButton"},
    {"__qt__passive_wizardbutton6", "QWizard.CustomButton1"},
    {"__qt__passive_wizardbutton7", "QWizard.CustomButton2"},
    {"__qt__passive_wizardbutton8", "QWizard.CustomButton3"},
};

QString wizardButton(const QWidget *button)
{
    const QString name = button->objectName();
    for (const auto &row : wizardButtons) {
        if (name == QLatin1String(row[0]))
            return QLatin1String(row[1]);
    }
    return {};
}

QString dialogButton(const QDialogButtonBox *box, QAbstractButton *button)
{
    const QDialogButtonBox::StandardButton which = box->standardButton(button);
    if (which == QDialogButtonBox::NoButton)
        return {};
    const auto buttons = QMetaEnum::fromType<QDialogButtonBox::StandardButtons>();
    return QStringLiteral("QDialogButtonBox.") + QLatin1String(buttons.valueToKey(which));
}

// "&&" is a "&"; "(&S)" is how languages without Latin letters have a mnemonic.
QString withoutMnemonics(QString text)
{
    static const QRegularExpression appended(QStringLiteral("\\s*\\(&[^&]\\)"));
    text.remove(appended);
    for (int i = 0; i + 1 < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&'))
            text.remove(i, 1);
    }
    return text;
}

bool isEllipsis(QChar character)
{
    return character == QLatin1Char('.') || character == QChar(0x2026) || character.isSpace();
}

} // namespace

QString FallbackKeys::iconName(const QAction *action)
{
    return action ? action->icon().name() : QString();
}

QString FallbackKeys::plainText(const QString &text)
{
    QString plain = withoutMnemonics(text.section(QLatin1Char('\t'), 0, 0)).simplified();
    while (!plain.isEmpty() && isEllipsis(plain.back()))
        plain.chop(1);
    return plain;
}

QString FallbackKeys::label(const QWidget *widget)
{
    // Buttons that show only an icon say in their tool tip what others say in their text.
    if (const auto *const button = qobject_cast<const QAbstractButton *>(widget))
        return plainText(button->text().isEmpty() ? button->toolTip() : button->text());
    const auto *const group = qobject_cast<const QGroupBox *>(widget);
    return group ? plainText(group->title()) : QString();
}

QString FallbackKeys::standardButton(const QWidget *widget)
{
    auto *const button = qobject_cast<QAbstractButton *>(const_cast<QWidget *>(widget));
    if (!button)
        return {};
    const auto *const box = qobject_cast<QDialogButtonBox *>(button->parentWidget());
    return box ? dialogButton(box, button) : wizardButton(button);
}

QWidget *FallbackKeys::container(const QWidget *widget)
{
    QWidget *candidate = widget && !widget->isWindow() ? widget->parentWidget() : nullptr;
    while (candidate && !qobject_cast<QStatusBar *>(candidate) && !qobject_cast<QDockWidget *>(candidate))
        candidate = candidate->isWindow() ? nullptr : candidate->parentWidget();
    return candidate;
}

} // namespace Vidtips
