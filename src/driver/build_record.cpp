#include "driver/build_record.h"

#include "driver/output_files.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr char versionFile[] = ".vl_codegen_version";
constexpr char codeFile[] = ".vl_code_hash";
constexpr char inputsFile[] = ".vl_inputs_hash";
constexpr char originFile[] = ".vl_generator_hash";
constexpr char programFile[] = "source.hash";
constexpr char sourceFile[] = "user_source.hash";
constexpr char sourceBuiltFile[] = "user_source_built.hash";

// Longer than any of the files.
constexpr int maxBytes = 4096;

} // namespace

QByteArray BuildRecord::read(const char *name) const
{
    const QString path = m_folder + QLatin1Char('/') + QLatin1String(name);
    QFile file(path);
    // A pipe of that name would block.
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(maxBytes)
                                                                      : QByteArray();
}

// Writing goes to the disk itself and takes longer than reading.
void BuildRecord::write(const char *name, const QByteArray &bytes) const
{
    if (read(name) != bytes)
        OutputFiles::write(m_folder + QLatin1Char('/') + QLatin1String(name), bytes);
}

BuildRecord::Version BuildRecord::version() const
{
    if (!QFileInfo(m_folder + QLatin1Char('/') + QLatin1String(versionFile)).isFile())
        return Version::Missing;
    bool isNumber = false;
    const int number = read(versionFile).trimmed().toInt(&isNumber);
    return isNumber && number == BuildHash::codegenVersion ? Version::Right : Version::Wrong;
}

bool BuildRecord::hasExecutable() const
{
    return QFileInfo(m_executable).isFile();
}

BuildRecord::Hashes BuildRecord::stored() const
{
    Hashes hashes;
    const QList<QByteArray> lines = read(codeFile).trimmed().split('\n');
    if (lines.size() == 2) {
        hashes.code = lines.at(0).trimmed();
        hashes.normalized = lines.at(1).trimmed();
        hashes.inputs = read(inputsFile).trimmed();
    }
    return hashes;
}

// The executable as it lies there; one that somebody else has put in its place has another.
QByteArray BuildRecord::executableStamp() const
{
    const QFileInfo info(m_executable);
    return QByteArray::number(info.size()) + ' ' +
           QByteArray::number(info.lastModified().toMSecsSinceEpoch());
}

BuildRecord::Origin BuildRecord::origin() const
{
    const QList<QByteArray> lines = read(originFile).trimmed().split('\n');
    return lines.size() == 4 ? Origin{lines.at(0), lines.at(1), lines.at(2), lines.at(3)}
                             : Origin();
}

bool BuildRecord::isMadeOf(const BuildHashes &hashes) const
{
    const Origin known = origin();
    return hasExecutable() && known.generator == BuildHash::generatorFingerprint() &&
           known.inputs == hashes.digest && known.executable == executableStamp();
}

bool BuildRecord::isMadeOf(const QString &program, const QByteArray &job) const
{
    if (!hasExecutable() || read(programFile).trimmed() != BuildHash::ofText(program))
        return false;
    const Origin known = origin();
    return known.generator == BuildHash::generatorFingerprint() &&
           known.program == BuildHash::digestOf({program.toUtf8(), job}) &&
           known.executable == executableStamp();
}

void BuildRecord::storeHashes(const BuildHashes &hashes) const
{
    write(codeFile, hashes.codeHash + '\n' + hashes.normalizedHash + '\n');
    write(inputsFile, hashes.inputsHash + '\n');
}

void BuildRecord::storeSourceSize(const BuildHashes &hashes) const
{
    write(sourceFile, hashes.sizeText);
}

void BuildRecord::storeBuild(const BuildHashes &hashes, const QString &program,
                             const QByteArray &job) const
{
    const QByteArray stamp = executableStamp();
    storeHashes(hashes);
    storeSourceSize(hashes);
    write(sourceBuiltFile, hashes.sizeText);
    write(versionFile, QByteArray::number(BuildHash::codegenVersion));
    write(programFile, BuildHash::ofText(program));
    const QByteArray programDigest = BuildHash::digestOf({program.toUtf8(), job});
    write(originFile, BuildHash::generatorFingerprint() + '\n' + hashes.digest + '\n' +
                          programDigest + '\n' + stamp + '\n');
}
