#include <servers/qlumgivencertificate.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumthumbprint.h>
#include <servers/qlumendpoint.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/values/uabytestring.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QString>
#include <QToolButton>
#include <QVBoxLayout>

namespace {
QToolButton* makeButton(const QString& name, const QString& text, const QString& toolTip)
{
    auto* button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    return button;
}

UaPkiCertificate firstOf(const QByteArray& der)
{
    return UaPkiCertificateCollection::fromDERChain(
               UaByteString(der.size(), reinterpret_cast<const OpcUa_Byte*>(der.constData())))
        .certificate(0);
}
} // namespace

QlumGivenCertificate::QlumGivenCertificate(QWidget* parent)
    : QWidget(parent), m_shown(new QLineEdit), m_problem(new QLabel)
{
    m_shown->setReadOnly(true);
    m_shown->setObjectName(QStringLiteral("givenCertificate"));
    m_shown->setAccessibleName(tr("Certificate of the server"));
    m_shown->setPlaceholderText(tr("That which the server shows"));
    auto* browse = makeButton(QStringLiteral("loadGivenCertificate"), QStringLiteral("..."),
                              tr("Take the server's certificate from a file"));
    m_clear = makeButton(QStringLiteral("clearGivenCertificate"), tr("Clear"),
                         tr("Take the certificate that the server shows"));
    m_problem->setObjectName(QStringLiteral("givenCertificateProblem"));
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setWordWrap(true);
    auto* row = new QHBoxLayout;
    row->addWidget(m_shown, 1);
    row->addWidget(browse);
    row->addWidget(m_clear);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(m_problem);
    setFocusProxy(browse);
    connect(browse, &QToolButton::clicked, this, &QlumGivenCertificate::browse);
    connect(m_clear, &QToolButton::clicked, this, [this] { setCertificate({}); });
    setCertificate({});
}

void QlumGivenCertificate::setCertificate(const QByteArray& der)
{
    m_der = der;
    m_problem->hide();
    m_clear->setEnabled(!der.isEmpty());
    if (der.isEmpty()) {
        m_shown->clear();
    } else {
        const UaPkiCertificate certificate = firstOf(der);
        m_shown->setText(certificate.isNull()
                             ? tr("The certificate cannot be read.")
                             : QStringLiteral("%1 (%2)").arg(
                                   qlumCutText(qlumSingleLine(toQString(certificate.commonName())), 100),
                                   qlumThumbprint(certificate)));
        m_shown->setCursorPosition(0);
    }
    emit changed();
}

void QlumGivenCertificate::browse()
{
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Certificate of the Server"), QString(),
                                     tr("Certificates (*.der *.cer *.crt *.pem);;All files (*)"));
    if (!file.isEmpty())
        load(file);
}

void QlumGivenCertificate::load(const QString& file)
{
    const UaPkiCertificate certificate =
        UaPkiCertificateCollection::fromFile(toUaString(file)).certificate(0);
    const UaByteString der = certificate.isNull() ? UaByteString() : certificate.toByteStringDER();
    if (der.isEmpty() || der.length() > QlumEndpointLimits::certificateSize) {
        m_problem->setText(
            tr("The file '%1' holds no certificate.").arg(qlumCutText(QFileInfo(file).fileName())));
        m_problem->show();
        return;
    }
    setCertificate(QByteArray(reinterpret_cast<const char*>(der.data()), der.length()));
}
