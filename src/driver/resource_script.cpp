#include "driver/resource_script.h"

#include <QDir>
#include <QFile>
#include <QtEndian>

namespace {

// A version block's lengths are 16 bits wide; nobody reads names of this length anyway.
constexpr int longestValue = 1000;

const char fixedVersion[] = "FILEFLAGSMASK 0x3fL\r\n"
                            "FILEFLAGS 0x0L\r\n"
                            "FILEOS 0x40004L\r\n"
                            "FILETYPE 0x1L\r\n"
                            "FILESUBTYPE 0x0L\r\n"
                            "BEGIN\r\n"
                            "    BLOCK \"StringFileInfo\"\r\n"
                            "    BEGIN\r\n"
                            "        BLOCK \"080404b0\"\r\n"
                            "        BEGIN\r\n";

const char versionEnd[] = "        END\r\n"
                          "    END\r\n"
                          "    BLOCK \"VarFileInfo\"\r\n"
                          "    BEGIN\r\n"
                          "        VALUE \"Translation\", 0x804, 1200\r\n"
                          "    END\r\n"
                          "END\r\n";

const char manifestPart[] =
    "\r\n// DPI-aware PerMonitorV2 manifest (design size = runtime size at any DPI)\r\n"
    "1 24 \"app_dpi_aware.manifest\"\r\n";

const char bitmapsPart[] = "\r\n// Embedded design context menu bitmaps (vl_cm_*.bmp)\r\n";

// One line of text that is valid in every encoding.
QString cleanValue(const QString &value)
{
    QString result;
    const int length = qMin(value.size(), longestValue);
    result.reserve(length);
    for (int i = 0; i < length; ++i) {
        const QChar c = value.at(i);
        const bool isPair =
            c.isHighSurrogate() && i + 1 < length && value.at(i + 1).isLowSurrogate();
        if (isPair) {
            result += c;
            result += value.at(++i);
        } else if (c.category() == QChar::Separator_Line ||
                   c.category() == QChar::Separator_Paragraph || c == QLatin1Char('\n') ||
                   c == QLatin1Char('\r') || c == QLatin1Char('\t')) {
            result += QLatin1Char(' ');
        } else if (c.category() != QChar::Other_Control && !c.isSurrogate()) {
            result += c;
        }
    }
    return result.trimmed();
}

QString valueLine(const char *name, const QString &value, const QString &suffix = QString())
{
    return QStringLiteral("            VALUE \"") + QLatin1String(name) + QStringLiteral("\", ") +
           scriptLiteral(value, suffix + QStringLiteral("\\0")) + QStringLiteral("\r\n");
}

QString pathLiteral(const QString &path)
{
    QString native = QDir::toNativeSeparators(path);
    native.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + native + QLatin1Char('"');
}

QString versionBlock(const ProgramResources &resources)
{
    const QString version = fourPartVersion(resources.version);
    const QString numbers = QString(version).replace(QLatin1Char('.'), QLatin1Char(','));
    const QString description = cleanValue(resources.fileDescription).isEmpty()
                                    ? resources.productName
                                    : resources.fileDescription;
    QString block = QStringLiteral("// Version Information\r\n1 VERSIONINFO\r\n");
    block += QStringLiteral("FILEVERSION ") + numbers + QStringLiteral("\r\nPRODUCTVERSION ") +
             numbers + QStringLiteral("\r\n") + QLatin1String(fixedVersion);
    if (!cleanValue(resources.companyName).isEmpty())
        block += valueLine("CompanyName", resources.companyName);
    block += valueLine("FileDescription", description);
    block += valueLine("FileVersion", version);
    block += valueLine("InternalName", resources.internalName);
    if (!cleanValue(resources.copyright).isEmpty())
        block += valueLine("LegalCopyright", resources.copyright);
    block += valueLine("OriginalFilename", resources.internalName, QStringLiteral(".exe"));
    block += valueLine("ProductName", resources.productName);
    block += valueLine("ProductVersion", version);
    return block + QLatin1String(versionEnd);
}

} // namespace

QString scriptLiteral(const QString &value, const QString &ending)
{
    QString escaped = cleanValue(value);
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + ending + QLatin1Char('"');
}

QString resourceScript(const ProgramResources &resources)
{
    QString script = QStringLiteral("#include <windows.h>\r\n\r\n");
    if (!resources.icon.path.isEmpty()) {
        script += QStringLiteral("// Application Icon\r\n1 ICON ") +
                  pathLiteral(resources.icon.path) + QStringLiteral("\r\n\r\n");
    }
    script += versionBlock(resources) + QLatin1String(manifestPart);
    if (!resources.bitmaps.isEmpty())
        script += QLatin1String(bitmapsPart);
    for (const DesignBitmap &bitmap : resources.bitmaps) {
        script += QString::number(bitmap.id) + QStringLiteral(" BITMAP ") +
                  pathLiteral(bitmap.file.path) + QStringLiteral("\r\n");
    }
    return script;
}

QByteArray encodeScript(const QString &script, ScriptEncoding encoding)
{
    if (encoding == ScriptEncoding::Utf8)
        return script.toUtf8();
    QByteArray bytes("\xff\xfe");
    bytes.resize(2 + script.size() * 2);
    char *out = bytes.data() + 2;
    for (const QChar c : script) {
        qToLittleEndian<quint16>(c.unicode(), out);
        out += 2;
    }
    return bytes;
}

QByteArray manifestText()
{
    QFile file(QStringLiteral(":/codegen/app_dpi_aware.manifest"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
