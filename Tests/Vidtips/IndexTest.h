#pragma once

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <memory>

/** A test with a folder of its own, which has an empty package for each test function. */
class IndexTest : public QObject
{
protected:
    void makeFolder()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
        m_root = QDir(m_directory->path()).canonicalPath();
        m_package = m_root + "/Tools.vidtips";
        QVERIFY(QDir(m_root).mkpath("Tools.vidtips/Control"));
    }

    /** Writes a file below the test's folder and returns its path. */
    QString write(const QString &path, const QByteArray &content)
    {
        QString absolute = QDir(m_root).absoluteFilePath(path);
        QDir().mkpath(QFileInfo(absolute).absolutePath());
        QFile file(absolute);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qUtf8Printable(absolute));
        return absolute;
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_root;
    QString m_package;
};
