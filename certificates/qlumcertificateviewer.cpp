#include <certificates/qlumcertificateviewer.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <certificates/qlumcertificatechecks.h>
#include <certificates/qlumcertificatedetailsmodel.h>
#include <certificates/qlumseverityicon.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QMainWindow>
#include <QString>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

QlumCertificateViewer::QlumCertificateViewer(const UaByteString& der, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumCertificateViewer"), parent),
      m_model(new QlumCertificateDetailsModel(this)), m_list(new QListWidget(this)),
      m_details(new QTreeView(this))
{
    setObjectName(QStringLiteral("certificateViewer"));
    setWindowTitle(tr("Certificate"));
    read(der);
    makeList();
    makeDetails();
    auto* nothing = new QLabel(tr("These bytes are not a certificate."), this);
    nothing->setObjectName(QStringLiteral("nothing"));
    nothing->setAlignment(Qt::AlignCenter);
    nothing->setVisible(m_nodes.empty());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(nothing, 1);
    layout->addWidget(m_list);
    layout->addWidget(m_details, 1);
    layout->addWidget(buttons);
    resize(560, 560);
}

QlumCertificateViewer::~QlumCertificateViewer()
{
    m_model->setNode(nullptr); // the nodes go first
}

void QlumCertificateViewer::read(const UaByteString& der)
{
    const QlumCertificateChecks checks{QString(), QString()};
    const UaPkiCertificateCollection chain = UaPkiCertificateCollection::fromDERChain(der);
    for (int i = 0; i < chain.size(); ++i) {
        auto node = std::make_unique<QlumCertificateChainNode>(chain.certificate(i),
                                                               QlumCertificateChainNode::Untrusted);
        checks.verifyNode(*node, false);
        m_nodes.push_back(std::move(node));
    }
}

void QlumCertificateViewer::makeList()
{
    constexpr int maximumHeight = 90;
    m_list->setObjectName(QStringLiteral("certificates"));
    m_list->setAccessibleName(tr("Certificates"));
    m_list->setWhatsThis(tr("<b>Certificates</b><br>All that came with the certificate, which is the first. "
                            "The icon tells the worst that is odd about each."));
    m_list->setMaximumHeight(maximumHeight);
    for (const auto& node : m_nodes)
        m_list->addItem(new QListWidgetItem(qlumSeverityIcon(node->severity()), node->displayName()));
    m_list->setVisible(m_nodes.size() > 1);
    connect(m_list, &QListWidget::currentRowChanged, this, &QlumCertificateViewer::showCertificate);
}

void QlumCertificateViewer::makeDetails()
{
    m_details->setObjectName(QStringLiteral("details"));
    m_details->setAccessibleName(tr("Certificate details"));
    m_details->setWhatsThis(tr("<b>Certificate details</b><br>What the selected certificate says. The tool "
                               "tip of a coloured line tells what is wrong with it."));
    m_details->setAlternatingRowColors(true);
    m_details->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_details->setTextElideMode(Qt::ElideMiddle);
    m_details->setModel(m_model);
    qlumMakeTable(m_details, {QString(), tr("certificate"), nullptr, QString()});
    m_details->setVisible(!m_nodes.empty());
    m_list->setCurrentRow(0);
}

void QlumCertificateViewer::showCertificate(int row)
{
    m_model->setNode(row >= 0 ? m_nodes[static_cast<std::size_t>(row)].get() : nullptr);
    m_details->expandAll();
    m_details->resizeColumnToContents(QlumCertificateDetailsModel::NameColumn);
}

void qlumTakeCertificates(QlumToolServices& services, QObject* owner)
{
    services.takeShowCertificate(
        owner,
        [](const UaByteString& der) {
            QlumApplicationInterface* application = QlumApplicationInterface::instance();
            auto* viewer = new QlumCertificateViewer(der, application ? application->mainWindow() : nullptr);
            viewer->setAttribute(Qt::WA_DeleteOnClose);
            viewer->show();
        });
}
