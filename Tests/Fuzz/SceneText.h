#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>

class FuzzInput;

/** The text of a QML 1 scene that an input chooses: any elements, with handlers that spare nothing. */
class SceneText
{
public:
    explicit SceneText(FuzzInput *choices);

    const QByteArray &text() const { return m_text; }

private:
    void addObject(const QByteArray &type, int depth);
    void addProperties(const QByteArray &type);
    void addHandlers(const QByteArray &type);
    void addParts(const QByteArray &type, int depth);
    void addComponent(const QByteArray &property, int depth);
    QByteArray statement();
    QByteArray name();
    QByteArray number();
    QByteArray value(const QByteArray &property);
    QByteArray choice(const QList<QByteArray> &);
    void line(const QByteArray &);

    FuzzInput *const m_choices;
    QByteArray m_text;
    int m_objects = 0;
    int m_lastName = 0;
};
