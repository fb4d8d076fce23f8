// What a build must be able to rely on in the components of a form.
#pragma once

#include "designer/model/design_component.h"
#include "designer/model/form_values.h"

#include <QList>

#include <functional>

namespace FormChecks {

// Gives each component, those inside others included, a name that source code can use: nameless
// ones get the base that `base` tells and a number. Warns of names and ids that occur twice.
void giveNames(QList<VL::DesignComponent> &components,
               const std::function<QString(const VL::DesignComponent &)> &base,
               FormWarnings &warnings);

// Removes the `_parent...` properties by which a component would lie in itself.
void cutParentCircles(QList<VL::DesignComponent> &components, FormWarnings &warnings);

} // namespace FormChecks
