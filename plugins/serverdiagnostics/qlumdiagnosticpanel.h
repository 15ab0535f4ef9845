#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>

#include <QGroupBox>
#include <QString>
#include <QStringList>
#include <QWidget>

class QAction;
class QTreeView;
class QlumViewState;

/// A group of rows with its title.
class QlumDiagnosticPanel : public QGroupBox
{
    Q_OBJECT
public:
    /// What a panel is called.
    struct Names
    {
        QString object;      ///< in the settings and for tests
        QString title;       ///< of the group; may be empty
        QString screen;      ///< for screen readers
        QStringList columns; ///< two or three
    };

    /// The state keeps the widths of the columns.
    QlumDiagnosticPanel(const Names& names, QlumViewState& state, QWidget* parent = nullptr);

    [[nodiscard]] QlumDiagnosticModel* model() const { return m_model; } ///< its rows
    [[nodiscard]] QTreeView* view() const { return m_view; }             ///< that shows them
    [[nodiscard]] QString name() const { return m_title; }               ///< of the group
    /// Says in the title that new values are being read.
    void setReading(bool isReading);
    /// Of whose nodes the rows are.
    void setServer(unsigned int serverId) { m_serverId = serverId; }
    /// A button below the rows that shows the certificate in the row with that label.
    void addCertificateButton(const QString& label);
    /// A widget below the rows.
    void addBelow(QWidget* widget);

private:
    void makeActions();
    void updateActions();
    void showCertificate();
    [[nodiscard]] QlumToolNodes selectedNodes() const;

    const QString m_title;
    QlumDiagnosticModel* m_model;
    QTreeView* m_view;
    QAction* m_certificate = nullptr;
    unsigned int m_serverId = qlumNoServer;
};
