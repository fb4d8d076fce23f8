#include "builds/sample_project.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr int kGroupsPerUnit = 4;

// Numbers that stand in the sources where a user would change something, followed by how often
// that was done.
const QString kLineMark = QStringLiteral("1000");
const QString kCommentMark = QStringLiteral("2000");
constexpr int kCountDigits = 4;

QString marked(const QString &mark, int count)
{
    return mark + QString::number(count).rightJustified(kCountDigits, QLatin1Char('0'));
}

// Repeats the lines between the marks of `name`, with {{item}} counting from `first`.
QString repeated(QString text, const QString &name, const QString &item, int first, int count)
{
    const QString open = QStringLiteral("{{#%1}}\n").arg(name);
    const QString close = QStringLiteral("{{/%1}}\n").arg(name);
    int from = text.indexOf(open);
    while (from >= 0) {
        const int end = text.indexOf(close, from);
        if (end < 0)
            return text;
        const QString body = text.mid(from + open.size(), end - from - open.size());
        QString whole;
        for (int number = first; number < first + count; ++number)
            whole += QString(body).replace(item, QString::number(number));
        text.replace(from, end + close.size() - from, whole);
        from = text.indexOf(open, from + whole.size());
    }
    return text;
}

QString readText(const QString &path, QString *text)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("无法读取 %1：%2").arg(path, file.errorString());
    *text = QString::fromUtf8(file.readAll());
    return QString();
}

// The number of units that makes `lines` lines, the files that exist once left out.
int unitsFor(const ProjectLanguage &language, int lines, QString *error)
{
    int perUnit = 0;
    for (const ProjectLanguage::Pattern &pattern : language.units) {
        QString text;
        *error = readText(language.folder + QLatin1Char('/') + pattern.source, &text);
        if (!error->isEmpty())
            return 0;
        perUnit += expandedPattern(text, {}).count(QLatin1Char('\n'));
    }
    return perUnit == 0 ? 0 : qMax(2, qRound(double(lines) / perUnit));
}

} // namespace

QString expandedPattern(const QString &pattern, const PatternValues &values)
{
    const QString unit = QStringLiteral("{{unit}}");
    QString text = repeated(pattern, QStringLiteral("units"), unit, 1, values.units);
    text = repeated(text, QStringLiteral("groups"), QStringLiteral("{{group}}"),
                    values.unit * kGroupsPerUnit, kGroupsPerUnit);
    const int previous = values.unit > 1 ? values.unit - 1 : values.units;
    text.replace(unit, QString::number(values.unit));
    text.replace(QLatin1String("{{previous}}"), QString::number(previous));
    text.replace(QLatin1String("{{variant}}"), QString::number(values.variant));
    return text;
}

QString SampleProject::writeText(const QString &target, const QString &text) const
{
    const QString path = m_folder + QLatin1Char('/') + target;
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        return QStringLiteral("无法写入 %1：%2").arg(path, file.errorString());
    return QString();
}

QString SampleProject::writePattern(const ProjectLanguage::Pattern &pattern,
                                    const QString &languageFolder,
                                    const PatternValues &values) const
{
    QString text;
    const QString error = readText(languageFolder + QLatin1Char('/') + pattern.source, &text);
    return error.isEmpty()
               ? writeText(expandedPattern(pattern.target, values), expandedPattern(text, values))
               : error;
}

QString SampleProject::write(const ProjectLanguage &language, const QString &folder, int lines,
                             int variant)
{
    m_folder = folder;
    m_isOneLine = lines <= 0;
    m_line = 1;
    m_comment = 1;
    QString error;
    PatternValues values;
    values.variant = variant;
    values.units = lines > 0 ? unitsFor(language, lines, &error) : 1;
    const QList<ProjectLanguage::Pattern> once = lines > 0 ? language.fixed : language.small;
    for (const ProjectLanguage::Pattern &pattern : once) {
        if (error.isEmpty())
            error = writePattern(pattern, language.folder, values);
    }
    for (values.unit = 1; lines > 0 && values.unit <= values.units; ++values.unit) {
        for (const ProjectLanguage::Pattern &pattern : language.units) {
            if (error.isEmpty())
                error = writePattern(pattern, language.folder, values);
        }
    }
    values.unit = (values.units + 1) / 2;
    m_edited = expandedPattern(lines > 0 ? language.unitEdited : language.smallEdited, values);
    return error;
}

QString SampleProject::change(const QString &mark, int *number)
{
    QString text;
    const QString error = readText(m_folder + QLatin1Char('/') + m_edited, &text);
    if (!error.isEmpty())
        return error;
    const QString before = marked(mark, *number);
    if (text.count(before) != 1)
        return QStringLiteral("%1 中应当有一处 %2").arg(m_edited, before);
    ++*number;
    return writeText(m_edited, text.replace(before, marked(mark, *number)));
}

QString SampleProject::lineText() const
{
    return marked(kLineMark, m_line);
}

QString SampleProject::changeLine()
{
    return change(kLineMark, &m_line);
}

QString SampleProject::changeComment()
{
    return change(kCommentMark, &m_comment);
}
