#pragma once
#include <plugins/dataaccess/parts/qlumdifferencemodel.h>
#include <plugins/dataaccess/parts/qlumsnapshot.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <plugins/dataaccess/qlumdataitem.h>

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QSettings;
class QTableView;
class QToolBar;
class QWidget;
class QlumStagedPart;

/// Snapshots of the view's values, kept with the project or in files, and what is different between them.
class QlumSnapshotPart final : public QlumDaPart
{
    Q_OBJECT
public:
    /// Adds its page and its commands to the host; both outlive it.
    QlumSnapshotPart(QlumDaHost& host, QlumStagedPart& staged);

    /// Keeps all rows as they are now. The same name replaces.
    void take(const QString& name);
    /// Reads one of a file's content; the fault is for the user, empty when it went well.
    [[nodiscard]] QString read(const QByteArray& text);
    /// Compares what is chosen on the page.
    void compare();
    /// Stages what the selected rows of the comparison, or all that changed, were before.
    void stageBefore();
    [[nodiscard]] const std::vector<QlumSnapshot>& snapshots() const { return m_snapshots; }

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

private:
    [[nodiscard]] QWidget* makePage();
    void fillBar(QToolBar& bar);
    [[nodiscard]] QComboBox* makeChoice(const char* name, const QString& accessibleName);
    void makeTable(QWidget& page);
    [[nodiscard]] QlumSnapshot present(const QString& name) const;
    [[nodiscard]] QlumSnapshotRow rowOf(const QlumDataItem& item) const;
    void keep(QlumSnapshot snapshot);
    void measure();
    void tellKept(const QString& forgotten);
    void fillChoices(const QString& before);
    /// Null: now.
    [[nodiscard]] const QlumSnapshot* chosen(const QComboBox& choice) const;
    [[nodiscard]] bool hasSnapshot(const QString& name) const;
    void askTake();
    void askLoad();
    void askSave();
    void removeChosen();

    QlumDaHost& m_host;
    QlumStagedPart& m_staged;
    std::vector<QlumSnapshot> m_snapshots;
    QHash<QString, int> m_sizes;            ///< bytes of each as text
    QStringList m_leftOut;                  ///< names of those that the project has no room for
    QlumDifferenceModel* m_model = nullptr; ///< the page's, as what follows
    QlumDifferenceFilter* m_filter = nullptr;
    QTableView* m_table = nullptr;
    QComboBox* m_before = nullptr;
    QComboBox* m_after = nullptr;
    QLabel* m_summary = nullptr;
    QWidget* m_page = nullptr;
};
