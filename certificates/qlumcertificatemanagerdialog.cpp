#include <certificates/qlumcertificatemanagerdialog.h>

#include <certificates/qlumcertificatemanager.h>
#include <certificates/qlumcertificates.h>
#include <certificates/qlumcertificatestoreconfiguration.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <memory>

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

// ---- of the application

namespace {
QPointer<QlumCertificateManagerDialog>& managerBeside()
{
    static QPointer<QlumCertificateManagerDialog> window;
    return window;
}

bool bringManagerToFront()
{
    QlumCertificateManagerDialog* const window = managerBeside();
    if (!window)
        return false;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    window->manager()->sltReload();
    return true;
}

std::unique_ptr<QlumCertificateManagerDialog> makeManager(QWidget* parent)
{
    auto dialog =
        std::make_unique<QlumCertificateManagerDialog>(QStringLiteral("Tavelin"), QStringLiteral("Korvanda"),
                                                       QlumCertificateStoreConfiguration::ofApplication(),
                                                       QIcon(QStringLiteral(":/images/tavelin.png")), parent);
    QObject::connect(dialog->manager(), &QlumCertificateManager::sigNewCertificateCreated, dialog.get(),
                     [] { QlumCertificates::instance()->reload(); });
    return dialog;
}
} // namespace

void qlumManageCertificates(QWidget* parent)
{
    if (!bringManagerToFront())
        makeManager(parent)->exec();
}

void qlumShowCertificateManager(QWidget* parent)
{
    if (bringManagerToFront())
        return;
    managerBeside() = makeManager(parent).release(); // the parent's, until it is closed
    managerBeside()->setAttribute(Qt::WA_DeleteOnClose);
    managerBeside()->show();
}
