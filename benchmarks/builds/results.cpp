#include "builds/results.h"

#include <algorithm>

namespace {

const char *const stepTitles[] = {
    "空缓存，第一次编译", "安装后第一次编译", "第二个项目，第一次编译", "改一行",
    "改一处注释",         "没有改动",
};
static_assert(std::size(stepTitles) == size_t(Step::Count), "a title for each step");

template <typename T>
T middle(const QList<Sample> &samples, T Sample::*value)
{
    QList<T> values;
    for (const Sample &sample : samples)
        values << sample.*value;
    std::sort(values.begin(), values.end());
    const int half = values.size() / 2;
    return values.size() % 2 == 1 ? values.at(half) : (values.at(half - 1) + values.at(half)) / 2;
}

} // namespace

Sample medianOf(const QList<Sample> &samples)
{
    return {middle(samples, &Sample::built), middle(samples, &Sample::shown),
            middle(samples, &Sample::size), QString()};
}

const Sample *BuildResults::find(const CellKey &key) const
{
    const auto cell = cells.constFind(key);
    return cell == cells.constEnd() || !cell->median.error.isEmpty() ? nullptr : &cell->median;
}

QString stepTitle(Step step)
{
    return QString::fromUtf8(stepTitles[size_t(step)]);
}

QString configTitle(Config config)
{
    return config == Config::Debug ? QStringLiteral("debug") : QStringLiteral("release");
}
