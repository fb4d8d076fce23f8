#include "designer/model/form_checks.h"

#include <QHash>
#include <QSet>
#include <QVector>

namespace {

const char *const parentKeys[] = {"_parentLayout", "_parentGroupBox", "_parentTabWidget",
                                  "_parentId"};
constexpr int parentKeyCount = 4;

// Containers before what they hold.
QVector<VL::DesignComponent *> withChildren(QList<VL::DesignComponent> &components)
{
    QVector<VL::DesignComponent *> all;
    for (VL::DesignComponent &component : components)
        all << &component;
    for (int i = 0; i < all.size(); ++i) {
        for (VL::DesignComponent &child : all[i]->children)
            all << &child;
    }
    return all;
}

QString numberedName(const QString &base, const QSet<QString> &taken, QHash<QString, int> &counters)
{
    int &counter = counters[base];
    QString name;
    do {
        name = base + QString::number(++counter);
    } while (taken.contains(name));
    return name;
}

// `name` or, when it is taken, with a number behind.
QString freeName(const QString &name, const QSet<QString> &taken, QHash<QString, int> &counters)
{
    return taken.contains(name) ? numberedName(name + QLatin1Char('_'), taken, counters) : name;
}

// Walks from child to parent without recursion; an edge to a component that the walk still is in
// closes a circle and is cut.
class CircleCutter
{
public:
    CircleCutter(QVector<VL::DesignComponent *> components, FormWarnings &warnings)
        : m_components(std::move(components)), m_warnings(warnings)
    {
        for (int i = 0; i < m_components.size(); ++i) {
            if (!m_indexes.contains(m_components[i]->id))
                m_indexes.insert(m_components[i]->id, i);
        }
    }

    void run()
    {
        m_states.fill(State::New, m_components.size());
        for (int i = 0; i < m_components.size(); ++i) {
            if (m_states[i] == State::New)
                walkFrom(i);
        }
    }

private:
    enum class State : char
    {
        New,
        Open,
        Done,
    };
    struct Step
    {
        int component;
        int nextKey;
    };

    void walkFrom(int start)
    {
        QVector<Step> path;
        enter(start, path);
        while (!path.isEmpty()) {
            Step &step = path.last();
            if (step.nextKey == parentKeyCount) {
                m_states[step.component] = State::Done;
                path.removeLast();
                continue;
            }
            const int component = step.component;
            const QString key = QLatin1String(parentKeys[step.nextKey++]);
            const int parent = parentOf(component, key);
            if (parent < 0)
                continue;
            if (m_states[parent] == State::Open)
                cut(component, key);
            else if (m_states[parent] == State::New)
                enter(parent, path);
        }
    }

    void enter(int component, QVector<Step> &path)
    {
        m_states[component] = State::Open;
        path.append({component, 0});
    }

    int parentOf(int component, const QString &key) const
    {
        const QString id = m_components[component]->properties.value(key).toString();
        return id.isEmpty() ? -1 : m_indexes.value(id, -1);
    }

    void cut(int component, const QString &key)
    {
        VL::DesignComponent &child = *m_components[component];
        m_warnings.add(0, QStringLiteral("组件“%1”的所属关系成环，已忽略 %2")
                              .arg(FormValues::shown(child.id), key));
        child.properties.remove(key);
        if (key == QLatin1String("_parentTabWidget"))
            child.properties.remove(QStringLiteral("_tabPageIndex"));
    }

    QVector<VL::DesignComponent *> m_components;
    FormWarnings &m_warnings;
    QHash<QString, int> m_indexes;
    QVector<State> m_states;
};

} // namespace

namespace FormChecks {

void giveNames(QList<VL::DesignComponent> &components,
               const std::function<QString(const VL::DesignComponent &)> &base,
               FormWarnings &warnings)
{
    const QString key = QStringLiteral("name");
    const QVector<VL::DesignComponent *> all = withChildren(components);
    QSet<QString> taken;
    QSet<QString> ids;
    QSet<QString> reported;
    for (const VL::DesignComponent *component : all) {
        const QString name = component->name();
        const bool twice = !name.isEmpty() && taken.contains(name);
        if (twice && !reported.contains(name)) {
            warnings.add(0, QStringLiteral("组件名称重复: %1").arg(FormValues::shown(name)));
            reported.insert(name);
        } else if (!component->id.isEmpty() && ids.contains(component->id) && !twice) {
            warnings.add(0,
                         QStringLiteral("组件标识重复: %1").arg(FormValues::shown(component->id)));
        }
        taken.insert(name);
        ids.insert(component->id);
    }
    QHash<QString, int> counters;
    for (VL::DesignComponent *component : all) {
        const QString old = component->name();
        if (FormValues::isIdentifier(old))
            continue;
        QString name;
        if (old.isEmpty()) {
            name = numberedName(base(*component), taken, counters);
        } else {
            name = freeName(FormValues::madeIdentifier(old), taken, counters);
            warnings.add(0, QStringLiteral("组件名称“%1”不能用作标识符，改用“%2”")
                                .arg(FormValues::shown(old), FormValues::shown(name)));
        }
        taken.insert(name);
        component->properties.insert(key, name);
        if (component->id.isEmpty())
            component->id = name;
    }
}

void cutParentCircles(QList<VL::DesignComponent> &components, FormWarnings &warnings)
{
    CircleCutter(withChildren(components), warnings).run();
}

} // namespace FormChecks
