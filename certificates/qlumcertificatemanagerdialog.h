#pragma once
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <uawidgets/qlumbasewidget.h>

#include <QIcon>
#include <QString>
#include <QWidget>

class QlumCertificateManager;

/// The certificate manager as a dialog.
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
