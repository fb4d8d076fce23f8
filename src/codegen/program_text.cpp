#include "codegen/program_text.h"

#include <algorithm>

namespace {

const QString kArrayTypedef =
    QStringLiteral("typedef std::vector<std::vector<std::vector<VL_Any>>> VL_Array3D;");

bool isLeadingLine(const QStringRef &line, int &depth)
{
    const QStringRef text = line.trimmed();
    if (text.startsWith(QLatin1String("#if")))
        ++depth;
    else if (text.startsWith(QLatin1String("#endif")))
        --depth;
    return depth > 0 || text.isEmpty() || text.startsWith(QLatin1Char('#')) ||
           text.startsWith(QLatin1String("//"));
}

// The offset behind the run of blank lines, comments and preprocessor lines at the start.
int leadingBlockEnd(const QString &text)
{
    int depth = 0;
    int begin = 0;
    while (begin < text.size()) {
        int end = text.indexOf(QLatin1Char('\n'), begin);
        end = end < 0 ? text.size() : end + 1;
        if (!isLeadingLine(text.midRef(begin, end - begin), depth))
            break;
        begin = end;
    }
    return begin;
}

} // namespace

void ProgramText::append(const QString &text)
{
    if (!text.isEmpty())
        m_parts << Part{PartKind::Program, QString(), text};
}

void ProgramText::appendRuntime(PartKind kind, const QString &section, const QString &text)
{
    m_parts << Part{kind, section, text};
}

QStringList ProgramText::runtimeSections() const
{
    QStringList names;
    for (const Part &part : m_parts) {
        if (part.kind == PartKind::RuntimeHeader)
            names << part.name;
    }
    return names;
}

QString ProgramText::oneFile() const
{
    int size = 0;
    for (const Part &part : m_parts)
        size += part.text.size();
    QString text;
    text.reserve(size);
    for (const Part &part : m_parts)
        text += part.text;
    return text;
}

QString ProgramText::programOnly() const
{
    QString text;
    for (const Part &part : m_parts) {
        if (part.kind == PartKind::Program)
            text += part.text;
    }
    return text;
}

bool ProgramText::programContains(const QString &text) const
{
    return std::any_of(m_parts.begin(), m_parts.end(), [&text](const Part &part) {
        return part.kind == PartKind::Program && part.text.contains(text);
    });
}

bool ProgramText::contains(const QString &text) const
{
    return std::any_of(m_parts.begin(), m_parts.end(),
                       [&text](const Part &part) { return part.text.contains(text); });
}

void ProgramText::insertLibraryText(const QString &text)
{
    for (int i = 0; i < m_parts.size(); ++i) {
        Part &part = m_parts[i];
        const int found = part.text.indexOf(kArrayTypedef);
        if (found < 0)
            continue;
        if (part.kind != PartKind::Program) {
            // The typedef is the last line of its header; its source part follows.
            const bool sourceFollows =
                i + 1 < m_parts.size() && m_parts.at(i + 1).kind == PartKind::RuntimeSource;
            m_parts.insert(i + (sourceFollows ? 2 : 1), Part{PartKind::Program, QString(), text});
            return;
        }
        const int lineEnd = part.text.indexOf(QLatin1Char('\n'), found);
        part.text.insert(lineEnd < 0 ? part.text.size() : lineEnd + 1, text);
        return;
    }
    for (const char *entry : {"int main(", "int WINAPI WinMain(", "int WINAPI wWinMain("}) {
        if (insertAhead(QLatin1String(entry), text))
            return;
    }
    append(text);
}

void ProgramText::insertBehindLeadingBlock(const QString &text)
{
    if (m_parts.isEmpty() || m_parts.first().kind != PartKind::Program) {
        // The runtime's prelude is the leading block.
        int behind = 0;
        while (behind < m_parts.size() && behind < 2 &&
               m_parts.at(behind).kind != PartKind::Program)
            ++behind;
        m_parts.insert(behind, Part{PartKind::Program, QString(), text});
        return;
    }
    QString &first = m_parts.first().text;
    first.insert(leadingBlockEnd(first), text);
}

bool ProgramText::insertAhead(const QString &marker, const QString &text)
{
    for (Part &part : m_parts) {
        const int found = part.kind == PartKind::Program ? part.text.indexOf(marker) : -1;
        if (found < 0)
            continue;
        part.text.insert(found, text);
        return true;
    }
    return false;
}
