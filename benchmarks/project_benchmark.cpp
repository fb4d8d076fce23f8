// Measures how long a large project takes to be opened and made into a build request.
#include "designer/model/form_file.h"
#include "designer/model/vui_document.h"
#include "project/project_build.h"
#include "project/project_manager.h"
#include "project_source.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>

namespace {

constexpr int repetitions = 5;
constexpr int sources = 500;
constexpr int linesPerSource = 200;
constexpr int forms = 100;
constexpr int componentsPerForm = 100;

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

VL::DesignComponent component(int number)
{
    VL::DesignComponent made;
    made.id = made.originalName = QStringLiteral("按钮%1").arg(number);
    made.type = VL::Button;
    made.x = number % 20 * 90;
    made.y = number / 20 * 40;
    made.width = 80;
    made.height = 28;
    made.properties = {{QStringLiteral("name"), made.id},
                       {QStringLiteral("text"), QStringLiteral("确定")},
                       {QStringLiteral("backColor"), QStringLiteral("#f0f0f0")},
                       {QStringLiteral("fontName"), QStringLiteral("微软雅黑")},
                       {QStringLiteral("fontSize"), 9},
                       {QStringLiteral("visible"), true},
                       {QStringLiteral("enabled"), true},
                       {QStringLiteral("tabOrder"), number}};
    return made;
}

QString writeProject(const QString &folder)
{
    const QByteArray source = projectSource(linesPerSource).toUtf8();
    writeFile(folder + QStringLiteral("/source/main.vc"), "函数 主函数() {\n}\n");
    for (int i = 1; i < sources; ++i)
        writeFile(QStringLiteral("%1/source/文件%2.vc").arg(folder).arg(i), source);
    for (int i = 0; i < forms; ++i) {
        VuiDocument form;
        for (int number = 1; number <= componentsPerForm; ++number)
            form.append(component(number));
        writeFile(QStringLiteral("%1/ui/窗口%2.vui").arg(folder).arg(i), form.toBytes());
    }
    QString file = folder + QStringLiteral("/大工程.vlproj");
    writeFile(file, "{\"name\": \"大工程\", \"mainWindowFile\": \"ui/窗口0.vui\"}");
    return file;
}

void printRow(QTextStream &out, const QString &stage, const std::function<void()> &run)
{
    double best = 0;
    for (int i = 0; i < repetitions; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
        best = i == 0 ? milliseconds : qMin(best, milliseconds);
    }
    out << qSetFieldWidth(10) << stage << qSetFieldWidth(12) << QString::number(best, 'f', 1)
        << qSetFieldWidth(0) << '\n';
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString file = writeProject(folder.path());
    QTextStream out(stdout);
    out << sources << " sources of " << linesPerSource << " lines, " << forms << " forms with "
        << forms * componentsPerForm << " components\n     stage          ms\n";
    VL::ProjectInfo info;
    printRow(out, QStringLiteral("open"), [&] {
        ProjectManager manager;
        if (!manager.openProject(file))
            qFatal("%s", qPrintable(manager.lastError()));
        info = manager.currentProject();
    });
    AssembledBuild build;
    printRow(out, QStringLiteral("merge"), [&] { build = assembleBuild(info, BuildChoices()); });
    if (!build.succeeded() || build.request.windowSpecs.size() != forms)
        qFatal("the project cannot be built");
    return 0;
}
