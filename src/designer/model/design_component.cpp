#include "designer/model/design_component.h"

namespace VL {

QString DesignComponent::name() const
{
    const QString name = properties.value(QStringLiteral("name")).toString();
    return name.isEmpty() ? originalName : name;
}

} // namespace VL
