// Where a build's files lie, and how they are written and removed without harm to older ones.
#pragma once

#include "driver/build_request.h"

#include <QByteArray>
#include <QString>

namespace OutputFiles {

// "<project>/build/<platform>/<config>"; without a project a folder under the temporary files, each
// single file having one of its own. `request` is normalised.
QString buildFolder(const CompilerBuildRequest &request);
// Full path of the executable: named by the project's folder, or by the single file.
QString executable(const CompilerBuildRequest &request);
// The folder above all platforms and configurations of this request.
QString buildRoot(const CompilerBuildRequest &request);

// Writes the whole file or leaves the old one.
bool write(const QString &path, const QByteArray &bytes);
// Puts the file `from` in the place of `to`; on failure `to` is as it was.
bool replace(const QString &from, const QString &to);
// What `clean` did.
struct Removal
{
    int removed = 0;
    int failed = 0;
};

// Removes all files under `folder` and the folders that become empty. Symbolic links are removed,
// never followed.
Removal removeTree(const QString &folder);
// Removes what builds of this request have left: the folders of all platforms and configurations,
// and nothing else that may lie beside them.
Removal clean(const CompilerBuildRequest &request);

} // namespace OutputFiles
