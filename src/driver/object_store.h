// ObjectStore: the compiled units of a project, kept from build to build.
#pragma once

#include <QString>
#include <QStringList>

// Lies in a build folder; only one build may work there at a time. An object is named by the unit
// and the hash of all that went into it, so one that is there is the right one.
class ObjectStore
{
public:
    explicit ObjectStore(const QString &buildFolder);

    // The name, relative to the build folder, of the object that `unit` has when compiled from
    // `inputs`.
    QString objectName(const QString &unit, const QStringList &inputs) const;
    bool has(const QString &objectName) const;
    // What the compiler writes: an object takes its name when it is whole.
    static QString unfinished(const QString &objectName);
    bool finish(const QString &objectName);

    // Whether `executable` is what was linked last, from these inputs, and untouched since.
    bool isLinked(const QString &executable, const QStringList &inputs) const;
    void noteLinked(const QString &executable, const QStringList &inputs) const;

    // Removes all objects of units but these.
    void keepOnly(const QStringList &objectNames) const;
    // Removes what broken-off compilations have left.
    void dropUnfinished() const;

private:
    QStringList unitFiles() const;

    QString m_buildFolder;
};
