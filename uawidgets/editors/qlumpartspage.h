#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>

class QAbstractItemView;
class QLabel;
class QTableView;
class QlumMessageBar;
class QlumPartDelegate;

/// What pages have in common that edit a value by its parts: a view whose open editor counts before it is
/// closed, a line that says what is shown, a bar for what is not taken, and windows for parts that need more
/// room than a cell. GUI thread.
class QlumPartsPage : public QlumValuePage
{
    Q_OBJECT
public:
    /// Has no view before showIn().
    QlumPartsPage(const QlumValueContext& context, QWidget* parent);
    ~QlumPartsPage() override;

    [[nodiscard]] bool isModified() const override;
    [[nodiscard]] QString fault() const override;
    [[nodiscard]] QString remark() const override;
    [[nodiscard]] QString refusal() const override;

protected:
    /// Puts the value of a part into its place; false when it is none for that place.
    using Putter = std::function<bool(const QModelIndex& place, const UaVariant& part)>;

    /// Whether parts have been changed; what is being typed is none yet.
    [[nodiscard]] virtual bool arePartsModified() const = 0;
    /// Of all parts; asked once until partsChanged().
    [[nodiscard]] virtual QlumValueCheck checkParts() const = 0;
    /// Of a part, for the user.
    [[nodiscard]] virtual QString placeOf(const QModelIndex& index) const = 0;
    /// Shows around the view what the parts and the selection allow.
    virtual void showAround() = 0;

    /// The view edits by the delegate from now on. The model must be set.
    void showIn(QAbstractItemView* view, QlumPartDelegate* delegate);
    /// The same for a table of elements, with a text for the one that has none.
    void showElementsIn(QTableView* table, QlumPartDelegate* delegate, const QString& name,
                        const QString& emptyText);
    /// To be called when the model is shown another value.
    void partsReset();
    /// To be called when the user has changed a part.
    void partsChanged();
    /// Puts what is being typed into its place; false while that is no value.
    bool takeOpen() const;
    /// Edits a part in a window over the page; without somebody who puts it into its place it is only shown.
    void openPart(const QModelIndex& place, const QlumValueContext& context, const UaVariant& part,
                  const Putter& put);
    /// The name of the type of elements.
    [[nodiscard]] QString elementTypeName(OpcUa_BuiltInType type) const;

    /// Of the whole value.
    [[nodiscard]] const QlumValueContext& context() const { return m_context; }
    /// To be put into the layout, as summary().
    [[nodiscard]] QlumMessageBar* messages() const { return m_messages; }
    /// Plain text.
    [[nodiscard]] QLabel* summary() const { return m_summary; }

private:
    [[nodiscard]] QlumValueCheck check() const;

    const QlumValueContext m_context;
    QlumMessageBar* m_messages;
    QLabel* m_summary;
    QAbstractItemView* m_view = nullptr;
    QlumPartDelegate* m_delegate = nullptr;
    mutable std::optional<QlumValueCheck> m_check; ///< of the parts; kept until one of them changes
};
