// What the form files of both designers have in common: a list of components in a JSON text.
#pragma once

#include "designer/model/design_component.h"
#include "designer/model/form_values.h"
#include "designer/model/json_tree.h"

#include <QPoint>
#include <QRect>
#include <QStringList>

#include <optional>

// A form as a value. What is read is written back byte for byte; a change touches only the lines
// of what it changes. Unknown keys, entries that make no component and unusual numbers stay.
//
// Entries are counted in file order and include those that make no component. Calls with an index
// beyond them, or of an entry that is no object, do nothing.
class FormDocument
{
public:
    virtual ~FormDocument() = default;

    // False, with a Chinese sentence in `error`, when the bytes are no JSON object.
    [[nodiscard]] bool read(const QByteArray &bytes, QString *error = nullptr);
    QByteArray toBytes() const { return m_tree.toBytes(); }
    // Changed since it was read; a new form counts as changed.
    bool isModified() const { return m_tree.isModified(); }

    // Whether the text says that it is a form of the self-drawn designer.
    bool isSelfDrawn() const;

    int entryCount() const;
    // The first entry whose component has that id, or -1.
    int indexOf(const QString &id) const;
    // The component of an entry as a designer shows it; none for an entry that is skipped.
    std::optional<VL::DesignComponent> component(int index) const;
    // Those of all entries, in file order.
    QList<VL::DesignComponent> components() const;
    // The components as a build takes them: with names fit for source code and parents that do
    // not run in circles. Appends a Chinese sentence to `warnings` for whatever was wrong.
    QList<VL::DesignComponent> buildComponents(QStringList *warnings = nullptr) const;

    void setProperty(int index, const QString &key, const QVariant &value);
    void removeProperty(int index, const QString &key);
    // An empty handler removes the event.
    void setEventHandler(int index, const QString &event, const QString &handler);
    void setGeometry(int index, const QRect &geometry);
    void setLocked(int index, bool locked);
    // Puts a new entry ahead of the one at `index`, or at the end; gives its index.
    int insert(int index, const VL::DesignComponent &component);
    void append(const VL::DesignComponent &component) { insert(entryCount(), component); }
    void remove(int index);
    // Makes the form hold these components in this order, with as few changes of the text as
    // possible. They are recognised by id, a renamed one by its original name. Entries that make
    // no component stay at their places.
    void update(const QList<VL::DesignComponent> &components);

protected:
    FormDocument() = default;
    FormDocument(const FormDocument &) = default;
    FormDocument &operator=(const FormDocument &) = default;

    // The component of an entry, which is an object. `warnings` may be null.
    virtual std::optional<VL::DesignComponent> readEntry(const JsonNode &entry,
                                                         FormWarnings *warnings) const = 0;
    // Adds what only a build needs.
    virtual void completeForBuild(const JsonNode &entry, VL::DesignComponent &component,
                                  FormWarnings &warnings) const;
    // The text of a new entry; `offset` as of `childOffset`.
    virtual QJsonObject newEntry(const VL::DesignComponent &component, QPoint offset) const;
    // How far the positions of components other than windows lie from those in the file.
    virtual QPoint childOffset(const QList<VL::DesignComponent> &components) const;
    // The same for the components as they stand.
    virtual QPoint presentOffset() const { return {}; }
    // Whether that property is written as such; else it is part of other keys.
    virtual bool isStoredProperty(const QString &key) const;
    // Follows a change of a property with the keys that depend on it; `value` is invalid when
    // the property was removed.
    virtual void propertyWritten(int index, const QString &key, const QVariant &value);
    // Forgets what was worked out of the tree: after any change of the list, after a change of
    // one key of an entry.
    virtual void structureChanged() {}
    virtual void entryValueChanged(const char *key);
    virtual QString generatedNameBase(const VL::DesignComponent &component) const = 0;

    // id, names, geometry, `locked`, properties and handlers.
    VL::DesignComponent readCommon(const JsonNode &entry, const QSize &defaultSize,
                                   FormWarnings *warnings) const;
    // All but the type.
    QJsonObject commonEntry(const VL::DesignComponent &component, QPoint offset) const;
    QString text(const JsonNode &object, const char *key) const;
    const JsonNode *entries() const;
    // Null when the index is beyond the entries or the entry is no object.
    JsonMember *entry(int index);
    void setRootValue(const char *key, const QJsonValue &value);
    // Leaves the text alone when the value stands there already.
    void setEntryValue(int index, const char *key, const QJsonValue &value);
    void removeEntryValue(int index, const char *key);

    JsonTree m_tree;

private:
    struct Matching;

    void setBagValue(int index, const char *bag, const QString &key, const QJsonValue &value);
    void removeBagValue(int index, const char *bag, const QString &key);
    void updateEntry(int index, const VL::DesignComponent &old, QPoint oldOffset,
                     const VL::DesignComponent &fresh, QPoint offset);
    void updateProperties(int index, const VL::DesignComponent &old,
                          const VL::DesignComponent &fresh);
    void updateHandlers(int index, const VL::DesignComponent &old,
                        const VL::DesignComponent &fresh);
    void arrange(const Matching &matching);
    void readProperties(const JsonNode &entry, VL::DesignComponent &component,
                        FormWarnings *warnings) const;
    void readHandlers(const JsonNode &entry, VL::DesignComponent &component,
                      FormWarnings *warnings) const;
    void warnOfRange(const JsonNode &entry, const char *key, int lowest, int highest,
                     const VL::DesignComponent &component, FormWarnings *warnings) const;
};
