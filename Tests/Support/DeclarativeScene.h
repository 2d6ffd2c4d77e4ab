#pragma once

#include <QtDeclarative/QDeclarativeView>
#include <QtDeclarative/qdeclarative.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

/** A view that shows QML given as text, from a folder of its own in which the text may name files. */
class DeclarativeScene
{
public:
    DeclarativeScene()
    {
        view.engine()->setOutputWarningsToStandardError(false);
        QObject::connect(view.engine(), &QQmlEngine::warnings, &view, [this](const QList<QQmlError> &errors) {
            for (const QQmlError &error : errors)
                warnings += error.description();
        });
    }

    /** Writes @p content to a file of the folder. */
    void write(const QString &name, const QByteArray &content)
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(name));
    }

    QString path(const QString &name) const { return folder.filePath(name); }

    /** Shows @p body, which follows an import of QtQuick 1.1; returns whether it could be loaded. */
    bool load(const QByteArray &body)
    {
        const QString name = QStringLiteral("Scene%1.qml").arg(++number);
        write(name, "import QtQuick 1.1\n" + body);
        view.setSource(QUrl::fromLocalFile(path(name)));
        for (const QQmlError &error : view.errors())
            qWarning().noquote() << error.toString();
        view.show();
        return view.rootObject() && QTest::qWaitForWindowActive(&view);
    }

    /** Returns the root, or the object below it that has @p name as objectName. */
    QObject *object(const char *name = nullptr) const
    {
        if (!name)
            return view.rootObject();
        return find(view.rootObject(), QString::fromLatin1(name));
    }

    QVariant value(const char *property) const { return view.rootObject()->property(property); }

    QVariant evaluate(const char *script)
    {
        QQmlExpression expression(qmlContext(view.rootObject()), view.rootObject(),
                                  QString::fromUtf8(script));
        const QVariant result = expression.evaluate();
        if (expression.hasError())
            warnings += expression.error().description();
        return result;
    }

    QImage picture() { return view.viewport()->grab().toImage().convertToFormat(QImage::Format_ARGB32); }

    QTemporaryDir folder;
    QDeclarativeView view;
    QStringList warnings;

private:
    static QObject *find(QGraphicsItem *item, const QString &name)
    {
        QGraphicsObject *object = item->toGraphicsObject();
        if (object && object->objectName() == name)
            return object;
        const auto children = item->childItems();
        for (QGraphicsItem *child : children) {
            if (QObject *found = find(child, name))
                return found;
        }
        return nullptr;
    }

    int number = 0;
};
