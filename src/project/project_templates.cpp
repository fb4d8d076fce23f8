#include "project/project_templates.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringList>

namespace {

constexpr int maxNameChars = 100;
// A file name has 255 bytes on most systems; endings like ".vlproj.bak" and those of temporary
// files need some of them.
constexpr int maxNameBytes = 225;

QString readTemplate(const QString &name)
{
    QFile file(QStringLiteral(":/project/templates/") + name);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT_X(isOpen, "readTemplate", qPrintable(name));
    return isOpen ? QString::fromUtf8(file.readAll()) : QString();
}

bool breaksLine(QChar c)
{
    return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
           c.category() == QChar::Separator_Paragraph;
}

// Names of devices, which Windows gives no file, whatever their ending.
bool isReserved(const QString &name)
{
    static const QRegularExpression device(
        QStringLiteral("^(CON|PRN|AUX|NUL|CONIN\\$|CONOUT\\$|(COM|LPT)[0-9¹²³])\\s*(\\.|$)"),
        QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

QString oneLine(QString text)
{
    for (QChar &c : text) {
        if (breaksLine(c))
            c = QLatin1Char(' ');
    }
    return text;
}

// Quotes count even in comments, and some comments mean something to the build: where a file
// begins, where code ends and design begins.
QString commentText(const QString &text)
{
    QString result = oneLine(text);
    result.replace(QLatin1Char('"'), QChar(0x201D));
    result.replace(QLatin1Char('\''), QChar(0x2019));
    result.replace(QLatin1String("==="), QStringLiteral("＝＝＝"));
    result.replace(QLatin1String("[FILE_BOUNDARY]"), QStringLiteral("【FILE_BOUNDARY】"));
    return result;
}

QString jsonText(const QString &text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(2, list.size() - 4)); // without [" and "]
}

QByteArray mainSource(const QString &program, const QString &name, const QDateTime &created)
{
    const QString date = created.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    const QString header =
        readTemplate(QStringLiteral("main_header.vc")).arg(commentText(name), date);
    return (header + readTemplate(program)).toUtf8();
}

QString windowSuffix(const QString &windowType)
{
    if (windowType == QLatin1String("vlwin") || windowType == QLatin1String("d2dwin"))
        return QStringLiteral("vlwin");
    return windowType == QLatin1String("vlui") ? QStringLiteral("xml") : QStringLiteral("vui");
}

TemplateFile mainWindow(const QString &suffix, const QString &title)
{
    const QString text = oneLine(title);
    const QString escaped = suffix == QLatin1String("xml") ? text.toHtmlEscaped() : jsonText(text);
    const QString form = readTemplate(QStringLiteral("gui.") + suffix).arg(escaped);
    return {QStringLiteral("ui/主窗口.") + suffix, form.toUtf8()};
}

QString programTemplate(ProjectKind kind, const QString &suffix)
{
    switch (kind) {
    case ProjectKind::Gui:
        // That form begins without components.
        return suffix == QLatin1String("xml") ? QStringLiteral("gui_empty.vc")
                                              : QStringLiteral("gui.vc");
    case ProjectKind::Console:
        return QStringLiteral("console.vc");
    case ProjectKind::Single:
        return QStringLiteral("single.vc");
    case ProjectKind::Empty:
        break;
    }
    return QStringLiteral("empty.vc");
}

// `what` is how messages call the name.
QString nameError(const QString &what, const QString &name)
{
    if (name.trimmed().isEmpty())
        return QStringLiteral("%1不能为空。").arg(what);
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return QStringLiteral("“%1”不能用作%2。").arg(name, what);
    if (name.size() > maxNameChars || name.toUtf8().size() > maxNameBytes) {
        return QStringLiteral("%1太长：最多 %2 个字符，其中汉字最多 %3 个。")
            .arg(what)
            .arg(maxNameChars)
            .arg(maxNameBytes / 3);
    }
    for (const QChar c : name) {
        if (breaksLine(c))
            return QStringLiteral("%1中不能有换行等控制字符。").arg(what);
        if (QStringLiteral("<>:\"/\\|?*").contains(c))
            return QStringLiteral("%1中不能有字符“%2”。").arg(what, QString(c));
    }
    if (!name.isValidUtf16())
        return QStringLiteral("%1中有残缺的字符。").arg(what);
    const QChar first = name.at(0);
    const QChar last = name.at(name.size() - 1);
    if (first.isSpace() || last.isSpace() || first == QLatin1Char('.') || last == QLatin1Char('.'))
        return QStringLiteral("%1的开头和结尾不能是空格或句点。").arg(what);
    if (isReserved(name))
        return QStringLiteral("“%1”是系统保留的名称，不能用作%2。").arg(name, what);
    return QString();
}

} // namespace

std::optional<ProjectKind> projectKindFromWord(const QString &word)
{
    static const QStringList words{QStringLiteral("gui"), QStringLiteral("empty"),
                                   QStringLiteral("console"), QStringLiteral("single")};
    const int index = words.indexOf(word);
    return index < 0 ? std::nullopt : std::optional(static_cast<ProjectKind>(index));
}

QList<TemplateFile> filesForNewProject(ProjectKind kind, const QString &name,
                                       const QString &windowType, const QDateTime &created)
{
    const QString suffix = windowSuffix(windowType);
    const QByteArray program = mainSource(programTemplate(kind, suffix), name, created);
    if (kind == ProjectKind::Single)
        return {{QStringLiteral("main.vc"), program}};
    QList<TemplateFile> files{
        {QStringLiteral("source/globals.vc"), readTemplate(QStringLiteral("globals.vc")).toUtf8()},
        {QStringLiteral("source/constants.vc"),
         readTemplate(QStringLiteral("constants.vc")).toUtf8()},
        {QStringLiteral("source/main.vc"), program},
    };
    if (kind == ProjectKind::Gui)
        files << mainWindow(suffix, name);
    return files;
}

QString newSourceText(const QString &fileName, const QDateTime &created)
{
    QString suffix = fileName.section(QLatin1Char('.'), -1).toLower();
    if (suffix != QLatin1String("vpi") && suffix != QLatin1String("vt"))
        suffix = QStringLiteral("vc");
    const QString date = created.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    return readTemplate(QStringLiteral("new_source.") + suffix).arg(commentText(fileName), date);
}

QString newClassText(const QString &className, ClassExample example)
{
    const QString body = readTemplate(QStringLiteral("new_class.vpp"));
    const QString entry = QStringLiteral("函数 主函数()");
    const int begin = body.indexOf(entry);
    QStringList lines = body.mid(begin).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (example == ClassExample::AsComment)
        lines.replaceInStrings(QRegularExpression(QStringLiteral("^")), QStringLiteral("// "));
    return QString(body.left(begin) + lines.join(QLatin1Char('\n')) + QLatin1Char('\n'))
        .replace(QLatin1String("%1"), className);
}

QByteArray newWindowForm(const QString &name)
{
    QString form = readTemplate(QStringLiteral("new_window.vui"));
    return form.replace(QLatin1String("%1"), jsonText(name)).toUtf8();
}

QString projectNameError(const QString &name)
{
    return nameError(QStringLiteral("项目名称"), name);
}

QString fileNameError(const QString &name)
{
    return nameError(QStringLiteral("文件名"), name);
}
