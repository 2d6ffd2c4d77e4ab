#include "UserInterfaceCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "stage/PreviewStage.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>

namespace {

constexpr int settleTime = 50; // milliseconds: what a user interface does once it is loaded

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(settleTime, &loop, &QEventLoop::quit);
    loop.exec();
}

// The first line that opens an object; what is above are imports and comments.
Position rootObjectIn(const QString &path)
{
    static const QRegularExpression object("^\\s*([A-Z][\\w.]*)\\s*\\{");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    for (int line = 1; !file.atEnd(); ++line) {
        const QRegularExpressionMatch match = object.match(QString::fromUtf8(file.readLine()));
        if (match.hasMatch())
            return {line, match.capturedStart(1) + 1};
    }
    return {};
}

bool hasSize(const PreviewStage &stage)
{
    const Vidtips::VTView *const view = stage.window() ? stage.window()->view() : nullptr;
    const QGraphicsObject *const root = view ? view->rootObject() : nullptr;
    return !root || (root->property("width").toReal() > 0 && root->property("height").toReal() > 0);
}

} // namespace

void UserInterfaceCheck::run(const Content &content, Findings &findings)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted || !file.document.error().isEmpty())
            continue;
        for (const XmlNode *entry : file.entries()) {
            show(content, file, *entry, false, findings);
            show(content, file, *entry, true, findings);
        }
    }
}

void UserInterfaceCheck::show(const Content &content, const ControlFile &file, const XmlNode &entry,
                              bool isSimple, Findings &findings)
{
    const FileCategory &category = isSimple ? Content::simpleUserInterface : Content::fullUserInterface;
    const QString path = QFileInfo(content.find(file, &entry, category)).canonicalFilePath();
    if (!QFileInfo(path).isFile() || m_shown.contains(path)
        || findings.contains(path, {"VT601", "VT602", "VT603"}))
        return;
    m_shown << path;
    PreviewSettings settings;
    settings.locale = file.locale().isEmpty() ? "en_US" : file.locale();
    settings.isSimple = isSimple;
    PreviewStage stage(content, settings);
    if (!stage.show(entry.attribute("key"), {}))
        return;
    settle();
    if (stage.isBroken())
        return;
    if (!hasSize(stage))
        findings.add("VT606", path, rootObjectIn(path),
                     "the tip has no size: give this item a width and a height");
    for (const Finding &problem : stage.problems()) {
        // What a file names in so many words has been looked for already.
        if (!findings.containsAt(problem.file, problem.position.line, "VT605"))
            findings.add(problem.code, problem.file, problem.position, problem.message);
    }
}
