#pragma once
#include <app/api/qlummetatypes.h>
#include <app/api/qlummodelinterface.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumstructurenode.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/models/qlumtreemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>
#include <optional>
#include <vector>

/// The fields of a structure or union as a tree, at any depth; what is within a field is taken apart when it
/// is expanded. GUI thread.
class QlumStructureModel : public QlumTreeModel<QlumStructureNode>, public QlumModelInterface
{
    Q_OBJECT
public:
    /// What a row shows.
    enum Column { NameColumn, ValueColumn, TypeColumn, ColumnCount };
    /// As for all models of values.
    enum Role {
        ValueRole = Qt::UserRole,          ///< UaVariant: of the field
        DictionaryRole = Qt::UserRole + 2, ///< UaDataTypeDictionary*; the context keeps it
        DataTypeRole = Qt::UserRole + 4    ///< UaNodeId: of the field, as declared
    };

    /// What is known of the whole.
    explicit QlumStructureModel(QlumValueContext context, QObject* parent = nullptr);
    ~QlumStructureModel() override;

    /// Shows the value; for a null one, a new one of the declared type.
    void setValue(const UaVariant& value);
    /// The value as it is now. False, and why in words, when the fields cannot be put together.
    [[nodiscard]] bool value(UaVariant& value, QString& why) const;
    /// Whether the user has changed anything since setValue().
    [[nodiscard]] bool isModified() const { return m_modified; }
    /// Refuses all edits.
    void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
    /// Whether edits are refused.
    [[nodiscard]] bool isReadOnly() const { return m_readOnly; }
    /// Why the whole could not be taken apart, in words; empty when it could.
    [[nodiscard]] QString reason() const { return m_root->reason(); }

    /// What speaks against what was given, with the fields where that is.
    [[nodiscard]] const QlumValueCheck& check() const;

    // ---- what a row stands for; an invalid index is the whole

    /// What is known of it.
    [[nodiscard]] QlumValueContext contextOf(const QModelIndex& index) const;
    /// With all edits below.
    [[nodiscard]] UaVariant valueOf(const QModelIndex& index) const;
    /// Whether there is a value, without putting it together.
    [[nodiscard]] bool hasValue(const QModelIndex& index) const;
    /// The type of the value, for the user.
    [[nodiscard]] QString typeOf(const QModelIndex& index) const;
    /// The names that lead to it: "Limits.Low".
    [[nodiscard]] QString pathOf(const QModelIndex& index) const;
    /// Gives it another value; false when it is none for the place.
    bool replace(const QModelIndex& index, const UaVariant& value);
    /// The types of which a value may be given, where that is not fixed; empty where it is.
    [[nodiscard]] std::vector<UaNodeId> choices(const QModelIndex& index) const;
    /// Gives it a value of that type: null, empty, or a structure of such.
    bool choose(const QModelIndex& index, const UaNodeId& dataType);

    // ---- item model

    /// Before they are made, too.
    [[nodiscard]] bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;
    /// Whether the value in it is still to be taken apart.
    [[nodiscard]] bool canFetchMore(const QModelIndex& parent) const override;
    /// Takes it apart.
    void fetchMore(const QModelIndex& parent) override;
    /// Editable where a cell can edit the value, checkable what may be absent.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Edit role: a text; ValueRole: a UaVariant; check state: whether a field is there, a member chosen, a
    /// bit set.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

signals:
    /// The user changed something.
    void edited();

protected:
    [[nodiscard]] QVariant cell(const QlumStructureNode& node, int column, int role) const override;

private:
    [[nodiscard]] QVariant nameCell(const QlumStructureNode& node, int role) const;
    [[nodiscard]] QVariant valueCell(const QlumStructureNode& node, int role) const;
    [[nodiscard]] QVariant typeCell(const QlumStructureNode& node, int role) const;
    [[nodiscard]] QString shownValue(const QlumStructureNode& node) const;
    [[nodiscard]] QString shownParts(const QlumStructureNode& node) const;
    [[nodiscard]] std::vector<UaNodeId> choicesOf(const QlumStructureNode& node) const;
    [[nodiscard]] UaVariant collected(const QlumStructureNode& node) const;
    [[nodiscard]] bool setPresent(QlumStructureNode& node, bool present);
    void addChecks(const QlumStructureNode& node, QlumValueCheck& check) const;
    void removeBelow(QlumStructureNode& node);
    void populate(QlumStructureNode& node);
    void tellEdited(const QlumStructureNode& node);

    const QlumValueContext m_context;
    std::unique_ptr<QlumStructureNode> m_root;
    mutable std::optional<QlumValueCheck> m_check; ///< kept until something changes
    bool m_modified = false;
    bool m_readOnly = false;
};
