#include "VTTipWords_p.h"

#include "VTManager.h"
#include "VTView.h"
#include "VTWidget.h"

#include <QtCore/QStringList>
#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>

namespace Vidtips {

VTTipWords::VTTipWords(VTView *view)
    : m_view(view)
{
}

VTXmlElement *VTTipWords::content() const
{
    return m_view ? m_view->content() : nullptr;
}

QString VTTipWords::plain(const QString &text)
{
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

QString VTTipWords::title() const
{
    const VTXmlElement *const tip = content();
    if (!tip)
        return {};
    // The user interface may have set the translation already.
    const QString attribute = tip->attribute(QStringLiteral("title"));
    const QString title = tip->title();
    return title == attribute ? localised(attribute) : title;
}

QString VTTipWords::description() const
{
    QStringList parts{child(QStringLiteral("summary")), reason()};
    if (const VTXmlElement *const tip = content())
        parts << tip->attribute(QStringLiteral("shortcut"));
    parts << steps();
    parts.removeAll(QString());
    return parts.join(QLatin1Char('\n'));
}

// A catalogue that lacks a text gives nothing for it.
QString VTTipWords::localised(const QString &text) const
{
    const QString source = text.simplified();
    const VTXmlElement *const tip = content();
    if (source.isEmpty() || !tip)
        return source;
    const QString context = tip->attribute(QStringLiteral("context"));
    const QString translated = context.isEmpty() ? QString() : m_view->translate(source, context);
    const QString words = translated.isEmpty() ? source : translated;
    return plain(m_view ? m_view->interpolate(words) : words);
}

QString VTTipWords::child(const QString &name) const
{
    const VTXmlElement *const tip = content();
    const VTXmlElement *const element = tip ? tip->childElement(name) : nullptr;
    return element ? localised(element->content()) : QString();
}

QString VTTipWords::reason() const
{
    return isAvailable() ? QString() : child(QStringLiteral("unavailable"));
}

// Hosts say it by a property, for commands that are no widgets; otherwise it is the widget's to say.
bool VTTipWords::isAvailable() const
{
    const QString placeholder = QStringLiteral("%(available)s");
    const QString said = m_view ? m_view->interpolate(placeholder) : placeholder;
    if (said != placeholder)
        return said != QLatin1String("off");
    const auto *const window = m_view ? qobject_cast<const VTWidget *>(m_view->parentWidget()) : nullptr;
    const VTManager *const manager = window ? window->manager() : nullptr;
    const bool isCurrent = manager && manager->widget() == window;
    const auto *const command =
        isCurrent ? qobject_cast<const QWidget *>(manager->referenceObject()) : nullptr;
    return !command || command->isEnabled();
}

QStringList VTTipWords::steps() const
{
    QStringList sources;
    if (const VTXmlElement *const tip = content()) {
        const QList<QObject *> elements = tip->childElementList(QStringLiteral("step"));
        for (const QObject *const element : elements)
            sources << element->property("content").toString();
    }
    QStringList steps;
    for (const QString &source : qAsConst(sources)) {
        const QString step = localised(source);
        if (!step.isEmpty())
            steps << QStringLiteral("%1. %2").arg(QString::number(steps.size() + 1), step);
    }
    return steps;
}

} // namespace Vidtips
