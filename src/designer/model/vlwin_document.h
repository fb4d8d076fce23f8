// The form file of the self-drawn designer.
#pragma once

#include "designer/model/form_document.h"

// Components are given in classic form: the classic type, `_vlwin_type` among the properties and
// positions in the scene, whatever the file holds.
class VlwinDocument final : public FormDocument
{
public:
    // An empty form with positions local to its window.
    VlwinDocument();

    // Whether positions in the file count from the window; older files have those of the scene.
    bool hasLocalPositions() const;
    // The first window's; the origin when there is none.
    QPoint rootPosition() const;

protected:
    std::optional<VL::DesignComponent> readEntry(const JsonNode &entry,
                                                 FormWarnings *warnings) const override;
    QJsonObject newEntry(const VL::DesignComponent &component, QPoint offset) const override;
    QPoint childOffset(const QList<VL::DesignComponent> &components) const override;
    bool isStoredProperty(const QString &key) const override;
    void propertyWritten(int index, const QString &key, const QVariant &value) override;
    QPoint presentOffset() const override;
    void structureChanged() override { m_rootPosition.reset(); }
    void entryValueChanged(const char *key) override;
    QString generatedNameBase(const VL::DesignComponent &component) const override;

private:
    int storedType(const JsonNode &entry) const;
    mutable std::optional<QPoint> m_rootPosition;
};
