#pragma once

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/** A data folder with content packages, made for one test and removed with the object. */
class TestPackages
{
public:
    TestPackages() { Q_ASSERT(m_folder.isValid()); }

    /** The canonical path of the data folder. */
    QString path() const { return QFileInfo(m_folder.path()).canonicalFilePath(); }

    QString filePath(const QString &relativePath) const { return path() + '/' + relativePath; }

    /** Writes @p content to a file below the data folder, with the folders on the way; returns its path. */
    QString write(const QString &relativePath, const QByteArray &content) const
    {
        QString file = filePath(relativePath);
        QDir().mkpath(QFileInfo(file).path());
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file));
        return file;
    }

    /** The files below @p folder of the data folder, as paths relative to that, in order. */
    QStringList files(const QString &folder = QString()) const
    {
        QStringList files;
        QDirIterator walk(filePath(folder), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (walk.hasNext())
            files << QDir(filePath(folder)).relativeFilePath(walk.next());
        files.sort();
        return files;
    }

    /** Returns the content of the file at @p path; nothing where there is none. */
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /**
     * Writes a control file named @p name into the package @p package, with @p tips inside a document element
     * that has @p attributes; returns its path.
     */
    QString writeControl(const QString &package, const QString &name, const QByteArray &tips,
                         const QByteArray &attributes = {}) const
    {
        return write(package + ".vidtips/Control/" + name,
                     "<?xml version=\"1.0\"?>\n<vidtips " + attributes + ">\n" + tips + "\n</vidtips>\n");
    }

    /** Writes the full user interface of @p package: an item of that size, after the lines of @p imports. */
    QString writeUserInterface(const QString &package, const QByteArray &body = {}, int width = 120,
                               int height = 80, const QByteArray &imports = {}) const
    {
        return write(package + ".vidtips/ui/VidtipsUI.qml",
                     "import QtQuick 1.0\n" + imports + "Item {\n    width: " + QByteArray::number(width)
                         + "; height: " + QByteArray::number(height) + "\n" + body + "\n}\n");
    }

private:
    QTemporaryDir m_folder;
};
