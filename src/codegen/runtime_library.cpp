#include "codegen/runtime_library.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <algorithm>

namespace {

const QString kFolder = QStringLiteral(":/codegen/runtime");

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool isLocalLine(const QStringRef &line)
{
    return line.startsWith(QLatin1String("#pragma once")) ||
           line.startsWith(QLatin1String("#include \""));
}

} // namespace

const RuntimeLibrary &RuntimeLibrary::instance()
{
    static const RuntimeLibrary library;
    return library;
}

RuntimeLibrary::RuntimeLibrary()
{
    const QRegularExpression commandName(QStringLiteral("\\bVL_[A-Za-z0-9_]+"));
    const QStringList headers =
        QDir(kFolder).entryList({QStringLiteral("*.h")}, QDir::Files, QDir::Name);
    for (const QString &header : headers) {
        const QString name = header.chopped(2);
        const QString base = kFolder + QLatin1Char('/') + name;
        RuntimeSection section;
        section.number = name.section(QLatin1Char('_'), 0, 0).toInt();
        section.name = name;
        section.header = readFile(base + QLatin1String(".h"));
        section.source = readFile(base + QLatin1String(".cpp"));
        section.emittedHeader = withoutLocalIncludes(section.header);
        section.emittedSource = withoutLocalIncludes(section.source);
        m_sections << section;
        QRegularExpressionMatchIterator names = commandName.globalMatch(section.header);
        while (names.hasNext())
            m_names.insert(names.next().captured());
    }
    std::stable_sort(
        m_sections.begin(), m_sections.end(),
        [](const RuntimeSection &a, const RuntimeSection &b) { return a.number < b.number; });
}

QString RuntimeLibrary::withoutLocalIncludes(const QString &text)
{
    QString result;
    result.reserve(text.size());
    int begin = 0;
    while (begin < text.size()) {
        int end = text.indexOf(QLatin1Char('\n'), begin);
        end = end < 0 ? text.size() : end + 1;
        const QStringRef line = text.midRef(begin, end - begin);
        if (!isLocalLine(line))
            result += line;
        begin = end;
    }
    return result;
}

QStringList RuntimeLibrary::importLibraries() const
{
    static const QRegularExpression pattern(
        QStringLiteral("#pragma comment\\(lib, \"([A-Za-z0-9_]+)\\.lib\"\\)"));
    QStringList names;
    for (const RuntimeSection &section : m_sections) {
        QRegularExpressionMatchIterator matches = pattern.globalMatch(section.header);
        while (matches.hasNext())
            names << matches.next().captured(1);
    }
    return names;
}

bool RuntimeLibrary::definesClass(const QString &cppName) const
{
    return std::any_of(m_sections.begin(), m_sections.end(), [&](const RuntimeSection &section) {
        for (const char *keyword : {"class ", "struct "}) {
            const int found = section.header.indexOf(QLatin1String(keyword) + cppName);
            const int end = found + int(qstrlen(keyword)) + cppName.size();
            if (found >= 0 && !section.header.mid(end, 1).startsWith(QLatin1Char('_')) &&
                !section.header.mid(end, 1).at(0).isLetterOrNumber())
                return true;
        }
        return false;
    });
}
