#include "UserInterfaceCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "stage/PreviewStage.h"

#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>

#include <algorithm>

namespace {

constexpr int settleTime = 50; // milliseconds: what a user interface does once it is loaded

void settle()
{
    QEventLoop loop;
    QTimer::singleShot(settleTime, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

void UserInterfaceCheck::run(const Content &content, bool isRestricted, Findings &findings)
{
    m_isRestricted = isRestricted;
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
        || findings.contains(path, {"VT100", "VT601", "VT602", "VT603"}))
        return;
    m_shown << path;
    PreviewSettings settings;
    settings.locale = file.locale().isEmpty() ? "en_US" : file.locale();
    settings.isSimple = isSimple;
    settings.isRestricted = m_isRestricted;
    PreviewStage stage(content, settings);
    if (!stage.show(entry.attribute("key"), {}))
        return;
    settle();
    if (stage.isBroken())
        return;
    for (const Finding &problem : stage.problems()) {
        if (!isKnown(problem, path, findings))
            findings.add(problem.code, problem.file, problem.position, problem.message);
    }
}

// What a file names in so many words has been looked for already, and what it is refused is complained about
// as well.
bool UserInterfaceCheck::isKnown(const Finding &problem, const QString &path, const Findings &findings)
{
    const QVector<QString> named{"VT605", "VT609", "VT610", "VT611", "VT612", "VT613"};
    const auto isThere = [&](const QString &code) {
        return findings.containsAt(problem.file, problem.position.line, code);
    };
    if (problem.position.line > 0)
        return std::any_of(named.cbegin(), named.cend(), isThere);
    return findings.contains(path, {"VT605"}) || findings.says(problem.file, problem.message);
}
