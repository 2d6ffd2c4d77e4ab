#include "Finding.h"

#include <algorithm>
#include <tuple>

QVector<Finding> Findings::sorted() const
{
    QVector<Finding> list = m_list;
    std::stable_sort(list.begin(), list.end(), [](const Finding &a, const Finding &b) {
        return std::tie(a.file, a.position, a.code) < std::tie(b.file, b.position, b.code);
    });
    return list;
}

bool Findings::contains(const QString &file, const QVector<QString> &codes) const
{
    return std::any_of(m_list.cbegin(), m_list.cend(), [&](const Finding &finding) {
        return finding.file == file && codes.contains(finding.code);
    });
}

bool Findings::containsAt(const QString &file, int line, const QString &code) const
{
    return std::any_of(m_list.cbegin(), m_list.cend(), [&](const Finding &finding) {
        return finding.file == file && finding.position.line == line && finding.code == code;
    });
}

bool Findings::says(const QString &file, const QString &message) const
{
    return std::any_of(m_list.cbegin(), m_list.cend(), [&](const Finding &finding) {
        return finding.file == file && finding.message == message;
    });
}
