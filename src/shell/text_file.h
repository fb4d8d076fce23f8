// TextFile: a text of the user's as it lies on the disk.
#pragma once

#include <QString>

// What must not change when a text is saved again.
struct TextForm
{
    enum class Encoding
    {
        Utf8,
        Utf16LittleEndian,
        Utf16BigEndian,
        Gb18030, // and with it GBK
    };

    QString lineEnd = QStringLiteral("\n"); // what each "\n" of the text is written as
    Encoding encoding = Encoding::Utf8;
    bool hasMark = false; // begins with a byte order mark
};

struct ReadText
{
    bool succeeded() const { return error.isEmpty(); }

    QString text;
    TextForm form;
    QString notice; // what the user should know of the text, a Chinese sentence
    QString error;  // why there is none, likewise
};

namespace TextFile {

// The text to be edited: its lines end with "\n", and it is to be saved as UTF-8, which `notice`
// tells when the file is something else.
ReadText read(const QString &path);

// The text as it lies there, with its own line ends, which `write` makes the same bytes of. What is
// not UTF-8 is tried as UTF-16 with its mark and as GBK, and taken only when nothing of it gets
// lost. Refuses binary and huge files.
ReadText readExactly(const QString &path);

// Replaces the file as a whole, so that a failure leaves the old one; so does a text that another
// encoding than UTF-8 cannot hold. Empty on success, else a Chinese sentence.
[[nodiscard]] QString write(const QString &path, const QString &text, const TextForm &form);

} // namespace TextFile
