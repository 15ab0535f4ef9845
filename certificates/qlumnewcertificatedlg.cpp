#include <certificates/qlumnewcertificatedlg.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumtext.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QChar>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QIcon>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QList>
#include <QListWidget>
#include <QListWidgetItem>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <algorithm>
#include <arpa/inet.h>
#include <utility>

namespace {
constexpr int firstLongValidity = 9; // 10 years
constexpr int shortestPassword = 4;

UaStringArray textsOf(const QListWidget* list)
{
    UaStringArray texts;
    for (int row = 0; row < list->count(); ++row)
        static_cast<void>(texts.append(*toUaString(list->item(row)->text()).get())); // else one name less
    return texts;
}

void fill(QListWidget* list, const UaStringArray& texts)
{
    list->clear();
    for (const OpcUa_String& text : texts)
        list->addItem(toQString(UaString(text)));
}

void showStatus(QLabel* label, const QString& problem)
{
    const QIcon icon(problem.isEmpty() ? QStringLiteral(":/images/ok.png")
                                       : QStringLiteral(":/images/error.png"));
    label->setPixmap(icon.pixmap(16, 16));
    label->setToolTip(problem);
    label->setAccessibleDescription(problem);
}
} // namespace

QlumNewCertificateDlg::QlumNewCertificateDlg(const QString& commonName, const QString& organization,
                                             bool noCancel, bool canProtectKey, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumNewCertificateDlg"), parent), m_noCancel(noCancel),
      m_pool(std::make_unique<QlumJobPool>(1))
{
    setWindowTitle(tr("New Application Instance Certificate"));
    if (noCancel)
        setWindowFlags((windowFlags() | Qt::CustomizeWindowHint | Qt::WindowTitleHint) &
                       ~(Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint));
    createLayout(noCancel, canProtectKey);
    setValues(QlumOwnCertificate::initial(commonName, organization));
    connectFields();
    sltValidate();
    m_fields[m_fields[Country].edit->text().isEmpty() ? Country : CommonName].edit->setFocus();
}

QlumNewCertificateDlg::~QlumNewCertificateDlg()
{
    static_cast<void>(takePasswords()); // which wipes them
}

QlumSecretText QlumNewCertificateDlg::takePasswords()
{
    static_cast<void>(qlumTakePassword(*m_repetition));
    return qlumTakePassword(*m_passwordEdit);
}

// ---- values

QString QlumNewCertificateDlg::applicationUri() const
{
    return qlumApplicationUri(m_fields[Organization].edit->text(), m_fields[CommonName].edit->text());
}

QlumOwnCertificate QlumNewCertificateDlg::values() const
{
    const auto text = [this](Field field) { return toUaString(m_fields[field].edit->text().trimmed()); };
    QlumOwnCertificate result;
    result.subject.commonName = text(CommonName);
    result.subject.organization = text(Organization);
    result.subject.organizationUnit = text(OrganizationUnit);
    result.subject.locality = text(Locality);
    result.subject.state = text(State);
    result.subject.country = text(Country);
    result.info.URI = toUaString(m_uri->text());
    result.info.IPAddresses = textsOf(m_addresses.list);
    result.info.DNSNames = textsOf(m_dnsNames.list);
    result.info.validTime = m_validity->currentData().toLongLong();
    result.keyBits = m_keySize->currentData().toInt();
    result.algorithm = static_cast<UaPkiCertificate::SignatureAlgorithm>(m_algorithm->currentData().toInt());
    return result;
}

void QlumNewCertificateDlg::setValues(const QlumOwnCertificate& values)
{
    const auto set = [this](Field field, const UaString& text) {
        m_fields[field].edit->setText(toQString(text));
    };
    set(CommonName, values.subject.commonName);
    set(Organization, values.subject.organization);
    set(OrganizationUnit, values.subject.organizationUnit);
    set(Locality, values.subject.locality);
    set(State, values.subject.state);
    set(Country, values.subject.country);
    fill(m_addresses.list, values.info.IPAddresses);
    fill(m_dnsNames.list, values.info.DNSNames);
    selectKeySize(values.keyBits);
    selectAlgorithm(values.algorithm);
    sltValidate();
}

// The size, or the next larger one: a key that is to follow another must not be weaker than that.
void QlumNewCertificateDlg::selectKeySize(int bits)
{
    int index = 0;
    while (index < m_keySize->count() && m_keySize->itemData(index).toInt() < bits)
        ++index;
    if (index == m_keySize->count())
        m_keySize->addItem(tr("%1 bits").arg(bits), bits);
    m_keySize->setCurrentIndex(index);
}

void QlumNewCertificateDlg::selectAlgorithm(UaPkiCertificate::SignatureAlgorithm algorithm)
{
    if (m_algorithm->findData(algorithm) < 0)
        m_algorithm->addItem(algorithm == UaPkiCertificate::Sha384 ? tr("Sha384") : tr("Sha512"), algorithm);
    m_algorithm->setCurrentIndex(m_algorithm->findData(algorithm));
}

// ---- rules

QString QlumNewCertificateDlg::problemOf(Field field) const
{
    const QString text = m_fields[field].edit->text().trimmed();
    static const QRegularExpression twoLetters(QStringLiteral("^[A-Za-z]{2}$"));
    switch (field) {
    case CommonName:
        return text.isEmpty() ? tr("The common name is missing.") : QString();
    case Organization:
        return text.isEmpty() ? tr("The organization is missing.") : QString();
    case Country:
        return twoLetters.match(text).hasMatch() ? QString() : tr("The country needs a two letter code.");
    default:
        return {};
    }
}

QString QlumNewCertificateDlg::passwordProblem() const
{
    if (!m_protect->isChecked())
        return {};
    if (m_passwordEdit->text().size() < shortestPassword)
        return tr("The password needs at least %1 characters.").arg(shortestPassword);
    return m_passwordEdit->text() == m_repetition->text() ? QString()
                                                          : tr("The two passwords are different.");
}

// Shows the state of every field as well.
QString QlumNewCertificateDlg::firstProblem()
{
    QStringList problems;
    for (int field = 0; field < FieldCount; ++field) {
        problems << problemOf(static_cast<Field>(field));
        showStatus(m_fields[static_cast<std::size_t>(field)].status, problems.last());
    }
    problems << (m_uri->text().isEmpty() ? tr("The application URI is missing.") : QString());
    problems << (m_addresses.list->count() + m_dnsNames.list->count() > 0
                     ? QString()
                     : tr("At least one domain name or IP address is needed."));
    showStatus(m_addressStatus, problems.last());
    problems << passwordProblem();
    showStatus(m_passwordStatus, problems.last());
    problems.removeAll(QString());
    return problems.isEmpty() ? QString() : problems.first();
}

void QlumNewCertificateDlg::sltValidate()
{
    m_uri->setText(applicationUri());
    m_uri->setCursorPosition(0);
    m_passwordEdit->setEnabled(m_protect->isChecked());
    m_repetition->setEnabled(m_protect->isChecked());
    m_passwordStatus->setVisible(m_protect->isChecked());
    m_addresses.remove->setEnabled(m_addresses.list->currentRow() >= 0);
    m_dnsNames.remove->setEnabled(m_dnsNames.list->currentRow() >= 0);
    const QString problem = firstProblem();
    m_problem->setText(problem);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(problem.isEmpty() && !m_busy);
}

void QlumNewCertificateDlg::sltValidityChosen(int index)
{
    if (index >= firstLongValidity)
        QMessageBox::warning(
            this, tr("Security Warning"),
            tr("It is not recommended to use certificates with a lifetime greater than 5 years."));
}

bool QlumNewCertificateDlg::isDnsName(const QString& text)
{
    static const QRegularExpression name(QStringLiteral(
        "^(?=.{1,255}$)[0-9A-Za-z](?:(?:[0-9A-Za-z]|-){0,61}[0-9A-Za-z])?(?:\\.[0-9A-Za-z](?:(?:["
        "0-9A-Za-z]|-){0,61}[0-9A-Za-z])?)*\\.?$"));
    return !text.endsWith(QLatin1Char('\n')) && name.match(text).hasMatch();
}

QString QlumNewCertificateDlg::withoutZone(const QString& text)
{
    QString address = text.trimmed();
    if (address.startsWith(QLatin1Char('[')) && address.endsWith(QLatin1Char(']')))
        address = address.mid(1, address.size() - 2);
    static const QRegularExpression zone(QStringLiteral("%[0-9]+$"));
    return address.remove(zone);
}

bool QlumNewCertificateDlg::isAddress(const QString& text)
{
    const QByteArray address = text.toUtf8();
    in6_addr bytes{};
    return !address.contains('\0') && (::inet_pton(AF_INET, address.constData(), &bytes) == 1 ||
                                       ::inet_pton(AF_INET6, address.constData(), &bytes) == 1);
}

// ---- addresses

void QlumNewCertificateDlg::addUnique(QListWidget* list, const QString& text)
{
    const QList<QListWidgetItem*> same = list->findItems(text, Qt::MatchFixedString);
    if (same.isEmpty())
        list->addItem(text);
    list->setCurrentItem(same.isEmpty() ? list->item(list->count() - 1) : same.first());
    sltValidate();
}

void QlumNewCertificateDlg::sltAddDnsName()
{
    QString prompt = tr("Enter the DNS name to add:");
    QString text;
    for (bool wanted = true; wanted;) {
        text = QInputDialog::getText(this, tr("Add DNS Name"), prompt, QLineEdit::Normal, text, &wanted);
        if (wanted && isDnsName(text.trimmed()))
            return addUnique(m_dnsNames.list, text.trimmed());
        prompt = tr("Please ensure to enter a valid DNS name!\nEnter the DNS name to add:");
    }
}

void QlumNewCertificateDlg::sltAddAddress()
{
    QString prompt = tr("Enter the IP address to add:");
    QString text;
    for (bool wanted = true; wanted;) {
        text = QInputDialog::getText(this, tr("Add IP Address"), prompt, QLineEdit::Normal, text, &wanted);
        if (wanted && isAddress(withoutZone(text)))
            return addUnique(m_addresses.list, withoutZone(text));
        prompt = tr("Please ensure to enter a valid IPv4 or IPv6 address!\nEnter the IP address to add:");
    }
}

// ---- making

void QlumNewCertificateDlg::accept()
{
    sltValidate();
    if (m_busy || !m_buttons->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    setBusy(true);
    m_pool->add(
        {tr("Making a certificate")},
        [this, wanted = values()](QlumJob& job) {
            const QlumMadeCertificate made = wanted.make([&job] { return job.isCancelled(); });
            if (!job.isCancelled())
                job.post([this, made] { finished(made); });
        },
        [this](QlumWorkEnd end) {
            if (end != QlumWorkEnd::Done)
                setBusy(false);
        });
}

void QlumNewCertificateDlg::reject()
{
    if (m_busy) {
        m_pool->cancelAll();
        setBusy(false);
    } else if (!m_noCancel) {
        QDialog::reject();
    }
}

void QlumNewCertificateDlg::setBusy(bool busy)
{
    m_busy = busy;
    m_inputs->setEnabled(!busy);
    m_progressRow->setVisible(busy);
    m_problem->setVisible(!busy);
    m_progressText->setText(tr("Generating a key of %1...").arg(m_keySize->currentText()));
    sltValidate();
}

void QlumNewCertificateDlg::finished(const QlumMadeCertificate& made)
{
    setBusy(false);
    if (!made.error.isEmpty()) {
        QMessageBox box(QMessageBox::Warning, tr("Could Not Create Certificate"),
                        tr("The application certificate could not be created:") +
                            QStringLiteral("\n%1").arg(made.error),
                        QMessageBox::Ok, this);
        box.setTextFormat(Qt::PlainText);
        box.exec();
        return; // what was entered stays, so that it can be mended
    }
    m_keyPair = made.keyPair;
    m_certificate = made.certificate;
    const QlumSecretText entered = takePasswords();
    m_password = m_protect->isChecked() ? entered : QlumSecretText();
    QDialog::accept();
}
