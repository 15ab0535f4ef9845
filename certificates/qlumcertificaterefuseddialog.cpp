#include <certificates/qlumcertificaterefuseddialog.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumthumbprint.h>
#include <opcua/opcua_statuscodes.h>

#include <QClipboard>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QString>
#include <QStyle>
#include <QUrl>
#include <QWidget>

namespace {
constexpr OpcUa_StatusCode codeBits = 0xFFFF0000u;

QLabel* makeLabel(const char* objectName, const QString& text)
{
    auto* label = new QLabel(text);
    label->setObjectName(QLatin1String(objectName));
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    return label;
}

// A field that is read and copied.
QLineEdit* makeFact(const char* objectName, const QString& text)
{
    auto* edit = new QLineEdit(text);
    edit->setObjectName(QLatin1String(objectName));
    edit->setReadOnly(true);
    edit->setCursorPosition(0);
    return edit;
}
} // namespace

QlumCertificateRefusedDialog::QlumCertificateRefusedDialog(const QString& serverName,
                                                           const UaStatusCode& status,
                                                           const UaPkiCertificate& certificate,
                                                           const QString& file, QWidget* parent)
    : QDialog(parent), m_certificate(certificate), m_file(QDir::toNativeSeparators(file))
{
    setObjectName(QStringLiteral("certificateRefused"));
    setWindowTitle(tr("Certificate Refused by the Server"));
    auto* icon = new QLabel;
    icon->setObjectName(QStringLiteral("icon"));
    const int size = style()->pixelMetric(QStyle::PM_LargeIconSize);
    icon->setPixmap(QIcon(QStringLiteral(":/images/error.png")).pixmap(size, size));
    auto* texts = new QVBoxLayout;
    texts->addWidget(makeLabel(
        "message", tr("The server '%1' ended the connection with '%2'.")
                       .arg(qlumCutText(qlumSingleLine(serverName)), qlumStatusText(status.code()))));
    texts->addWidget(makeLabel("explanation", explanation(status)));
    auto* header = new QHBoxLayout;
    header->addWidget(icon, 0, Qt::AlignTop);
    header->addLayout(texts, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->setObjectName(QStringLiteral("buttons"));
    createButtons(*buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(header);
    layout->addWidget(createFacts());
    layout->addStretch(1);
    layout->addWidget(buttons);
    constexpr int width = 620;
    resize(width, layout->totalHeightForWidth(width));
    buttons->button(QDialogButtonBox::Close)->setFocus();
}

bool QlumCertificateRefusedDialog::isRefusal(const UaStatusCode& status)
{
    switch (status.code() & codeBits) {
    case OpcUa_BadSecurityChecksFailed:
    case OpcUa_BadNoValidCertificates:
    case OpcUa_BadCertificateInvalid:
    case OpcUa_BadCertificateTimeInvalid:
    case OpcUa_BadCertificateIssuerTimeInvalid:
    case OpcUa_BadCertificateHostNameInvalid:
    case OpcUa_BadCertificateUriInvalid:
    case OpcUa_BadCertificateUseNotAllowed:
    case OpcUa_BadCertificateIssuerUseNotAllowed:
    case OpcUa_BadCertificateUntrusted:
    case OpcUa_BadCertificateRevocationUnknown:
    case OpcUa_BadCertificateIssuerRevocationUnknown:
    case OpcUa_BadCertificateRevoked:
    case OpcUa_BadCertificateIssuerRevoked:
    case OpcUa_BadCertificateChainIncomplete:
    case OpcUa_BadCertificatePolicyCheckFailed:
        return true;
    default:
        return false;
    }
}

QString QlumCertificateRefusedDialog::explanation(const UaStatusCode& status)
{
    const QString remedy =
        tr("Most servers keep the certificates that they have refused: have Tavelin's certificate trusted "
           "there, or export it and bring it to the server's operator. Then connect again.");
    switch (status.code() & codeBits) {
    case OpcUa_BadSecurityChecksFailed:
        return tr("Most servers answer so when they do not trust the client: the server has most likely "
                  "refused Tavelin's own certificate, shown below. It is not about the server's "
                  "certificate.") +
               QLatin1Char('\n') + remedy;
    case OpcUa_BadCertificateTimeInvalid:
    case OpcUa_BadCertificateIssuerTimeInvalid:
        return tr("The server has refused Tavelin's own certificate, shown below, because of its validity. "
                  "Check the clocks of this computer and of the server, or create a new certificate.");
    case OpcUa_BadCertificatePolicyCheckFailed:
        return tr("The server has refused Tavelin's own certificate, shown below: its key or signature is "
                  "weaker than the server demands. Create a new certificate.");
    default:
        return tr("The server has refused Tavelin's own certificate, shown below. It is not about the "
                  "server's certificate.") +
               QLatin1Char('\n') + remedy;
    }
}

QWidget* QlumCertificateRefusedDialog::createFacts()
{
    auto* facts = new QWidget;
    auto* form = new QFormLayout(facts);
    form->addRow(tr("Certificate &name:"),
                 makeFact("name", qlumSingleLine(toQString(m_certificate.commonName()))));
    form->addRow(tr("Application &URI:"),
                 makeFact("uri", qlumSingleLine(toQString(m_certificate.info().URI))));
    form->addRow(tr("&Thumbprint (SHA1):"), makeFact("thumbprint", qlumThumbprint(m_certificate)));
    form->addRow(tr("&Location:"), makeFact("location", m_file));
    return facts;
}

void QlumCertificateRefusedDialog::createButtons(QDialogButtonBox& buttons)
{
    QPushButton* open = buttons.addButton(tr("&Open Location"), QDialogButtonBox::ActionRole);
    open->setObjectName(QStringLiteral("openLocation"));
    open->setToolTip(tr("Show the folder that holds Tavelin's certificate"));
    connect(open, &QPushButton::clicked, this, &QlumCertificateRefusedDialog::openLocation);
    QPushButton* save = buttons.addButton(tr("&Export..."), QDialogButtonBox::ActionRole);
    save->setObjectName(QStringLiteral("export"));
    save->setToolTip(tr("Write Tavelin's certificate, without its key, to a file"));
    connect(save, &QPushButton::clicked, this, &QlumCertificateRefusedDialog::exportCertificate);
    for (QPushButton* button : {open, save})
        button->setAutoDefault(false);
    buttons.button(QDialogButtonBox::Close)->setDefault(true);
    connect(&buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void QlumCertificateRefusedDialog::openLocation()
{
    const QString folder = QFileInfo(m_file).absolutePath();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        QMessageBox::information(this, windowTitle(),
                                 tr("No program is there to show folders. The folder is:\n%1").arg(folder));
}

void QlumCertificateRefusedDialog::exportCertificate()
{
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Export Certificate"), QDir::home().filePath(QFileInfo(m_file).fileName()), tr("*.der"));
    if (path.isEmpty())
        return;
    if (m_certificate.toDERFile(toUaString(path))) {
        QlumLog(QStringLiteral("Tavelin")).info(tr("Tavelin's certificate was exported to '%1'.").arg(path));
        return;
    }
    QMessageBox::critical(this, tr("Export Certificate"), tr("The certificate could not be written."));
}
