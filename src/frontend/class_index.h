// ClassIndex: finds classes and members by other forms of their names, in one look-up each.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

// The Unicode form in which names are compared (NFKC). Cheap for plain names.
QString normalizedName(const QString &name);

// What the class registry, which is ordered by the name as written, cannot find quickly. Where
// several keys share a form, the first in the registry's order is meant.
class ClassIndex
{
public:
    void add(const QString &key, const QString &cppName);
    void clear();

    // The key whose normalised form is that of `name`; empty if there is none.
    QString keyOfName(const QString &name) const;
    // The key whose C++ name is `cppName`; empty if there is none.
    QString keyOfCppName(const QString &cppName) const;

    // The member of a class whose normalised form is that of `name`. `memberKeys` is asked once for
    // the keys of all members, the more important first.
    template <typename MemberKeys>
    QString memberOfName(const QString &classKey, const QString &name, MemberKeys memberKeys)
    {
        auto names = m_members.find(classKey);
        if (names == m_members.end())
            names = m_members.insert(classKey, normalizedToKey(memberKeys()));
        return names->value(normalizedName(name));
    }
    // To be called when the members of a class have changed.
    void forgetMembers(const QString &classKey) { m_members.remove(classKey); }

private:
    static QHash<QString, QString> normalizedToKey(const QStringList &keys);

    QHash<QString, QString> m_byName;
    QHash<QString, QString> m_byCppName;
    QHash<QString, QHash<QString, QString>> m_members;
};
