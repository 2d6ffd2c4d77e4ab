#include "PackageSkeleton.h"

#include "shared/SavedFile.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtGui/QPainter>

namespace {

const QSize pictureSize(352, 198);

QImage picture()
{
    QImage image(pictureSize, QImage::Format_RGB32);
    image.fill(QColor(0x17, 0x1d, 0x25));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0x5a, 0xa9, 0xff), 6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(90, 140, 262, 58);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xff, 0xff, 0xff));
    painter.drawEllipse(QPoint(90, 140), 8, 8);
    painter.drawEllipse(QPoint(262, 58), 8, 8);
    return image;
}

} // namespace

QString PackageSkeleton::firstKey() const
{
    return m_name.toLower() + ".first";
}

QString PackageSkeleton::problemWith(const QString &name)
{
    static const QRegularExpression usable("^[A-Za-z0-9][-A-Za-z0-9_.]*$");
    if (!usable.match(name).hasMatch())
        return QString("\"%1\" cannot be a package's name: use letters, digits, \"-\", \"_\" and \".\"")
            .arg(name);
    if (name.endsWith(".vidtips"))
        return QString("leave out \".vidtips\": the package's name is \"%1\"").arg(name.chopped(8));
    return {};
}

QString PackageSkeleton::write()
{
    if (QFileInfo(m_folder).isFile())
        return QString("not a folder: %1").arg(m_folder);
    if (!QFileInfo(m_folder).isDir())
        return QString("no such folder: %1").arg(m_folder);
    if (QFileInfo::exists(path()))
        return QString("there is a package already: %1").arg(path());
    if (!QDir().mkdir(path()))
        return QString("cannot make the folder: %1").arg(path());
    QString problem = writeAll();
    if (!problem.isEmpty())
        QDir(path()).removeRecursively();
    return problem;
}

QString PackageSkeleton::writeAll()
{
    QString problem = writeTemplate("tips.xml", "Control/" + m_name + ".en_US.xml");
    if (problem.isEmpty())
        problem = writePicture("Resources/first.png");
    return problem.isEmpty() ? writeUserInterface() : problem;
}

QString PackageSkeleton::writeUserInterface()
{
    if (!m_shared.isEmpty())
        return {};
    QString problem = writeTemplate("VidtipsUI.qml", "ui/VidtipsUI.qml");
    if (problem.isEmpty())
        problem = writeTemplate("SimpleTooltip.qml", "ui/SimpleTooltip.qml");
    if (problem.isEmpty())
        problem = writeTemplate("schema.xml", "ui/schema.xml");
    return problem;
}

QString PackageSkeleton::writeTemplate(const QString &resource, const QString &file)
{
    QFile source(":/vidtips/template/" + resource);
    if (!source.open(QIODevice::ReadOnly))
        qFatal("the template %s is missing from the program", qPrintable(resource));
    QString text = QString::fromUtf8(source.readAll());
    text.replace("@NAME@", m_name);
    text.replace("@KEY@", m_name.toLower());
    text.replace("@SEARCH@", m_shared.isEmpty() ? QString() : QString(" search=\"%1\"").arg(m_shared));
    return writeFile(file, text.toUtf8());
}

QString PackageSkeleton::writePicture(const QString &file)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    picture().save(&buffer, "PNG");
    return writeFile(file, buffer.data());
}

QString PackageSkeleton::writeFile(const QString &file, const QByteArray &content)
{
    const QString target = path() + '/' + file;
    QDir().mkpath(QFileInfo(target).path());
    const QString problem = SavedFile::write(target, content);
    if (problem.isEmpty())
        m_files << file;
    return problem;
}
