#pragma once
#include <opcua/opcua_types.h>
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>
#include <uabase/values/uadatavalue.h>

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QPushButton;
class QlumDiagnosticPanel;
class QlumViewState;

/// What a server tells of itself, in groups.
class QlumDiagnosticServerPage : public QWidget
{
    Q_OBJECT
public:
    /// The state keeps what the user arranges.
    explicit QlumDiagnosticServerPage(QlumViewState& state, QWidget* parent = nullptr);

    /// Shows what was read.
    void take(const QlumServerReading& reading);
    /// Shows one of the counts that are watched, by its label.
    void takeCount(const QString& label, OpcUa_UInt32 number);
    /// Says why the watched counts do not follow the server; empty when they do.
    void setCountNote(const QString& note);
    /// New values are being read, or no longer.
    void setReading(bool isReading);
    /// Of whom the rows are.
    void setServer(unsigned int serverId);
    /// Whether the server says that it counts nothing.
    [[nodiscard]] bool isDisabled() const { return m_isDisabled; }
    /// The rows stay, without values.
    void clearValues();
    /// In the order of the screen.
    [[nodiscard]] const std::vector<QlumDiagnosticPanel*>& panels() const { return m_panels; }

signals:
    /// The user wants the server to count, or not to.
    void enableWanted(bool isWanted);

private:
    void makePanels(QlumViewState& state);
    void makeRows();
    [[nodiscard]] QWidget* makeCountNote();
    [[nodiscard]] QWidget* makeEnabled();
    void showEnabled(const UaDataValue& value);
    [[nodiscard]] static QString limitText(const QlumServerReading& reading, OpcUa_UInt32 nodeId,
                                           const UaDataValue& value);

    std::vector<QlumDiagnosticPanel*> m_panels;
    std::vector<QlumDiagnosticItem*> m_items;   ///< of the rows, in their order
    std::vector<QlumDiagnosticModel*> m_models; ///< of the items
    QLabel* m_countNote = nullptr;
    QLabel* m_enabledText = nullptr;
    QPushButton* m_enable = nullptr;
    bool m_isEnabled = false;
    bool m_isDisabled = false; ///< neither when it is not known
};
