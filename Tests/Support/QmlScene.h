#pragma once

#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtQml/QQmlExpression>
#include <QtTest/QTest>

/** A QML 1 scene given as text, in a view of its own. Named files may lie beside it. */
class QmlScene
{
public:
    /** Puts a file of @p content named @p name beside the scene and returns its address. */
    QUrl addFile(const QString &name, const QByteArray &content)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return url(name);
    }

    QUrl addFile(const QString &name, const QImage &image)
    {
        if (!image.save(m_folder.filePath(name)))
            qFatal("cannot write %s", qPrintable(name));
        return url(name);
    }

    QUrl url(const QString &name) const { return QUrl::fromLocalFile(m_folder.filePath(name)); }

    /** Loads @p qml, which imports its modules itself. */
    void load(const QByteArray &qml)
    {
        m_view.setSource(addFile(QStringLiteral("Scene%1.qml").arg(++m_loaded), qml));
        if (m_view.status() != QDeclarativeView::Ready)
            qFatal("the scene does not load");
    }

    QDeclarativeView &view() { return m_view; }
    QObject *root() { return m_view.rootObject(); }

    template <typename T = QDeclarativeItem>
    T *find(const char *name)
    {
        return m_view.rootObject()->findChild<T *>(QString::fromLatin1(name));
    }

    /** Runs @p script in the scene's context. */
    QVariant run(const QString &script)
    {
        QQmlExpression expression(qmlContext(root()), root(), script);
        QVariant result = expression.evaluate();
        if (expression.hasError())
            qFatal("%s", qPrintable(expression.error().toString()));
        return result;
    }

    /** The scene as it is painted. */
    QImage picture() { return m_view.grab().toImage().convertToFormat(QImage::Format_ARGB32); }

    QColor pixel(int x, int y) { return picture().pixelColor(x, y); }

private:
    QTemporaryDir m_folder;
    QDeclarativeView m_view;
    int m_loaded = 0;
};
