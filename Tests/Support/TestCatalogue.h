#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QMap>
#include <QtCore/QString>

/** Makes the bytes of a translation catalogue (.qm) for plain ASCII source texts of one context. */
class TestCatalogue
{
public:
    explicit TestCatalogue(const QByteArray &context)
        : m_context(context)
    {
    }

    TestCatalogue &add(const QByteArray &source, const QString &translation)
    {
        m_hashes.insert(hash(source), quint32(m_messages.size()));
        // A length of 32 bits and the data: the file has texts as a stream writes them.
        QDataStream out(&m_messages, QIODevice::Append);
        out << quint8(0x03) << translation << quint8(0x06) << source << quint8(0x07) << m_context
            << quint8(0x01);
        return *this;
    }

    /** Has the catalogue at @p path be loaded with this one. */
    TestCatalogue &addFile(const QString &path)
    {
        QDataStream out(&m_files, QIODevice::Append);
        out << path;
        return *this;
    }

    QByteArray bytes() const
    {
        QByteArray hashes;
        QDataStream hashesOut(&hashes, QIODevice::WriteOnly);
        for (auto it = m_hashes.cbegin(); it != m_hashes.cend(); ++it)
            hashesOut << it.key() << it.value();
        QByteArray file = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd");
        QDataStream out(&file, QIODevice::Append);
        out << quint8(0x42) << hashes << quint8(0x69) << m_messages;
        if (!m_files.isEmpty())
            out << quint8(0x96) << m_files;
        return file;
    }

private:
    static quint32 hash(const QByteArray &text)
    {
        quint32 h = 0;
        for (const char c : text) {
            h = (h << 4) + quint8(c);
            const quint32 high = h & 0xf0000000U;
            h ^= high >> 24;
            h &= ~high;
        }
        return h ? h : 1;
    }

    QByteArray m_context;
    QByteArray m_messages;
    QByteArray m_files;
    QMap<quint32, quint32> m_hashes;
};
