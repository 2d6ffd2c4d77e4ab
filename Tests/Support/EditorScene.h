#pragma once

#include "TestPaths.h"
#include "WatchedScene.h"

#include <QtGui/QInputMethodEvent>
#include <QtTest/QTest>

/** A scene with an editor as its root, which gets keys, the mouse and the input method. */
class EditorScene : public WatchedScene
{
public:
    /** Shows @p body; ends the program when it cannot be loaded. */
    explicit EditorScene(const QByteArray &body)
    {
        if (!load(body))
            qFatal("the scene is not shown");
    }

    /** Makes texts as wide as in the recorded scenes; to be called before there is an application. */
    static void useRecordedFonts()
    {
        qputenv("FONTCONFIG_FILE",
                QFile::encodeName(TestPaths::source("Tests/Declarative/gallery/fonts.conf")));
        qputenv("QT_FONT_DPI", "96");
    }

    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&view(), Qt::Key(key), modifiers);
    }

    void type(const QString &text) { QTest::keyClicks(&view(), text); }

    /** Whether the editor claims a key that else may be a shortcut of the application. */
    bool claims(int key, Qt::KeyboardModifiers modifiers, const QString &text = {})
    {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers, text);
        event.ignore();
        QCoreApplication::sendEvent(&view(), &event);
        return event.isAccepted();
    }

    /** Lets an input method show @p composed at the cursor, or enter @p committed. */
    void compose(const QString &composed, const QString &committed = {})
    {
        QInputMethodEvent event(composed, {});
        event.setCommitString(committed);
        QCoreApplication::sendEvent(&view(), &event);
    }

    /** What an input method is told. */
    QVariant query(Qt::InputMethodQuery what)
    {
        QInputMethodQueryEvent event(what);
        QCoreApplication::sendEvent(&view(), &event);
        return event.value(what);
    }

    QString text() { return value("text").toString(); }
    int cursor() { return value("cursorPosition").toInt(); }
};
