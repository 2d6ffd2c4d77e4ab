#pragma once

#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

/** A package of strangers, whose tips hold the host up or ask for what they are refused. */
class HostilePackages
{
public:
    HostilePackages();

    /** The data path that the package is in. */
    QString path() const { return m_folder.path(); }

    /** Writes what was stopped anew, which the library then loads again. */
    void renew();

    /** Tells whether @p message is of the kind that the library has for this package. */
    static bool isExpected(const QString &message);

private:
    void write(const QString &name, const QByteArray &content) const;

    QTemporaryDir m_folder;
    int m_round = 0;
};
