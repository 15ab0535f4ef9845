#include <certificates/qlumcertificatemanagerdialog.h>

#include <certificates/qlumcertificatemanager.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

QlumCertificateManagerDialog::QlumCertificateManagerDialog(
    const QString& applicationName, const QString& organization,
    const QlumCertificateStoreConfiguration& configuration, const QIcon& icon, QWidget* parent,
    Qt::WindowFlags flags)
    : QlumBaseWidget(QStringLiteral("QlumCertificateManagerDialog"), parent, flags),
      m_manager(new QlumCertificateManager(applicationName, organization, configuration, icon, true, this))
{
    setWindowTitle(tr("Manage Certificates"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("ok"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_manager, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 160, fontMetrics().height() * 34);
}
