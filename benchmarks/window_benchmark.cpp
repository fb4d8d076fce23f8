// Measures how long a program takes from its start to a painted window, and how large it is.
#include "builds/timed_process.h"

#include "designer/model/component_types.h"
#include "designer/model/vui_document.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr int repetitions = 7;
constexpr int controlCounts[] = {20, 500};

// Tells when it has painted itself for the first time, and ends.
const char source[] = "逻辑 已显示 = 假\n"
                      "函数 主窗口.绘制() {\n"
                      "    如果 (已显示 == 假) {\n"
                      "        已显示 = 真\n"
                      "        输出(\"已显示\")\n"
                      "        主窗口.关闭()\n"
                      "    }\n"
                      "}\n"
                      "函数 按钮1.单击() {\n"
                      "    文本框2.文本 = 标签3.文本\n"
                      "}\n";

const VL::ComponentType types[] = {VL::Button,   VL::TextBox,  VL::Label,      VL::CheckBox,
                                   VL::ComboBox, VL::GroupBox, VL::ProgressBar};

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

VL::DesignComponent component(int type, const QString &name, QRect place)
{
    VL::DesignComponent made;
    made.id = made.originalName = name;
    made.type = type;
    made.x = place.x();
    made.y = place.y();
    made.width = place.width();
    made.height = place.height();
    made.properties = {{QStringLiteral("name"), name},
                       {QStringLiteral("text"), name},
                       {QStringLiteral("fontName"), QStringLiteral("宋体")},
                       {QStringLiteral("fontSize"), 9}};
    return made;
}

QString writeProject(const QString &folder, int controls)
{
    VuiDocument form;
    const int columns = 20;
    VL::DesignComponent window = component(VL::Window, QStringLiteral("主窗口"),
                                           QRect(10, 10, 1200, 40 + controls / columns * 30));
    window.properties.insert(QStringLiteral("isMainWindow"), true);
    form.append(window);
    for (int i = 0; i < controls; ++i) {
        const int type = types[size_t(i) % std::size(types)];
        form.append(component(type, VL::componentDisplayName(type) + QString::number(i + 1),
                              QRect(20 + i % columns * 58, 50 + i / columns * 30, 54, 26)));
    }
    writeFile(folder + QStringLiteral("/ui/主窗口.vui"), form.toBytes());
    writeFile(folder + QStringLiteral("/source/主窗口.vc"), source);
    const QString file = folder + QStringLiteral("/窗口.vlproj");
    writeFile(file, "{\"name\": \"窗口\", \"compiler\": \"MinGW\", \"mainWindowFile\": "
                    "\"ui/主窗口.vui\", \"windowFiles\": [\"ui/主窗口.vui\"], \"sourceFiles\": "
                    "[\"source/主窗口.vc\"]}");
    return file;
}

TimedResult call(const QString &vorelc, const QString &verb, const QString &project,
                 const QString &config)
{
    TimedCommand command;
    command.program = vorelc;
    command.arguments =
        QStringList{verb, project, QStringLiteral("--config"), config, QStringLiteral("--quiet")};
    return runTimed(command);
}

void printRow(QTextStream &out, const QString &vorelc, int controls, const QString &config)
{
    QTemporaryDir folder;
    const QString project = writeProject(folder.path(), controls);
    const TimedResult built = call(vorelc, QStringLiteral("build"), project, config);
    if (!built.error.isEmpty())
        qFatal("%s", qPrintable(built.error));
    QVector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        const TimedResult run = call(vorelc, QStringLiteral("run"), project, config);
        if (!run.error.isEmpty() || run.firstOutput <= 0)
            qFatal("%s", qPrintable(run.error));
        times << run.firstOutput;
    }
    std::sort(times.begin(), times.end());
    const qint64 size = QFileInfo(QString::fromUtf8(built.output).trimmed()).size();
    out << controls << '\t' << config << '\t' << QString::number(built.ended, 'f', 2) << '\t'
        << QString::number(times.at(times.size() / 2), 'f', 2) << '\t'
        << QString::number(double(size) / 1e6, 'f', 2) << '\n';
    out.flush();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    DisplayServer display;
    const QString error = display.start();
    if (!error.isEmpty())
        qFatal("%s", qPrintable(error));
    const QString vorelc =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../bin/vorelc"));
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << QStringLiteral("组件数\t配置\t编译（秒）\t运行到画出窗口（秒）\t大小（MB）\n");
    for (int controls : controlCounts) {
        for (const char *config : {"debug", "release"})
            printRow(out, vorelc, controls, QLatin1String(config));
    }
    return 0;
}
