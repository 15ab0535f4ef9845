// A store in the certificate manager: its table, filter and folder.
#pragma once
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class QAbstractItemModel;
class QLabel;
class QLineEdit;
class QlumJob;
class QlumJobPool;
class QlumTableFilter;
class QlumViewState;
class QPushButton;
class QTableView;

/// Base of the pages of both kinds. Rows are read by a job pool, which must end before the page.
class QlumStorePage : public QWidget
{
    Q_OBJECT
public:
    /// The name is that of the store, not translated; the title is what the user calls it.
    QlumStorePage(const QString& name, const QString& title, const QString& folder, QWidget* parent);

    /// Empties the table and has the pool read the files; what is selected stays so.
    void reload(QlumJobPool& pool);
    /// Selects that file's row as soon as it is there.
    void want(const QString& path);
    /// Takes over what was read so far.
    void takeRead();

    [[nodiscard]] const QString& folder() const { return m_folder; }
    /// The current row in the model's own order; invalid for none.
    [[nodiscard]] QModelIndex current() const;
    /// Full path of the current row's file; empty for none.
    [[nodiscard]] QString currentFile() const;
    [[nodiscard]] QTableView* view() const { return m_view; }
    /// Gives the table what all tables have. Call once, when the page's own actions are in its context menu.
    void keepColumns(QlumViewState* state);

signals:
    void currentChanged();
    /// The user has opened a row.
    void rowActivated();
    /// Local files, by drag and drop.
    void filesDropped(const QStringList& paths);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    /// Call once, at the end of the constructor.
    void setModel(QAbstractItemModel* model, int sortRole);
    /// Has the pool read the files into an inbox.
    virtual void startReading(QlumJobPool& pool) = 0;
    /// Runs what reads the files, in sight of the user, who may cancel it.
    void read(QlumJobPool& pool, std::unique_ptr<QlumJob> reader);
    /// Moves what is in the inbox to the model.
    virtual void takeEntries() = 0;
    /// Full path of a row of the model.
    [[nodiscard]] virtual QString fileOf(const QModelIndex& index) const = 0;

private slots:
    void sltOpenLocation();

private:
    [[nodiscard]] QWidget* createFilterRow();
    void createView(const QString& name, const QString& title);
    void updateCount();
    void select(const QString& path);

    QString m_folder;
    bool m_isCancelled = false; ///< not all files were read
    QString m_wanted;           ///< file that was selected before the table was read again
    QAbstractItemModel* m_model = nullptr;
    QlumTableFilter* m_sorted;
    QLineEdit* m_filter;
    QLabel* m_count;
    QTableView* m_view;
    QPushButton* m_location;
};

/// Opens a file or folder with what the desktop has for it; tells the user when there is nothing.
void qlumOpenOnDesktop(const QString& path, QWidget* parent);
