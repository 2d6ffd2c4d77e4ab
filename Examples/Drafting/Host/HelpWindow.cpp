#include "HelpWindow.h"

#include "Options.h"

#include <QtCore/QUrl>

HelpWindow::HelpWindow(QWidget *parent)
    : QTextBrowser(parent)
{
    setWindowFlags(Qt::Window);
    setObjectName(QStringLiteral("HelpWindow"));
    setFrameShape(NoFrame);
    document()->setDocumentMargin(24);
    resize(520, 560);
}

void HelpWindow::showTopic(const QString &topic, const QString &language)
{
    setWindowTitle(tr("Help"));
    QUrl page =
        QUrl::fromLocalFile(Options::shareFolder() + QStringLiteral("/Content/Help/%1.html").arg(language));
    page.setFragment(topic);
    setSource(page);
    show();
    raise();
    activateWindow();
}
