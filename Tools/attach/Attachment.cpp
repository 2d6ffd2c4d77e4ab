#include "Attachment.h"

#include "AttachedTips.h"
#include "LoadedLibraries.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace {

// One for the process, as its end is told to a plain function.
QPointer<AttachedTips> tips;

void endTips()
{
    delete tips;
}

void say(const char *text)
{
    std::fprintf(stderr, "vidtips: %s: %s\n", qPrintable(QCoreApplication::applicationName()), text);
}

} // namespace

Attachment::Attachment(const AttachSettings &settings)
    : m_settings(settings)
{
    report({{"event", "loaded"}});
    QMetaObject::invokeMethod(this, &Attachment::begin, Qt::QueuedConnection);
}

Attachment::~Attachment()
{
    endTips();
}

void Attachment::begin()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return say("has no widgets, so there are no tips in it");
    if (LoadedLibraries::isBeforeThis("libVidtips.so"))
        return say("has tips of its own, so there are no others in it");
    makeTips();
}

void Attachment::makeTips()
{
    tips = AttachedTips::create(m_settings);
    // Before the application takes down its windows, whichever way it ends.
    qAddPostRoutine(endTips);
}

// A file that is gone tells that nobody waits any more.
void Attachment::report(const QJsonObject &what) const
{
    QFile file(m_settings.reportFile);
    if (!file.exists() || !file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return;
    file.write(QJsonDocument(what).toJson(QJsonDocument::Compact) + '\n');
}
