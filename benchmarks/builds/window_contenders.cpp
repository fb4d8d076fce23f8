// The peers: the same small window program in Free Pascal with the LCL and in C++ with Qt 5.
#include "builds/contender.h"

#include <QFileInfo>
#include <QLibraryInfo>

namespace {

// A tool that builds by commands and leaves a program that is then started. One edit gives both
// times: the program is started as soon as it is built.
class WindowContender : public Contender
{
public:
    using Contender::Contender;

    Sample measure(SampleProject &project, Config config, Step step,
                   const Prepare &prepare) override;

protected:
    // Run one after the other, stopping at the first that fails.
    virtual QList<TimedCommand> buildCommands(const SampleProject &project, Config config,
                                              Step step) const = 0;
    virtual QString executable(const SampleProject &project, Config config) const = 0;

private:
    Sample build(const SampleProject &project, Config config, Step step) const;
};

Sample WindowContender::build(const SampleProject &project, Config config, Step step) const
{
    Sample sample;
    const QList<TimedCommand> commands = buildCommands(project, config, step);
    for (const TimedCommand &command : commands) {
        const TimedResult result = runTimed(command);
        sample.built += result.ended;
        sample.error = result.error;
        if (!sample.error.isEmpty())
            break;
    }
    return sample;
}

Sample WindowContender::measure(SampleProject &project, Config config, Step step,
                                const Prepare &prepare)
{
    Sample sample;
    sample.error = prepare(project);
    if (sample.error.isEmpty())
        sample = build(project, config, step);
    if (!sample.error.isEmpty())
        return sample;
    TimedCommand program;
    program.program = executable(project, config);
    program.arguments = QStringList{QStringLiteral("--quit-after-show")};
    program.environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    const TimedResult run = runTimed(program);
    sample.shown = sample.built + run.firstOutput;
    sample.size = QFileInfo(program.program).size();
    sample.error = run.error;
    return sample;
}

class LclContender : public WindowContender
{
public:
    LclContender(const Workplace &place, const ToolRecord &record);

protected:
    QList<TimedCommand> buildCommands(const SampleProject &project, Config config,
                                      Step step) const override;
    QString executable(const SampleProject &project, Config config) const override;

private:
    QString m_settings;
};

ProjectLanguage::Pattern asItIs(const char *file)
{
    return {QLatin1String(file), QLatin1String(file)};
}

LclContender::LclContender(const Workplace &place, const ToolRecord &record)
    : WindowContender(record, QStringLiteral("lcl")),
      m_settings(place.folder + QLatin1String("/lcl-settings"))
{
    m_language.fixed = {asItIs("project1.lpi"), asItIs("project1.lpr"), asItIs("mainform.pas")};
    m_language.small = m_language.fixed;
    m_language.small << asItIs("work.pas");
    m_language.fixed << ProjectLanguage::Pattern{QStringLiteral("work.pas.in"),
                                                 QStringLiteral("work.pas")};
    m_language.units = {
        {QStringLiteral("orders.pas.in"), QStringLiteral("units/orders{{unit}}.pas")}};
    m_language.smallEdited = QStringLiteral("mainform.pas");
    m_language.unitEdited = QStringLiteral("units/orders{{unit}}.pas");
}

QList<TimedCommand> LclContender::buildCommands(const SampleProject &project, Config config,
                                                Step) const
{
    TimedCommand build;
    build.program = QStringLiteral("lazbuild");
    build.folder = project.folder();
    // Its settings stay from build to build, as they do for a user.
    build.arguments << QLatin1String("--pcp=") + m_settings << QStringLiteral("--ws=qt5")
                    << (config == Config::Debug ? QStringLiteral("--build-mode=Debug")
                                                : QStringLiteral("--build-mode=Release"))
                    << QStringLiteral("-q") << QStringLiteral("project1.lpi");
    return {build};
}

QString LclContender::executable(const SampleProject &project, Config) const
{
    return project.folder() + QLatin1String("/project1");
}

class QtContender : public WindowContender
{
public:
    explicit QtContender(const ToolRecord &record);

protected:
    QList<TimedCommand> buildCommands(const SampleProject &project, Config config,
                                      Step step) const override;
    QString executable(const SampleProject &project, Config config) const override;
};

QtContender::QtContender(const ToolRecord &record) : WindowContender(record, QStringLiteral("qt5"))
{
    m_language.fixed = {asItIs("CMakeLists.txt"), asItIs("main.cpp"), asItIs("work.h")};
    m_language.small = m_language.fixed;
    m_language.small << asItIs("work.cpp");
    m_language.fixed << ProjectLanguage::Pattern{QStringLiteral("work.cpp.in"),
                                                 QStringLiteral("work.cpp")};
    m_language.units = {
        {QStringLiteral("orders.cpp.in"), QStringLiteral("units/orders{{unit}}.cpp")},
        {QStringLiteral("orders.h.in"), QStringLiteral("units/orders{{unit}}.h")}};
    m_language.smallEdited = QStringLiteral("main.cpp");
    m_language.unitEdited = QStringLiteral("units/orders{{unit}}.cpp");
}

QString qtBuildFolder(const SampleProject &project, Config config)
{
    return project.folder() + QLatin1String("/build-") + configTitle(config);
}

// The compiler itself is measured, not a cache in front of it.
QProcessEnvironment withoutCompilerCache()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"CMAKE_CXX_COMPILER_LAUNCHER", "CMAKE_C_COMPILER_LAUNCHER", "CXX",
                             "CXXFLAGS", "LDFLAGS", "CMAKE_GENERATOR"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("CCACHE_DISABLE"), QStringLiteral("1"));
    return environment;
}

QList<TimedCommand> QtContender::buildCommands(const SampleProject &project, Config config,
                                               Step step) const
{
    TimedCommand configure;
    configure.program = QStringLiteral("cmake");
    configure.environment = withoutCompilerCache();
    configure.arguments << QStringLiteral("-S") << project.folder() << QStringLiteral("-B")
                        << qtBuildFolder(project, config) << QStringLiteral("-G")
                        << QStringLiteral("Ninja")
                        << (config == Config::Debug ? QStringLiteral("-DCMAKE_BUILD_TYPE=Debug")
                                                    : QStringLiteral("-DCMAKE_BUILD_TYPE=Release"));
    TimedCommand build = configure;
    build.arguments = QStringList{QStringLiteral("--build"), qtBuildFolder(project, config)};
    return step == Step::FirstBuild ? QList<TimedCommand>{configure, build}
                                    : QList<TimedCommand>{build};
}

QString QtContender::executable(const SampleProject &project, Config config) const
{
    return qtBuildFolder(project, config) + QLatin1String("/peer");
}

// Where Qt lies, its companions lie too.
QString systemLibrary(const char *name)
{
    return QLibraryInfo::location(QLibraryInfo::LibrariesPath) + QLatin1Char('/') +
           QLatin1String(name);
}

} // namespace

std::unique_ptr<Contender> makeLclContender(const Workplace &place)
{
    ToolRecord record;
    record.title = QStringLiteral("Free Pascal + LCL");
    record.missing =
        missingPackages({{QStringLiteral("fpc"), QStringLiteral("fpc")},
                         {QStringLiteral("lazbuild"), QStringLiteral("lcl lcl-utils lcl-qt5")},
                         {systemLibrary("libQt5Pas.so"), QStringLiteral("libqt5pas-dev")}});
    return std::make_unique<LclContender>(place, record);
}

std::unique_ptr<Contender> makeQtContender()
{
    ToolRecord record;
    record.title = QStringLiteral("C++ + Qt 5");
    record.missing =
        missingPackages({{QStringLiteral("cmake"), QStringLiteral("cmake")},
                         {QStringLiteral("ninja"), QStringLiteral("ninja-build")},
                         {QStringLiteral("g++"), QStringLiteral("g++")},
                         {systemLibrary("cmake/Qt5Widgets"), QStringLiteral("qtbase5-dev")}});
    return std::make_unique<QtContender>(record);
}
