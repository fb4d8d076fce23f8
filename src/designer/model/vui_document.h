// The form file of the classic designer.
#pragma once

#include "designer/model/form_document.h"

#include <QHash>
#include <QVector>

// The pages of a tab widget. `children` holds ids, one list for each page.
struct TabPages
{
    int count = 2;
    int currentIndex = 0;
    QStringList titles;
    QVector<QStringList> children;

    bool operator==(const TabPages &other) const;
    bool operator!=(const TabPages &other) const { return !(*this == other); }
};

class VuiDocument final : public FormDocument
{
public:
    static constexpr int mostPages = 1000;

    // An empty form of 800 x 600.
    VuiDocument();

    QSize canvasSize() const;
    void setCanvasSize(const QSize &size);
    // Pages are no part of a component: whoever moves one to another page sets both.
    // None for an entry that is no tab widget or keeps no pages.
    std::optional<TabPages> tabPages(int index) const;
    void setTabPages(int index, const TabPages &pages);

protected:
    std::optional<VL::DesignComponent> readEntry(const JsonNode &entry,
                                                 FormWarnings *warnings) const override;
    void completeForBuild(const JsonNode &entry, VL::DesignComponent &component,
                          FormWarnings &warnings) const override;
    QJsonObject newEntry(const VL::DesignComponent &component, QPoint offset) const override;
    void propertyWritten(int index, const QString &key, const QVariant &value) override;
    void structureChanged() override { m_pagePlaces.reset(); }
    void entryValueChanged(const char *key) override;
    QString generatedNameBase(const VL::DesignComponent &component) const override;

private:
    struct PagePlace
    {
        QString tabWidget;
        int page = 0;
    };

    int storedType(const JsonNode &entry) const;
    QString entryId(const JsonNode &entry) const;
    std::optional<TabPages> readPages(const JsonNode &entry) const;
    QStringList readTexts(const JsonNode &list) const;
    const QHash<QString, PagePlace> &pagePlaces() const;
    void readChildren(const JsonNode &entry, VL::DesignComponent &component,
                      FormWarnings &warnings) const;

    // Where tab widgets say that components lie; worked out when asked for.
    mutable std::optional<QHash<QString, PagePlace>> m_pagePlaces;
};
