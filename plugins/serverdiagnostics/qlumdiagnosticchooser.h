#pragma once
#include <QAbstractItemModel>
#include <QModelIndex>
#include <QString>
#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;
class QlumTableFilter;
class QlumViewState;

/// One of many rows, chosen from a list or from a table of all of them.
class QlumDiagnosticChooser : public QWidget
{
    Q_OBJECT
public:
    /// What the parts are called.
    struct Names
    {
        QString object;  ///< in the settings and for tests
        QString label;   ///< before the list
        QString refresh; ///< on the button
        QString table;   ///< for screen readers
        QString empty;   ///< in the table while there is nothing
        QString ended;   ///< when the chosen row has gone
    };

    /// The model has a key for each row, and the entries of the list in its first column.
    QlumDiagnosticChooser(const Names& names, QAbstractItemModel* model, QlumViewState& state,
                          QWidget* parent = nullptr);

    /// Of the row that is chosen; empty for none.
    [[nodiscard]] QString key() const { return m_key; }
    /// Chooses a row; an unknown key is none.
    void choose(const QString& key);
    /// Has the rows of the model changed by the function: the chosen one stays chosen as long as it is there.
    /// False when it is not there any more.
    bool update(const std::function<void()>& change);
    /// The list is being read anew, or no longer.
    void setReading(bool isReading);
    /// Whether the list can be read anew.
    void setOnline(bool isOnline);
    /// What there is to be said about the list; empty for nothing. That the chosen row has gone is said
    /// besides, until another one is chosen.
    void setNote(const QString& note);
    [[nodiscard]] QTreeView* table() const { return m_table; } ///< of all rows

signals:
    /// The user wants the list read anew.
    void refreshClicked();
    /// The user has chosen another row.
    void chosen(const QString& key);

private:
    [[nodiscard]] QWidget* makeBar(const Names& names);
    void makeTable(const Names& names, QlumViewState& state);
    [[nodiscard]] QModelIndex rowOf(const QString& key) const;
    void show(const QModelIndex& row);
    void showNote();
    void userChose(const QString& key);

    QAbstractItemModel* m_model;
    QlumTableFilter* m_filter;
    QComboBox* m_list = nullptr;
    QPushButton* m_refresh = nullptr;
    QLabel* m_reading = nullptr;
    QLabel* m_note = nullptr;
    QLineEdit* m_text = nullptr;
    QTreeView* m_table = nullptr;
    const QString m_endedText;
    QString m_noteText;
    QString m_key;
    bool m_hasEnded = false;  ///< the chosen row has gone
    bool m_isShowing = false; ///< what changes is not by the user
};
