#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/** Takes an input apart, front to back. What is asked for after its end is 0 or empty. */
class FuzzInput
{
public:
    explicit FuzzInput(const QByteArray &bytes)
        : m_rest(bytes)
    {
    }

    bool isEmpty() const { return m_rest.isEmpty(); }

    quint8 takeByte()
    {
        if (m_rest.isEmpty())
            return 0;
        const auto byte = quint8(m_rest.at(0));
        m_rest.remove(0, 1);
        return byte;
    }

    /** Takes four bytes, so that any integer may come. */
    int takeInteger()
    {
        quint32 value = 0;
        for (int i = 0; i < 4; ++i)
            value = value << 8 | takeByte();
        return int(value);
    }

    /** Takes a byte for the length and as much UTF-8. */
    QString takeText()
    {
        const int length = takeByte();
        QString text = QString::fromUtf8(m_rest.left(length));
        m_rest.remove(0, length);
        return text;
    }

    /** Takes what comes before the next line feed, which is dropped. */
    QByteArray takeLine()
    {
        const int end = m_rest.indexOf('\n');
        QByteArray line = m_rest.left(end);
        m_rest = end < 0 ? QByteArray() : m_rest.mid(end + 1);
        return line;
    }

    QByteArray rest() const { return m_rest; }

private:
    QByteArray m_rest;
};
