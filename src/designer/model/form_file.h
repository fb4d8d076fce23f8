// Form files on the disk: read within limits, saved whole and with a copy of the old state.
#pragma once

#include "designer/model/form_document.h"

#include <memory>

enum class FormStatus
{
    Done,
    Missing,
    Unreadable, // also what is no ordinary file
    TooLarge,
    Empty,
    Broken,  // no JSON object
    Foreign, // an .xml file, which another designer owns
    Blocked, // an empty form does not replace one with content
    Unwritable,
};

struct FormReadResult
{
    FormStatus status = FormStatus::Done;
    QString message; // Chinese; empty when all went well
    // A VlwinDocument or a VuiDocument, null unless Done.
    std::unique_ptr<FormDocument> document;
};

struct FormSaveResult
{
    FormStatus status = FormStatus::Done;
    QString message; // Chinese; empty when all went well
};

constexpr int largestFormFile = 64 * 1024 * 1024;

// The ending ".vlwin", or a `format` that says so, makes a self-drawn form; all other files are
// classic ones.
[[nodiscard]] FormReadResult readFormFile(const QString &path);
// The same for bytes that are already there; `path` only tells the kind and names the file.
[[nodiscard]] FormReadResult readFormBytes(const QString &path, const QByteArray &bytes);

// Makes the folder, replaces "<file>.bak" by a copy of the file, then replaces the file. At any
// moment the file is the old or the new one.
[[nodiscard]] FormSaveResult saveFormFile(const QString &path, const FormDocument &document);
