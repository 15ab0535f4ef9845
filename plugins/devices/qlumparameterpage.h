#pragma once
#include <app/api/qlumactiontable.h>
#include <app/api/qlumapplicationinterface.h>
#include <plugins/devices/qlumdevicedata.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QHideEvent>
#include <QModelIndex>
#include <QShowEvent>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;
class QLineEdit;
class QTableView;
class QlumParameterFilter;
class QlumParameterModel;
class QlumPartDelegate;
class QlumViewState;

/// The parameters of a device by functional group, and what can be done with them as a set.
class QlumParameterPage : public QWidget
{
    Q_OBJECT
public:
    /// The state must outlive the page.
    explicit QlumParameterPage(QlumViewState& state, QWidget* parent = nullptr);

    void setDetails(unsigned int serverId, const QlumDeviceDetails& details, bool keepsChanges);
    void clear();
    /// Whether the server can be asked just now.
    void setReady(bool isReady);
    [[nodiscard]] QlumParameterModel* model() const { return m_model; }
    /// Of the rows that are selected.
    [[nodiscard]] std::vector<int> selectedRows() const;
    [[nodiscard]] QString group() const;
    void setGroup(const QString& group);
    /// Whether the user wants values as they change; while the page is hidden nobody sees them.
    [[nodiscard]] bool isWatching() const;
    void setWatching(bool isWatching);

    /// Opens the editor of a row, or says why there is none.
    void edit(const QModelIndex& index);

signals:
    void readWanted();
    void watchWanted(bool isWatched);
    void writeWanted();
    void saveWanted();
    void loadWanted();
    void compareWanted();
    /// Why something cannot be done, in words.
    void told(const QString& what, const QString& why);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void createActions();
    [[nodiscard]] QWidget* makeBar();
    void showGroups(const QStringList& groups);
    void updateActions();
    [[nodiscard]] QlumValueContext contextOf(const QModelIndex& index) const;
    void editInWindow(int row);

    QlumParameterModel* m_model;
    QlumParameterFilter* m_filter;
    QlumActionTable m_actions;
    QComboBox* m_groups = nullptr;
    QLineEdit* m_text = nullptr;
    QLabel* m_changes = nullptr;
    QTableView* m_view = nullptr;
    unsigned int m_serverId = qlumNoServer;
    QString m_wantedGroup; ///< of a project, until the device has it
    bool m_isReady = false;
};
