// The emitted runtime: the pairs of C++ files under ":/codegen/runtime".
#pragma once

#include <QList>
#include <QSet>
#include <QString>

// One section of the runtime: the files as they stand, and as they stand inside a program.
struct RuntimeSection
{
    int number;   // from the file name; decides the place in the program
    QString name; // file name without suffix, such as "10_any"
    QString header;
    QString source;
    QString emittedHeader;
    QString emittedSource;
};

// The sections in the order of their numbers, read once.
class RuntimeLibrary
{
public:
    static const RuntimeLibrary &instance();

    const QList<RuntimeSection> &sections() const { return m_sections; }
    // The text of a runtime file as it stands inside a one-file program: without "#pragma once" and
    // without includes of other runtime files.
    static QString withoutLocalIncludes(const QString &text);
    // The import libraries that the prelude names in its `#pragma comment(lib, ...)` lines, without
    // suffix: GCC does not read those lines, so the link line needs them.
    QStringList importLibraries() const;
    // Whether a section declares the class or struct of that C++ name.
    bool definesClass(const QString &cppName) const;
    // Every name beginning "VL_" that the headers mention.
    const QSet<QString> &names() const { return m_names; }

private:
    RuntimeLibrary();

    QList<RuntimeSection> m_sections;
    QSet<QString> m_names;
};
