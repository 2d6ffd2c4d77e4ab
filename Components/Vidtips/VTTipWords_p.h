#pragma once

#include <QtCore/QPointer>
#include <QtCore/QString>

namespace Vidtips {

class VTView;
class VTXmlElement;

/**
 * What a tip says, in words, from its content element: the same for every user interface. Texts of content
 * that serves every locale (its attribute "context") are translated, and placeholders are filled. The host is
 * asked for that and may destroy anything; what is gone says nothing.
 */
class VTTipWords
{
public:
    /** @p view may be null and have no content. */
    explicit VTTipWords(VTView *view);

    /** Returns what the tip is called. */
    QString title() const;

    /** Returns the summary, why the command is not available, the shortcut and the steps, each on its line.
     */
    QString description() const;

    /** Returns @p text as it reads when it is taken for rich text, if it looks like that. */
    static QString plain(const QString &text);

private:
    VTXmlElement *content() const;
    QString localised(const QString &text) const;
    QString child(const QString &name) const;
    QString reason() const;
    QStringList steps() const;
    bool isAvailable() const;

    const QPointer<VTView> m_view;
};

} // namespace Vidtips
