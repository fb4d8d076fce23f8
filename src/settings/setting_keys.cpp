#include "settings/setting_keys.h"

#include <QStandardPaths>

namespace Setting {

// `colorKey` looks a colour up by its number.
constexpr bool colorsStandInOrder()
{
    for (int i = 0; i < colorCount; ++i) {
        if (colors[i].color != static_cast<Color>(i))
            return false;
    }
    return true;
}
static_assert(colorsStandInOrder());

QString defaultProjectFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
           QStringLiteral("/Vorel_sources");
}

} // namespace Setting
