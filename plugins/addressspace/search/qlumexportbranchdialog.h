#pragma once
#include <app/api/qlumjobpool.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/addressspace/search/qlumbranchexport.h>
#include <plugins/addressspace/search/qlumcrawl.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

#include <memory>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;

/// Writes all nodes below one into a file: what it is to have, how far it is, what came of it. The program
/// goes on meanwhile.
class QlumExportBranchDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// Of which server and node.
    struct Branch
    {
        unsigned int serverId = qlumNoServer;            ///< whose node it is
        QString serverName;                              ///< for the user
        UaNodeId id;                                     ///< of the node
        QString name;                                    ///< of the node
        OpcUa_UInt32 nodeClass = OpcUa_NodeClass_Object; ///< of the node
    };

    /// Nothing is read before the user has said what he wants.
    QlumExportBranchDialog(Branch branch, QlumSessionServicesProvider services, QWidget* parent = nullptr);
    ~QlumExportBranchDialog() override;

    /// Begins to write into a file.
    void start(const QString& file);
    /// Whether it is under way.
    [[nodiscard]] bool isRunning() const { return m_ticket != 0; }

protected:
    /// Closing it ends the work.
    void reject() override;

private:
    void chooseFile();
    void take(const QlumCrawlState& state);
    void finish(const QlumExportWish& wish, const QlumExportOutcome& outcome, const QlumCrawlState& state);
    void stop(const QString& text);

    const Branch m_branch;
    const QlumSessionServicesProvider m_services;
    QCheckBox* m_types;
    QCheckBox* m_descriptions;
    QCheckBox* m_values;
    QLabel* m_state;
    QProgressBar* m_progress;
    QPushButton* m_start;
    QPushButton* m_cancel;
    QlumJobPool::Ticket m_ticket = 0;
    QlumJobPool m_pool; ///< last: its work ends first
};
