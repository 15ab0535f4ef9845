#pragma once
#include <QAbstractItemDelegate>
#include <QAction>
#include <QEvent>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QSet>
#include <QString>
#include <QTreeView>
#include <QWidget>

#include <memory>

class QlumAttributeDelegate;
class QlumAttributeModel;
class QlumEmptyText;
class QlumViewState;

/// The tree of attributes: copies, keeps what the user opened from one node to the next, and lets long arrays
/// grow while he scrolls.
class QlumAttributeView : public QTreeView
{
    Q_OBJECT
public:
    /// The model must outlive it.
    explicit QlumAttributeView(QlumAttributeModel* model, QWidget* parent = nullptr);
    ~QlumAttributeView() override;

    /// What is said while there are no rows; plain.
    void setEmptyText(const QString& text);
    /// Whether the user is changing a value, which showing the node anew would interrupt.
    [[nodiscard]] bool isEditing() const { return state() == EditingState; }

    using QTreeView::edit;
    /// The names from the attribute down to the row.
    [[nodiscard]] QString pathOf(const QModelIndex& index) const;

signals:
    /// The user wants to change a value and cannot, for that reason.
    void editRefused(const QString& why);
    /// The user wants to change a value that no cell has room for.
    void windowWanted(const QModelIndex& index);
    /// The user has ended changing a value, or given it up.
    void editingEnded();
    /// What the user has entered is not taken, for that reason; its editor is still open.
    void entryRefused(const QString& why);

public slots:
    /// To the clipboard, of the current row: the cell, in full.
    void sltCopyCell();
    /// Name and value, a tab between them.
    void sltCopyRow();
    /// The value, whichever cell is current.
    void sltCopyValue();
    /// The names from the attribute down to the row.
    void sltCopyPath();
    /// The id of the node that is shown.
    void sltCopyNodeId();
    /// The value of the row, in the form by which it can be read back.
    void sltCopyJson();
    /// All rows that are there.
    void sltCopyAllText();
    /// The same, comma separated.
    void sltCopyAllCsv();
    /// All attributes.
    void sltCopyAllJson();

protected:
    /// Says why when it does not begin.
    bool edit(const QModelIndex& cell, EditTrigger trigger, QEvent* event) override;
    /// Not one that holds no value, whatever the user does next; Escape closes it.
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void createActions();
    void saveState();
    void restoreState();
    void restoreBranch(const QModelIndex& parent, const QString& path);
    /// The highest element of the array that was selected or open, -1 for none.
    [[nodiscard]] int lastWantedElement(const QString& array) const;
    bool showInDocument(const QModelIndex& index);
    void editElsewhere(const QModelIndex& index, EditTrigger trigger);
    void leaveEditor();
    void fetchVisible();

    QlumAttributeModel* m_attributes;
    QlumAttributeDelegate* m_delegate;
    QlumEmptyText* m_empty = nullptr;
    std::unique_ptr<QlumViewState> m_state;
    QSet<QString> m_expanded; ///< paths of names
    QString m_current;
    QPersistentModelIndex m_edited;
    int m_scrollPosition = 0;
};
