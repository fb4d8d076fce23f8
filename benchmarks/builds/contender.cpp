#include "builds/contender.h"

#include <QFileInfo>
#include <QStandardPaths>

Contender::Contender(const ToolRecord &record, const QString &language) : m_record(record)
{
    m_language.folder = QLatin1String(VOREL_BENCHMARK_PATTERNS "/") + language;
}

QList<Step> Contender::steps() const
{
    return {Step::FirstBuild, Step::ChangedLine, Step::ChangedComment, Step::Unchanged};
}

QString Contender::forget(Step)
{
    return QString();
}

std::vector<std::unique_ptr<Contender>> allContenders(const Workplace &place, bool withPeers)
{
    std::vector<std::unique_ptr<Contender>> contenders;
    contenders.push_back(makeVorelContender(place, ToolRecord::Kind::Chosen));
    contenders.push_back(makeVorelContender(place, ToolRecord::Kind::GccOnly));
    if (withPeers) {
        contenders.push_back(makeLclContender(place));
        contenders.push_back(makeQtContender());
    }
    return contenders;
}

QString missingPackages(const QList<QPair<QString, QString>> &needed)
{
    QStringList packages;
    for (const auto &[what, package] : needed) {
        const bool there = what.startsWith(QLatin1Char('/'))
                               ? QFileInfo::exists(what)
                               : !QStandardPaths::findExecutable(what).isEmpty();
        if (!there && !packages.contains(package))
            packages << package;
    }
    return packages.isEmpty()
               ? QString()
               : QStringLiteral("apt-get install ") + packages.join(QLatin1Char(' '));
}
