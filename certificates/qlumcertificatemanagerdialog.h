#pragma once
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <uawidgets/qlumbasewidget.h>

#include <QIcon>
#include <QString>
#include <QWidget>

class QlumCertificateManager;

/// The certificate manager as a dialog. It also works as a window beside others, from which certificates can
/// be dragged.
class QlumCertificateManagerDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    QlumCertificateManagerDialog(const QString& applicationName, const QString& organization,
                                 const QlumCertificateStoreConfiguration& configuration, const QIcon& icon,
                                 QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

    [[nodiscard]] QlumCertificateManager* manager() const { return m_manager; }

private:
    QlumCertificateManager* m_manager;
};

/// Lets the user look after the application's own stores and returns when he has finished; where the window
/// below is open, that comes to the front instead, and this returns at once.
void qlumManageCertificates(QWidget* parent);
/// Shows the same in a window that stays open beside the others. There is one only: asked again, it comes to
/// the front and reads the stores again.
void qlumShowCertificateManager(QWidget* parent);
