#include <certificates/qlumcertificatedialog.h>

#include <app/api/qlumactiontable.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificateadvice.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatedetailsmodel.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumseverityicon.h>
#include <certificates/qlumthumbprint.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uawidgets/qlumwaitcursor.h>
#include <uawidgets/table/qlumcopy.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QModelIndex>
#include <QPushButton>
#include <QRect>
#include <QResizeEvent>
#include <QSize>
#include <QSplitter>
#include <QString>
#include <QStringList>
#include <QStyle>
#include <QTreeView>
#include <QWidget>

namespace {
enum DialogAction { SaveAs, CopyThumbprint };

constexpr QlumActionRow dialogRows[] = {
    {SaveAs, "saveAs", QT_TRANSLATE_NOOP("QlumCertificateDialog", "Save as..."), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumCertificateDialog", "Save the selected certificate to a file"),
     QT_TRANSLATE_NOOP(
         "QlumCertificateDialog",
         "<b>Save as</b><br>Writes the selected certificate to a DER file. Under the proposed name it "
         "becomes trusted.")},
    {CopyThumbprint, "copyThumbprint", QT_TRANSLATE_NOOP("QlumCertificateDialog", "Copy Thumbprint"),
     "copy.png", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumCertificateDialog", "Copy the thumbprint of the selected certificate"),
     QT_TRANSLATE_NOOP(
         "QlumCertificateDialog",
         "<b>Copy Thumbprint</b><br>Puts the SHA-1 thumbprint on the clipboard, to compare it with the one "
         "that the server's operator names.")},
};

QTreeView* makeTree(const char* objectName, const QString& accessibleName)
{
    auto* view = new QTreeView;
    view->setObjectName(QLatin1String(objectName));
    view->setAccessibleName(accessibleName);
    view->setAlternatingRowColors(true);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setTextElideMode(Qt::ElideMiddle);
    return view;
}

QLabel* makeLabel(const char* objectName, Qt::TextFormat format)
{
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(objectName));
    label->setTextFormat(format);
    label->setWordWrap(true);
    return label;
}
} // namespace

QlumCertificateDialog::QlumCertificateDialog(const QString& serverName, const QString& applicationUri,
                                             const QString& serverUrl, const UaByteString& certificate,
                                             UaClientSdk::SessionSecurityInfo* security, QWidget* parent)
    : QlumCertificateDialog(serverName,
                            new QlumCertificateChainModel(serverUrl, applicationUri, certificate, security),
                            security, parent)
{
}

QlumCertificateDialog::QlumCertificateDialog(const QString& serverName, const UaByteString& certificate,
                                             const UaStatusCode& status, QWidget* parent)
    : QlumCertificateDialog(serverName, new QlumCertificateChainModel(certificate, status), nullptr, parent)
{
}

QlumCertificateDialog::QlumCertificateDialog(const QString& serverName, const QString& serverUrl,
                                             const UaByteString& certificate, const UaStatusCode& status,
                                             QWidget* parent)
    : QlumCertificateDialog(serverName, new QlumCertificateChainModel(serverUrl, certificate, status),
                            nullptr, parent)
{
    m_serverUrl = serverUrl;
    m_overrule->setText(overruleText());
    updateButtons();
}

QlumCertificateDialog::QlumCertificateDialog(const QString& serverName, QlumCertificateChainModel* model,
                                             UaClientSdk::SessionSecurityInfo* security, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumCertificateDialog"), parent),
      m_serverName(qlumCutText(qlumSingleLine(serverName))), m_model(model), m_security(security),
      m_details(new QlumCertificateDetailsModel(this))
{
    m_model->setParent(this);
    setObjectName(QStringLiteral("certificateDialog"));
    setWindowTitle(tr("Certificate Validation"));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    createHeader(layout);
    createChain();
    createDetails();
    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->setObjectName(QStringLiteral("splitter"));
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(m_chainView);
    splitter->addWidget(m_detailsView);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({80, 400});
    layout->addWidget(splitter, 1);
    layout->addWidget(m_findings);
    createButtons(layout);
    createActions();
    resize(720, 720);
    update();
}

// ---- widgets

void QlumCertificateDialog::createHeader(QVBoxLayout* layout)
{
    m_icon = new QLabel;
    m_icon->setObjectName(QStringLiteral("icon"));
    m_caption = makeLabel("caption", Qt::RichText);
    m_result = makeLabel("result", Qt::RichText);
    m_advice = makeLabel("advice", Qt::PlainText);
    m_thumbprint = makeLabel("thumbprint", Qt::PlainText);
    m_thumbprint->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* texts = new QVBoxLayout;
    for (QLabel* label : {m_caption, m_result, m_advice, m_thumbprint})
        texts->addWidget(label);
    auto* header = new QHBoxLayout;
    header->addWidget(m_icon, 0, Qt::AlignTop);
    header->addLayout(texts, 1);
    layout->addLayout(header);
}

void QlumCertificateDialog::createChain()
{
    m_chainView = makeTree("chain", tr("Certificate chain"));
    m_chainView->setModel(m_model);
    m_chainView->setItemsExpandable(false); // the chain has no branches: all of it is always in sight
    m_chainView->setMinimumHeight(70);
    m_chainView->header()->setStretchLastSection(false);
    m_chainView->header()->setSectionResizeMode(QlumCertificateChainModel::NameColumn, QHeaderView::Stretch);
    m_chainView->header()->setSectionResizeMode(QlumCertificateChainModel::TrustStatusColumn,
                                                QHeaderView::ResizeToContents);
    m_chainView->setWhatsThis(tr("<b>Certificate chain</b><br>The server's certificate below the "
                                 "certificates of those who issued it. The icon tells the worst that was "
                                 "found about each."));
    connect(m_chainView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { showSelected(); });
}

void QlumCertificateDialog::createDetails()
{
    m_detailsView = makeTree("details", tr("Certificate details"));
    m_detailsView->setModel(m_details);
    m_detailsView->setMinimumHeight(120);
    m_detailsView->setWhatsThis(tr("<b>Certificate details</b><br>What the selected certificate says. The "
                                   "tool tip of a coloured line tells what is wrong with it."));
    qlumMakeTable(m_detailsView, {QString(), tr("certificate"), nullptr, QString()});
    connect(m_detailsView, &QTreeView::activated, this, &QlumCertificateDialog::showWholeValue);

    m_findings = new QListWidget;
    m_findings->setObjectName(QStringLiteral("findings"));
    m_findings->setAccessibleName(tr("Findings"));
    m_findings->setWordWrap(true);
    m_findings->setIconSize(QSize(16, 16));
    m_findings->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_findings->setWhatsThis(
        tr("<b>Findings</b><br>All that was found wrong with the selected certificate, the worst first."));
    qlumAddCopyActions(m_findings);
}

void QlumCertificateDialog::createButtons(QVBoxLayout* layout)
{
    m_acceptOnce = new QCheckBox(tr("Accept the server certificate temporarily for this session"));
    m_acceptOnce->setObjectName(QStringLiteral("acceptOnce"));
    m_acceptOnce->setToolTip(tr("Connect although the validation failed, and ask again next time"));
    m_acceptOnce->setWhatsThis(tr("<b>Accept temporarily</b><br>The connection is made with the certificate "
                                  "shown here and with no other. Nothing is stored."));
    m_acceptOnce->setVisible(!isTls());
    layout->addWidget(m_acceptOnce);

    m_overrule = new QCheckBox;
    m_overrule->setObjectName(QStringLiteral("overrule"));
    m_overrule->setToolTip(tr("Holds for this server and this certificate only"));
    m_overrule->setWhatsThis(
        tr("<b>Use it all the same</b><br>Devices that are reached by an address, or whose "
           "clock is wrong, often have such certificates. Compare the thumbprint first. "
           "When the server shows another certificate, you are asked again."));
    connect(m_overrule, &QCheckBox::toggled, this, &QlumCertificateDialog::updateButtons);
    layout->addWidget(m_overrule);

    m_trust = new QPushButton(isTls() ? tr("Trust TLS Certificate") : tr("Trust Server Certificate"));
    m_trust->setObjectName(QStringLiteral("trust"));
    m_trust->setIcon(QIcon(QStringLiteral(":/images/certificate.png")));
    m_trust->setToolTip(tr("Trust the selected certificate permanently"));
    m_trust->setWhatsThis(
        tr("<b>Trust</b><br>Copies the certificate into Tavelin's trust list, where the certificate manager "
           "shows it. Servers that use it or a certificate issued by it are then trusted."));
    m_trustIssuer = new QPushButton(tr("Trust Issuer..."));
    m_trustIssuer->setObjectName(QStringLiteral("trustIssuer"));
    m_trustIssuer->setToolTip(tr("Trust all servers with a certificate of this issuer"));
    m_trustIssuer->setWhatsThis(tr("<b>Trust Issuer</b><br>Copies the certificate of whoever issued the "
                                   "server's one into Tavelin's trust list, after a question."));
    m_importList = new QPushButton(tr("Import CRL..."));
    m_importList->setObjectName(QStringLiteral("importCrl"));
    m_importList->setToolTip(tr("Add a revocation list of the issuer to the certificate store"));
    m_importList->setWhatsThis(
        tr("<b>Import CRL</b><br>Reads a revocation list from a file, and keeps it when "
           "an issuer of this certificate has signed it."));
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_buttons->setObjectName(QStringLiteral("buttons"));
    m_buttons->addButton(m_trust, isTls() ? QDialogButtonBox::AcceptRole : QDialogButtonBox::ActionRole);
    m_buttons->addButton(m_trustIssuer, QDialogButtonBox::ActionRole);
    m_buttons->addButton(m_importList, QDialogButtonBox::ActionRole);
    connect(m_trustIssuer, &QPushButton::clicked, this, &QlumCertificateDialog::trustIssuer);
    connect(m_importList, &QPushButton::clicked, this, &QlumCertificateDialog::importList);
    if (!isTls()) {
        QPushButton* go = m_buttons->addButton(QDialogButtonBox::Ok);
        go->setText(tr("Continue"));
        go->setObjectName(QStringLiteral("continue"));
        go->setToolTip(tr("Connect to the server"));
        connect(m_trust, &QPushButton::clicked, this, [this] { trust(); });
        connect(m_acceptOnce, &QCheckBox::toggled, this, &QlumCertificateDialog::updateButtons);
    }
    m_buttons->button(QDialogButtonBox::Cancel)->setToolTip(tr("Do not connect"));
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(m_buttons);
}

void QlumCertificateDialog::createActions()
{
    const QlumActionTable actions(dialogRows, "QlumCertificateDialog", this);
    connect(actions[SaveAs], &QAction::triggered, this, &QlumCertificateDialog::saveAs);
    connect(actions[CopyThumbprint], &QAction::triggered, this, &QlumCertificateDialog::copyThumbprint);
    m_certificateActions = actions.list({SaveAs, CopyThumbprint});
    m_chainView->addActions(m_certificateActions);
    qlumMakeTable(m_chainView, {QString(), tr("certificate chain"), nullptr, QString()});
}

// ---- what is shown

void QlumCertificateDialog::update()
{
    m_details->setNode(nullptr);
    {
        const QlumWaitCursor wait;
        m_model->update();
    }
    showResult();
    m_chainView->expandAll();
    m_chainView->setCurrentIndex(m_model->serverCertificateIndex());
    showSelected();
}

QString QlumCertificateDialog::captionFor(bool tls, bool bad)
{
    if (tls)
        return tr("Validating the TLS certificate of server '<b>%1</b>' returned an error:");
    return bad ? tr("Validating the certificate of server '<b>%1</b>' returned an error:")
               : tr("The certificate of server '<b>%1</b>' was validated successfully.");
}

void QlumCertificateDialog::showResult()
{
    const UaStatusCode result = m_model->validationResult();
    m_caption->setText(captionFor(isTls(), result.isBad()).arg(m_serverName.toHtmlEscaped()));
    const UaStatusCode headline = m_model->headline();
    m_result->setText(QStringLiteral("<b><font color=\"%1\">%2</font></b>")
                          .arg(result.isBad() ? QStringLiteral("#ff0000") : QStringLiteral("#00aa00"),
                               qlumStatusText(headline.code()).toHtmlEscaped()));
    m_result->setToolTip(qlumCertificateStatusDescription(headline));
    m_advice->setText(qlumCertificateAdvice(headline));
    m_advice->setVisible(!m_advice->text().isEmpty());
    const int size = style()->pixelMetric(QStyle::PM_LargeIconSize);
    const QlumCertificateError severity = isTls() ? QlumCertificateError::Error : m_model->validationError();
    m_icon->setPixmap(qlumSeverityIcon(severity).pixmap(size, size));
}

void QlumCertificateDialog::showSelected()
{
    const QlumCertificateChainNode* node = m_model->node(m_chainView->currentIndex());
    m_details->setNode(node);
    m_detailsView->expandAll();
    m_detailsView->resizeColumnToContents(QlumCertificateDetailsModel::NameColumn);
    m_thumbprint->setText(node ? tr("Thumbprint (SHA1): %1").arg(qlumThumbprint(node->certificate()))
                               : QString());
    m_thumbprint->setVisible(node != nullptr);
    showFindings(node);
    updateButtons();
}

void QlumCertificateDialog::showFindings(const QlumCertificateChainNode* node)
{
    m_findings->clear();
    if (node)
        for (const QlumCertificateChainNode::Finding& finding : node->findings())
            m_findings->addItem(new QListWidgetItem(qlumSeverityIcon(finding.severity), finding.text));
    m_findings->setVisible(m_findings->count() > 0);
    fitFindings();
}

// The list is as high as its texts, which wrap: how often is known when the width is.
void QlumCertificateDialog::fitFindings()
{
    constexpr int maximumRows = 5;
    constexpr int margin = 6;
    const int icon = m_findings->iconSize().width() + 2 * margin;
    const int width = m_findings->viewport()->width() - icon - margin;
    int height = 2 * m_findings->frameWidth();
    for (int row = 0; row < m_findings->count(); ++row) {
        QListWidgetItem* item = m_findings->item(row);
        const QRect text = m_findings->fontMetrics().boundingRect(
            QRect(0, 0, qMax(width, icon), QWIDGETSIZE_MAX), Qt::TextWordWrap, item->text());
        const int needed = qMax(text.height() + margin, m_findings->iconSize().height() + margin);
        item->setSizeHint(QSize(0, needed));
        if (row < maximumRows)
            height += needed;
    }
    m_findings->setFixedHeight(height);
}

void QlumCertificateDialog::resizeEvent(QResizeEvent* event)
{
    QlumBaseWidget::resizeEvent(event);
    layout()->activate(); // the list has its new width then
    fitFindings();
}

void QlumCertificateDialog::updateButtons()
{
    const QlumCertificateChainNode* selected = m_model->node(m_chainView->currentIndex());
    QPushButton* cancel = m_buttons->button(QDialogButtonBox::Cancel);
    for (QAction* action : qAsConst(m_certificateActions))
        action->setEnabled(selected != nullptr);
    const QlumCertificateChainNode* server = m_model->node(m_model->serverCertificateIndex());
    const QlumCertificateChainNode* issuer = server ? server->parent() : nullptr;
    m_trustIssuer->setVisible(!isTls() && issuer && m_model->isFound(OpcUa_BadCertificateUntrusted) &&
                              issuer->trustStatus() != QlumCertificateChainNode::Trusted);
    m_importList->setVisible(!isTls() && (m_model->isFound(OpcUa_BadCertificateRevocationUnknown) ||
                                          m_model->isFound(OpcUa_BadCertificateIssuerRevocationUnknown)));
    m_overrule->setVisible(isOverrulable());
    if (isTls()) {
        const bool isDecided = m_overrule->isChecked() || !hasOverrulable();
        m_trust->setEnabled(selected && (m_serverUrl.isEmpty() || (isDecided && !isBlocked())));
        cancel->setDefault(true);
        return;
    }
    const bool bad = m_model->validationResult().isBad();
    // bytes that are no certificate cannot secure a connection, so there is nothing to accept
    m_acceptOnce->setEnabled(bad && m_model->serverCertificateIndex().isValid());
    if (!m_acceptOnce->isEnabled())
        m_acceptOnce->setChecked(false);
    m_trust->setEnabled(bad && selected && selected->trustStatus() != QlumCertificateChainNode::Trusted);
    QPushButton* go = m_buttons->button(QDialogButtonBox::Ok);
    go->setEnabled(!bad || m_acceptOnce->isChecked());
    (go->isEnabled() ? go : cancel)->setDefault(true);
}
