#include "Core/DrawTool.h"
#include "Core/SelectTool.h"
#include "Core/TransformTool.h"
#include "Film.h"

#include <QtCore/QDir>
#include <QtCore/QTextStream>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include <functional>

namespace {

using Script = std::function<void(Film &)>;

struct Clip
{
    QString file;
    ClipFormat format;
    QString icon;
    Script script;
};

const ClipFormat h264{
    "mp4", {"-c:v", "libx264", "-preset", "veryslow", "-crf", "23", "-g", "50", "-movflags", "+faststart"}};
const ClipFormat vp8{"webm",
                     {"-c:v", "libvpx", "-b:v", "300k", "-crf", "10", "-g", "50", "-auto-alt-ref", "1"}};
const ClipFormat vp9{"webm", {"-c:v", "libvpx-vp9", "-b:v", "0", "-crf", "26", "-g", "50", "-row-mt", "0"}};
const ClipFormat mpeg4{"avi", {"-c:v", "mpeg4", "-q:v", "4", "-g", "50"}};

void select(Film &film)
{
    for (Shape *shape : film.scene().shapes())
        shape->setSelected(true);
}

// A small part with a left and a right, so that turning and mirroring can be told apart.
void drawBracket(Film &film, const QPointF &at)
{
    film.scene().draw(Shape::Polyline,
                      {at + QPointF(0, 0), at + QPointF(40, 0), at + QPointF(40, 10), at + QPointF(10, 10),
                       at + QPointF(10, 40), at + QPointF(0, 40), at});
    film.scene().draw(Shape::Circle, {at + QPointF(20, 20), at + QPointF(20, 26)});
}

void filmPicks(Film &film, Tool *tool, const QVector<QPointF> &picks)
{
    film.start({-90, 48});
    film.use(tool);
    film.wait(0.3);
    for (const QPointF &pick : picks) {
        film.moveTo(pick, 0.95);
        film.click();
    }
}

void filmEnd(Film &film)
{
    film.moveTo({86, 46}, 0.8);
    film.wait(1.2);
}

void filmLine(Film &film)
{
    film.scene().draw(Shape::Rectangle, {{-60, -30}, {60, -30}, {60, 30}, {-60, 30}});
    filmPicks(film, new DrawTool(&film.scene(), Shape::Line), {{-60, 30}, {60, -30}});
    film.moveTo({-60, -30}, 0.9);
    film.click();
    film.moveTo({60, 30}, 0.9);
    film.click();
    filmEnd(film);
}

void filmRectangle(Film &film)
{
    filmPicks(film, new DrawTool(&film.scene(), Shape::Rectangle), {{-50, -30}, {30, 30}});
    film.moveTo({-10, -10}, 0.8);
    film.click();
    film.moveTo({70, 40}, 0.9);
    film.click();
    filmEnd(film);
}

void filmCircle(Film &film)
{
    film.scene().draw(Shape::Rectangle, {{-50, -40}, {50, -40}, {50, 40}, {-50, 40}});
    filmPicks(film, new DrawTool(&film.scene(), Shape::Circle), {{0, 0}, {30, 0}});
    film.moveTo({0, 0}, 0.7);
    film.click();
    film.moveTo({10, 0}, 0.7);
    film.click();
    filmEnd(film);
}

void filmArc(Film &film)
{
    film.scene().draw(Shape::Line, {{-60, 20}, {-60, -10}});
    film.scene().draw(Shape::Line, {{60, 20}, {60, -10}});
    filmPicks(film, new DrawTool(&film.scene(), Shape::Arc), {{-60, -10}, {0, -40}, {60, -10}});
    filmEnd(film);
}

void filmPolyline(Film &film)
{
    filmPicks(film, new DrawTool(&film.scene(), Shape::Polyline),
              {{-70, 30}, {-40, -20}, {-10, 20}, {20, -30}, {60, 10}});
    film.scene().tool()->finish();
    filmEnd(film);
}

void filmSelect(Film &film)
{
    film.scene().draw(Shape::Circle, {{-50, 0}, {-50, -20}});
    film.scene().draw(Shape::Rectangle, {{0, -20}, {30, -20}, {30, 20}, {0, 20}});
    film.scene().draw(Shape::Line, {{50, 20}, {80, -20}});
    film.start({-90, 48});
    film.use(new SelectTool(&film.scene()));
    film.wait(0.3);
    film.moveTo({-36, 14.3}, 0.9);
    film.click();
    film.wait(0.6);
    film.moveTo({-12, -36}, 0.8);
    film.press();
    film.moveTo({92, 34}, 1.2);
    film.release();
    film.wait(1.8);
}

void filmMove(Film &film)
{
    drawBracket(film, {-80, -30});
    select(film);
    filmPicks(film, new TransformTool(&film.scene(), TransformTool::Move), {{-80, -30}, {20, -10}});
    filmEnd(film);
}

void filmRotate(Film &film)
{
    drawBracket(film, {0, -40});
    select(film);
    filmPicks(film, new TransformTool(&film.scene(), TransformTool::Rotate), {{0, 0}, {50, 0}});
    film.moveTo({40, 40}, 0.6);
    film.moveTo({0, 50}, 0.6);
    film.click();
    filmEnd(film);
}

void filmMirror(Film &film)
{
    drawBracket(film, {-60, -30});
    select(film);
    filmPicks(film, new TransformTool(&film.scene(), TransformTool::Mirror), {{0, 40}, {0, -40}});
    filmEnd(film);
}

QVector<Clip> clips()
{
    const QString drawing = "Base/Drawing.vidtips/Resources/";
    const QString editing = "Extra/Editing.vidtips/Resources/";
    return {
        {drawing + "line", h264, "draw.line", filmLine},
        {drawing + "rectangle", vp8, "draw.rectangle", filmRectangle},
        {drawing + "circle", vp9, "draw.circle", filmCircle},
        {drawing + "arc", mpeg4, "draw.arc", filmArc},
        {drawing + "polyline", h264, "draw.polyline", filmPolyline},
        {editing + "select", vp8, "edit.select", filmSelect},
        {editing + "move", h264, "modify.move", filmMove},
        {editing + "rotate", vp9, "modify.rotate", filmRotate},
        {editing + "mirror", mpeg4, "modify.mirror", filmMirror},
    };
}

// The same path picked twice: to the left where the hand put it, to the right on the points of the grid.
QImage snapPicture()
{
    Film film(QString(), {}, "view.snap");
    DraftingScene &scene = film.scene();
    scene.draw(Shape::Polyline, {{-87, 23}, {-64, -16}, {-38, 7}, {-13, -27}});
    scene.draw(Shape::Polyline, {{20, 20}, {40, -20}, {70, 10}, {90, -30}});
    scene.shapes().last()->setSelected(true);
    return film.picture(2, false);
}

QImage fitPicture()
{
    Film film(QString(), {}, "view.fit");
    drawBracket(film, {-20, -20});
    film.scene().draw(Shape::Rectangle, {{-90, -50}, {90, -50}, {90, 50}, {-90, 50}});
    film.scene().shapes().last()->setSelected(true);
    return film.picture(2, false);
}

QImage deletePicture()
{
    Film film(QString(), {}, "edit.delete");
    film.scene().draw(Shape::Circle, {{-40, 0}, {-40, -30}});
    film.scene().draw(Shape::Rectangle, {{20, -30}, {80, -30}, {80, 30}, {20, 30}});
    film.scene().shapes().last()->setSelected(true);
    return film.picture(2, false);
}

bool make(const QDir &content, const Clip &clip)
{
    const QFileInfo target(content.filePath(clip.file));
    target.dir().mkpath(".");
    Film film(target.filePath(), clip.format, clip.icon);
    clip.script(film);
    return film.finish();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        QTextStream(stderr) << "Usage: drafting_media <content folder>\n"
                               "Draws the clips and pictures of the content packages anew.\n";
        return 2;
    }
    const QDir content(arguments.at(1));
    bool good = true;
    for (const Clip &clip : clips())
        good = make(content, clip) && good;
    const QString base = content.filePath("Base/Application.vidtips/Resources/");
    QDir().mkpath(base);
    good = snapPicture().save(base + "snap.png") && good;
    good = fitPicture().save(base + "fit.png") && good;
    good = deletePicture().save(content.filePath("Extra/Editing.vidtips/Resources/delete.png")) && good;
    return good ? 0 : 1;
}
