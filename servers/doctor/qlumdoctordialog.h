#pragma once
#include <servers/doctor/qlumdiagnosis.h>
#include <uawidgets/qlumbasewidget.h>

#include <QDialogButtonBox>
#include <QString>
#include <QWidget>

#include <memory>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QTreeView;
class QlumDoctor;
class QlumDoctorModel;
class QlumProjectNodeServer;

/// Shows a diagnosis while it runs and what it has come to, with a button for what helps and one for the
/// text report. Not modal.
class QlumDoctorDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// Of a doctor that goes with the dialog, which begins at once.
    explicit QlumDoctorDialog(std::unique_ptr<QlumDoctor> doctor, QWidget* parent = nullptr);
    /// Ends what runs.
    ~QlumDoctorDialog() override;

    [[nodiscard]] const QlumDoctor& doctor() const { return *m_doctor; }

private:
    void makeTable();
    void makeButtons(class QDialogButtonBox& buttons);
    void begin();
    void update();
    void showDetails();
    void fix();
    void offerEndpoints();
    void exportOwn();
    void copyReport();
    [[nodiscard]] static QString fixText(const QlumRung& rung);

    const std::unique_ptr<QlumDoctor> m_doctor;
    QlumDoctorModel* m_model;
    QLabel* m_summary;
    QTreeView* m_view;
    QPlainTextEdit* m_details;
    QPushButton* m_fix = nullptr;
    QPushButton* m_run = nullptr;
    QPushButton* m_copy = nullptr;
};

/// Shows the doctor of the server, and begins a diagnosis; an open one is brought to the front. The dialog
/// goes with the node, which keeps what a fix changes.
void qlumDiagnose(QlumProjectNodeServer& node, QWidget* parent);
/// The text of the latest diagnosis of that server since the program was started; empty for none.
[[nodiscard]] QString qlumLatestDiagnosis(unsigned int serverId);
