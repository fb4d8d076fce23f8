// TextFile: a text of the user's as it lies on the disk.
#pragma once

#include <QString>

// What must not change when a text is saved again.
struct TextForm
{
    QString lineEnd = QStringLiteral("\n"); // what most lines end with
    bool hasMark = false;                   // begins with the byte order mark of UTF-8
};

struct ReadText
{
    bool succeeded() const { return error.isEmpty(); }

    QString text; // lines end with "\n"
    TextForm form;
    QString notice; // what the user should know of the text, a Chinese sentence
    QString error;  // why there is none, likewise
};

namespace TextFile {

// What is not UTF-8 is tried as UTF-16 with its mark and as GBK, and taken only when nothing of it
// gets lost; saving then makes it UTF-8. Refuses binary and huge files.
ReadText read(const QString &path);

// Replaces the file as a whole, so that a failure leaves the old one. Empty on success, else a
// Chinese sentence.
[[nodiscard]] QString write(const QString &path, const QString &text, const TextForm &form);

} // namespace TextFile
