#include "Screenshots.h"

#include "ProblemOverlay.h"
#include "TipProblems.h"
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "shared/SavedFile.h"
#include "stage/PreviewStage.h"
#include "stage/StageClock.h"

#include <Vidtips/VTWidget.h>

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtGui/QImageWriter>
#include <QtGui/QPainter>

using namespace Vidtips;

namespace {

QImage grabbed(QWidget *widget)
{
    return widget->grab().toImage();
}

// As on screen: the problems lie over the tip, which may be smaller than they are.
QImage withProblems(const QImage &tip, const QStringList &problems, const QWidget *window)
{
    ProblemOverlay overlay;
    overlay.setProblems(problems, window);
    const QImage top = grabbed(&overlay);
    QImage whole(qMax(tip.width(), top.width()), qMax(tip.height(), top.height()), QImage::Format_RGB32);
    whole.fill(Qt::white);
    whole.setDevicePixelRatio(top.devicePixelRatio());
    QPainter painter(&whole);
    painter.drawImage(0, 0, tip);
    painter.drawImage(0, 0, top);
    return whole;
}

QString fileNameFor(const QString &key, int number)
{
    QString name = key;
    name.replace(QRegularExpression("[^A-Za-z0-9._-]"), "_");
    return QString("%1-%2.png").arg(number, 3, 10, QChar('0')).arg(name.left(80));
}

void tell(const QStringList &problems, Console &console)
{
    for (const QString &problem : problems)
        console.note(problem);
}

QString saved(const QImage &image, const QString &file)
{
    QBuffer bytes;
    const QByteArray suffix = QFileInfo(file).suffix().toLatin1();
    QImageWriter writer(&bytes, suffix.isEmpty() ? "PNG" : suffix);
    if (!writer.write(image))
        return QString("cannot write %1: %2").arg(file, writer.errorString());
    return SavedFile::write(file, bytes.data());
}

const char pageHead[] = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>Tips</title>
<style>
body { margin: 24px; font: 14px sans-serif; background: %1; color: %2; }
main { display: flex; flex-wrap: wrap; gap: 24px; align-items: flex-start; }
figure { margin: 0; }
figcaption { margin-bottom: 6px; }
code { opacity: 0.7; }
pre { color: #d33; white-space: pre-wrap; max-width: 420px; }
</style>
</head>
<body>
<h1>%3</h1>
<main>
)";

} // namespace

Screenshots::Shot Screenshots::take(StageClock &clock, PreviewStage &stage, TipProblems &problems,
                                    const PreviewKey &key) const
{
    Shot shot;
    shot.key = key;
    problems.setKey(key.key);
    const bool isShown = stage.show(key.key, QPoint(0, 0));
    pass(clock, stage);
    shot.problems = problems.lines(stage);
    if (!isShown)
        shot.problems << QString("the tip \"%1\" is not shown").arg(key.key);
    else
        shot.image = grabbed(stage.window());
    if (!shot.problems.isEmpty())
        shot.image = withProblems(shot.image, shot.problems, stage.window());
    return shot;
}

void Screenshots::pass(StageClock &clock, PreviewStage &stage) const
{
    if (m_settings.phase == TipPhase::First) {
        clock.pass(stage, StageClock::untilSeen);
        return;
    }
    clock.pass(stage, m_delay);
    if (m_settings.phase == TipPhase::Kept) {
        stage.keep();
        clock.pass(stage, StageClock::untilSeen);
    }
    clock.passUntilClipsPlay(stage);
}

int Screenshots::one(const QString &key, const QString &file, Console &console)
{
    const QByteArray suffix = QFileInfo(file).suffix().toLower().toLatin1();
    if (!suffix.isEmpty() && !QImageWriter::supportedImageFormats().contains(suffix))
        return console.fail(
            QString("there are no pictures of the kind \"%1\"").arg(QString::fromLatin1(suffix)));
    if (QFileInfo(file).isDir())
        return console.fail(QString("the picture's file is a folder: %1").arg(file));
    StageClock clock;
    PreviewStage stage(m_content, m_settings);
    TipProblems problems(m_content, m_settings);
    const Shot shot = take(clock, stage, problems, {key, {}});
    const QString problem = saved(shot.image, file);
    if (!problem.isEmpty())
        return console.fail(problem);
    tell(shot.problems, console);
    console.writeLine(Places::shown(QFileInfo(file).canonicalFilePath()));
    return shot.problems.isEmpty() ? ExitFine : ExitFindings;
}

int Screenshots::all(const QVector<PreviewKey> &keys, const QString &folder, Console &console)
{
    if (!QDir().mkpath(folder))
        return console.fail(QString("cannot make the folder: %1").arg(folder));
    StageClock clock;
    PreviewStage stage(m_content, m_settings);
    TipProblems problems(m_content, m_settings);
    QVector<Shot> shots;
    bool isFine = true;
    for (const PreviewKey &key : keys) {
        console.progress(shots.size(), keys.size(), "tips");
        Shot shot = take(clock, stage, problems, key);
        shot.file = fileNameFor(key.key, shots.size() + 1);
        const QString problem = saved(shot.image, folder + '/' + shot.file);
        if (!problem.isEmpty())
            return console.fail(problem);
        tell(shot.problems, console);
        isFine = isFine && shot.problems.isEmpty();
        shots << shot;
    }
    console.progress(keys.size(), keys.size(), "tips");
    const QString index = folder + "/index.html";
    const QString problem = SavedFile::write(index, page(shots).toUtf8());
    if (!problem.isEmpty())
        return console.fail(problem);
    console.writeLine(Places::shown(QFileInfo(index).canonicalFilePath()));
    return isFine ? ExitFine : ExitFindings;
}

QString Screenshots::page(const QVector<Shot> &shots) const
{
    const QString heading = QString("%1 tips, %2").arg(shots.size()).arg(m_settings.locale);
    QString html = QString(pageHead).arg(m_settings.isDark ? "#14181d" : "#e9ecef",
                                         m_settings.isDark ? "#e3e9f0" : "#1f2731", heading.toHtmlEscaped());
    for (const Shot &shot : shots) {
        const QSize size = (QSizeF(shot.image.size()) / shot.image.devicePixelRatio()).toSize();
        html += QString("<figure><figcaption>%1 <code>%2</code></figcaption>\n"
                        "<img src=\"%3\" width=\"%4\" height=\"%5\" alt=\"%2\">\n")
                    .arg(shot.key.title.toHtmlEscaped(), shot.key.key.toHtmlEscaped(),
                         QString::fromLatin1(QUrl::toPercentEncoding(shot.file)))
                    .arg(size.width())
                    .arg(size.height());
        if (!shot.problems.isEmpty())
            html += "<pre>" + shot.problems.join('\n').toHtmlEscaped() + "</pre>\n";
        html += "</figure>\n";
    }
    return html + "</main>\n</body>\n</html>\n";
}
