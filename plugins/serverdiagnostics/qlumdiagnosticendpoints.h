#pragma once
#include <plugins/serverdiagnostics/qlumdiagnosticdata.h>
#include <plugins/serverdiagnostics/qlumdiagnosticpanel.h>
#include <plugins/serverdiagnostics/qlumdiagnosticvalue.h>
#include <uabase/values/uastatus.h>

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QLayout;
class QListWidget;
class QPushButton;
class QlumViewState;

/// What FindServers and GetEndpoints tell of a server.
class QlumDiagnosticEndpoints : public QWidget
{
    Q_OBJECT
public:
    /// The state keeps what the user arranges.
    explicit QlumDiagnosticEndpoints(QlumViewState& state, QWidget* parent = nullptr);

    /// Shows what was read; what was selected stays so when it is there again.
    void take(const QlumEndpointReading& reading);
    /// New answers are awaited, or no longer.
    void setReading(bool isReading);
    /// Whether the server can be asked again.
    void setOnline(bool isOnline);
    /// Shows nothing.
    void clear();
    /// All descriptions as text.
    [[nodiscard]] QString toText() const;

signals:
    /// The user wants the server asked again.
    void refreshClicked();

private:
    /// One of the two answers.
    struct Answer
    {
        QListWidget* list = nullptr;
        QLabel* note = nullptr;
        std::vector<QlumDiagnosticText> descriptions; ///< label: the entry
    };

    [[nodiscard]] QLayout* makeHead();
    [[nodiscard]] QWidget* makeLists();
    [[nodiscard]] QWidget* makeList(const QString& name, const QString& title, Answer& answer, Answer& other);
    static void show(Answer& answer, const UaStatus& status);
    void select(const Answer& answer);

    Answer m_servers;
    Answer m_endpoints;
    QLabel* m_url = nullptr;
    QLabel* m_reading = nullptr;
    QPushButton* m_refresh = nullptr;
    QlumDiagnosticPanel* m_panel;
};
