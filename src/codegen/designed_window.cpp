#include "codegen/designed_window.h"

#include "codegen/names.h"
#include "designer/model/component_types.h"
#include "designer/model/form_geometry.h"

#include <QColor>
#include <QSet>
#include <algorithm>
#include <functional>

namespace {

const QString kParentTab = QStringLiteral("_parentTabWidget");

bool isLayout(int type)
{
    return type >= VL::HorizontalLayout && type <= VL::VerticalSpacer;
}

QString withoutLeadingUnderscores(const QString &text)
{
    int begin = 0;
    while (begin < text.size() - 1 && text.at(begin) == QLatin1Char('_'))
        ++begin;
    return text.mid(begin);
}

bool isNamed(const QString &own, const QString &name)
{
    return own == name || Names::normalized(own) == Names::normalized(name) ||
           Names::sanitizeComponent(own) == name;
}

} // namespace

bool PropertyBag::has(const QString &key) const
{
    return value(key).isValid() && !value(key).toString().isEmpty();
}

QString PropertyBag::text(const QString &key, const QString &fallback) const
{
    const QVariant found = value(key);
    return found.isValid() ? found.toString() : fallback;
}

int PropertyBag::number(const QString &key, int fallback) const
{
    bool usable = false;
    const double found = value(key).toDouble(&usable);
    return usable && found >= -2147483647.0 && found <= 2147483647.0 ? int(found) : fallback;
}

bool PropertyBag::flag(const QString &key, bool fallback) const
{
    const QVariant found = value(key);
    if (!found.isValid())
        return fallback;
    const QString text = found.toString();
    return found.toBool() || text == QStringLiteral("真");
}

std::optional<int> PropertyBag::color(const QString &key) const
{
    const QVariant found = value(key);
    const QColor color = found.canConvert<QColor>() && found.type() == QVariant::Color
                             ? found.value<QColor>()
                             : QColor(found.toString().trimmed());
    if (!found.isValid() || !color.isValid() || color.alpha() == 0)
        return std::nullopt;
    return color.red() | color.green() << 8 | color.blue() << 16;
}

DesignedWindow::DesignedWindow(const WindowRecord &record, bool start, int firstId)
    : m_name(record.name),
      m_cppName(start ? QStringLiteral("MainWindow") : record.sanitizedName),
      m_handle(start ? QStringLiteral("g_hWndMain")
                     : QLatin1String("g_hWnd_") + record.sanitizedName),
      m_start(start),
      m_implicit(record.implicit),
      m_selfDrawn(VL::isSelfDrawn(record.components)),
      m_firstId(firstId),
      m_nextId(firstId)
{
    if (const VL::DesignComponent *window = VL::windowComponent(record.components)) {
        m_component = *window;
    } else {
        m_component.type = VL::Window;
        m_component.width = 640;
        m_component.height = 480;
    }
    addControls(record.components, VL::clientOrigin(record.components));
    placeOnPages();
}

void DesignedWindow::addControls(const QList<VL::DesignComponent> &components, QPoint origin)
{
    for (const VL::DesignComponent &component : components) {
        const bool table = component.type == VL::tableComponentType;
        if (table || (component.type != VL::Window && VL::componentType(component.type)))
            addControl(component, origin);
        addControls(component.children, origin);
    }
}

QString DesignedWindow::uniqueStem(const QString &wanted)
{
    QString stem = wanted;
    for (int i = 1; m_stems.contains(stem); ++i)
        stem = wanted + QLatin1Char('_') + QString::number(i);
    m_stems << stem;
    return stem;
}

void DesignedWindow::addControl(const VL::DesignComponent &component, QPoint origin)
{
    DesignedControl control;
    control.component = component;
    if (control.component.type == VL::tableComponentType)
        control.component.type = VL::ListView;
    control.name = component.name();
    if (control.name.isEmpty())
        control.name = QStringLiteral("ctrl_%1").arg(m_controls.size());
    control.place =
        QRect(QPoint(component.x, component.y) - origin, QSize(component.width, component.height));
    QString stem = Names::sanitizeComponent(control.name);
    const int tab = indexOfId(component.properties.value(kParentTab).toString());
    const QString tabName =
        tab >= 0 ? Names::sanitizeComponent(m_controls.at(tab).name)
                 : Names::sanitizeComponent(component.properties.value(kParentTab).toString());
    if (component.properties.contains(kParentTab) && !tabName.isEmpty() &&
        tabName != QLatin1String("unnamed"))
        stem = tabName + QLatin1Char('_') + stem;
    if (m_start) {
        control.stem = uniqueStem(stem);
    } else {
        control.stem = uniqueStem(withoutLeadingUnderscores(m_cppName) + QLatin1Char('_') +
                                  withoutLeadingUnderscores(stem));
    }
    if (!isLayout(component.type)) {
        control.handle = Names::handle(control.stem);
        control.id = m_nextId++;
        control.idText = m_start ? QStringLiteral("IDC_CTRL_%1").arg(control.id - m_firstId)
                                 : QString::number(control.id);
    }
    m_controls << control;
}

// What lies on a page is placed by the page. Pages may lie on pages.
void DesignedWindow::placeOnPages()
{
    QList<QPoint> corners;
    for (const DesignedControl &control : qAsConst(m_controls))
        corners << control.place.topLeft();
    for (DesignedControl &control : m_controls) {
        const int tab = indexOfId(control.bag().text(kParentTab));
        if (tab < 0 || m_controls.at(tab).component.type != VL::TabWidget)
            continue;
        control.tabWidget = tab;
        control.page = std::max(0, control.bag().number(QStringLiteral("_tabPageIndex")));
        control.place.translate(-corners.at(tab) -
                                VL::tabPageArea(m_controls.at(tab).component).topLeft());
    }
}

const DesignedControl *DesignedWindow::control(const QString &name) const
{
    const auto found =
        std::find_if(m_controls.begin(), m_controls.end(), [&name](const DesignedControl &control) {
            return isNamed(control.name, name);
        });
    return found == m_controls.end() ? nullptr : &*found;
}

int DesignedWindow::indexOfId(const QString &id) const
{
    if (id.isEmpty())
        return -1;
    for (int i = 0; i < m_controls.size(); ++i) {
        if (m_controls.at(i).component.id == id)
            return i;
    }
    return -1;
}

QList<int> DesignedWindow::creationOrder() const
{
    QList<int> order;
    QSet<int> done;
    // A form's parents do not run in circles; the depth guard is for records made elsewhere.
    const std::function<void(int, int)> add = [&](int index, int depth) {
        if (done.contains(index) || depth > 100)
            return;
        const DesignedControl &control = m_controls.at(index);
        for (const QString &key :
             {kParentTab, QStringLiteral("_parentGroupBox"), QStringLiteral("_parentLayout")}) {
            const int parent = indexOfId(control.bag().text(key));
            if (parent >= 0 && parent != index)
                add(parent, depth + 1);
        }
        if (done.contains(index))
            return;
        done.insert(index);
        if (control.hasWindow())
            order << index;
    };
    for (int i = 0; i < m_controls.size(); ++i)
        add(i, 0);
    return order;
}
