#include <servers/qlumchangedcertificatedialog.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificateentry.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFont>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QVBoxLayout>
#include <QWidget>

namespace {
constexpr int half = 20; // of a thumbprint: two in one line are too wide for a small screen

QStringList shown(const UaByteString& der)
{
    const QlumCertificateEntry entry(QlumCertificateEntry::InStore, QString(),
                                     UaPkiCertificate::fromDER(der));
    const QlumCertificateEntry::Details& details = entry.details();
    const auto day = [](const UaDateTime& time) { return qlumShowMinute(qlumDateTime(time)); };
    return {details.name,
            details.organization,
            details.applicationUri,
            details.domainNames,
            details.addresses,
            day(details.validFrom),
            day(details.validTo),
            QString::number(details.keySize),
            details.signature,
            details.thumbprint.left(half) + QLatin1Char('\n') + details.thumbprint.mid(half)};
}

QLabel* cell(const QString& text, bool isBold)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont font = label->font();
    font.setBold(isBold);
    label->setFont(font);
    return label;
}
} // namespace

QlumChangedCertificateDialog::QlumChangedCertificateDialog(const QlumCertificateChange& change,
                                                           QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumChangedCertificateDialog"), parent)
{
    setWindowTitle(tr("The Server's Certificate Has Changed"));
    auto* layout = new QVBoxLayout(this);
    QLabel* told =
        cell(tr("Server '%1' at %2 presents another certificate than the one that was trusted for it. It may "
                "have been renewed, or somebody else answers in the server's place.")
                 .arg(change.server, qlumCutText(change.url)),
             false);
    layout->addWidget(told);
    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    grid->addWidget(cell(tr("Trusted so far"), true), 0, 1);
    grid->addWidget(cell(tr("Presented now"), true), 0, 2);
    const QStringList names{tr("Name"),
                            tr("Issuer's organization"),
                            tr("Application URI"),
                            tr("DNS names"),
                            tr("IP addresses"),
                            tr("Valid from"),
                            tr("Valid until"),
                            tr("Key bits"),
                            tr("Signature"),
                            tr("Thumbprint (SHA1)")};
    const QStringList before = shown(change.before);
    const QStringList now = shown(change.now);
    for (int i = 0; i < names.size(); ++i) {
        const bool differs = before.at(i) != now.at(i);
        QLabel* left = cell(before.at(i), differs);
        QLabel* right = cell(now.at(i), differs);
        left->setObjectName(QStringLiteral("before%1").arg(i));
        right->setObjectName(QStringLiteral("now%1").arg(i));
        grid->addWidget(new QLabel(names.at(i)), i + 1, 0);
        grid->addWidget(left, i + 1, 1);
        grid->addWidget(right, i + 1, 2);
    }
    layout->addLayout(grid);
    layout->addWidget(cell(change.isTrusted ? tr("The new certificate is trusted itself.")
                                            : tr("The new certificate is not trusted yet: you are asked "
                                                 "about it next."),
                           false));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    QPushButton* use = buttons->addButton(change.isTrusted ? tr("&Use the New Certificate")
                                                           : tr("&Examine the New Certificate..."),
                                          QDialogButtonBox::AcceptRole);
    use->setObjectName(QStringLiteral("useNew"));
    use->setAutoDefault(false);
    buttons->button(QDialogButtonBox::Cancel)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(700, 480);
}
