#include "shell/project_components.h"

#include "designer/model/component_types.h"
#include "designer/model/form_file.h"

#include <QDir>

namespace {

void addComponents(const QList<VL::DesignComponent> &components, int depth,
                   QVector<WindowComponent> &all)
{
    for (const VL::DesignComponent &component : components) {
        const VL::ComponentTypeInfo *type = VL::componentType(component.type);
        all << WindowComponent{component.name(), type ? QString::fromLatin1(type->key) : QString(),
                               VL::componentDisplayName(component.type), depth};
        addComponents(component.children, depth + 1, all);
    }
}

} // namespace

QVector<WindowComponents> readProjectComponents(const VL::ProjectInfo &project)
{
    QVector<WindowComponents> windows;
    QStringList files = project.windowFiles + project.uiFiles;
    files.removeDuplicates();
    for (const QString &file : qAsConst(files)) {
        WindowComponents window;
        window.name = ProjectFile::windowName(file);
        window.file = QDir::cleanPath(QDir(project.path).absoluteFilePath(file));
        const FormReadResult form = readFormFile(window.file);
        QStringList warnings;
        if (form.document)
            addComponents(form.document->buildComponents(&warnings), 0, window.components);
        windows << window;
    }
    return windows;
}
