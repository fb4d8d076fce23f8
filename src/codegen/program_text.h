// The generated program as an ordered list of parts, before it becomes one file or several.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// What `CodeGenerator` returns and the build driver works on. The parts that belong to the emitted
// runtime are known, so that the driver can compile their definitions once and keep the objects.
class ProgramText
{
public:
    enum class PartKind
    {
        Program,       // written for this program
        RuntimeHeader, // declarations of a runtime section
        RuntimeSource, // definitions of a runtime section
    };

    struct Part
    {
        PartKind kind;
        QString name; // runtime section, such as "10_any"; empty for program parts
        QString text;
    };

    // Adds program text behind all parts; empty text is left out.
    void append(const QString &text);
    void appendRuntime(PartKind kind, const QString &section, const QString &text);

    const QList<Part> &parts() const { return m_parts; }
    bool isEmpty() const { return m_parts.isEmpty(); }
    // The names of the runtime sections used, in order.
    QStringList runtimeSections() const;

    // The complete text, one translation unit.
    QString oneFile() const;
    // The program's own parts alone.
    QString programOnly() const;
    // Whether a part of this program's own holds `text`; runtime parts are not searched.
    bool programContains(const QString &text) const;
    // Whether any part holds `text`.
    bool contains(const QString &text) const;

    // Puts `text` directly behind the line of the `VL_Array3D` typedef, or, when there is none,
    // ahead of the first of "int main(", "int WINAPI WinMain(" and "int WINAPI wWinMain(" that
    // occurs.
    void insertLibraryText(const QString &text);
    // Puts `text` behind the block of comments, blank lines and preprocessor lines that the
    // program's own parts begin with; with the runtime present that is behind the prelude.
    void insertBehindLeadingBlock(const QString &text);
    // Puts `text` ahead of the first occurrence of `marker` in a program part; false without one.
    bool insertAhead(const QString &marker, const QString &text);
    // Replaces the program parts' text by what `edit` makes of it; used for line-wise rewriting.
    template <typename Edit>
    void editProgram(Edit edit)
    {
        for (Part &part : m_parts) {
            if (part.kind == PartKind::Program)
                part.text = edit(part.text);
        }
    }

private:
    QList<Part> m_parts;
};
