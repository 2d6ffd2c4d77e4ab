#include "Attachment.h"

#include "AttachedTips.h"
#include "Harvest.h"
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

} // namespace

Attachment::Attachment(const AttachSettings &settings)
    : m_settings(settings)
{
    report({{"event", "loaded"}, {"process", qint64(QCoreApplication::applicationPid())}});
    QMetaObject::invokeMethod(this, &Attachment::begin, Qt::QueuedConnection);
}

Attachment::~Attachment()
{
    endTips();
}

void Attachment::begin()
{
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return stepBack("has no widgets, so there are no tips in it");
    if (!m_settings.harvestFolder.isEmpty()) {
        m_harvest = std::make_unique<Harvest>(m_settings.harvestFolder, m_settings.harvestWait,
                                              [this](const QJsonObject &what) { report(what); });
        return;
    }
    if (LoadedLibraries::isBeforeThis("libVidtips.so"))
        return stepBack("has tips of its own, so there are no others in it");
    makeTips();
}

void Attachment::stepBack(const char *reason)
{
    report({{"event", "steppedBack"}});
    std::fprintf(stderr, "vidtips: %s: %s\n", qPrintable(QCoreApplication::applicationName()), reason);
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
