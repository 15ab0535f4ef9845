#include <app/settings/qlumsettingsdialog.h>

#include <app/settings/qlumsettingsmodel.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <limits>
#include <utility>

namespace {
constexpr int hour = 3600000;
constexpr int noMaximum = std::numeric_limits<int>::max();
} // namespace

QlumSettingsDialog::QlumSettingsDialog(QlumSettingsModel* settings, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumSettingsDialog"), parent), m_settings(settings),
      m_pages(new QTabWidget(this))
{
    setWindowTitle(tr("Configure Tavelin"));
    m_pages->setObjectName(QStringLiteral("settingsPages"));
    m_pages->setUsesScrollButtons(false);
    addConnectionPage();
    addCertificatePage();
    addBrowsePage();
    addLogPage();
    addTracePage();
    addUpdatePage();

    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::RestoreDefaults, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QlumSettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
            &QlumSettingsDialog::sltRestoreDefaults);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pages);
    layout->addWidget(buttons);
}

void QlumSettingsDialog::addConnectionPage()
{
    QFormLayout* form = addPage(tr("&Connections"), QStringLiteral("connections"));
    const QString ms = tr(" ms");
    addNumber(form, "General.ConnectTimeout", tr("Connect &timeout:"), 100, hour, ms);
    addNumber(form, "General.CallTimeout", tr("Ca&ll timeout:"), 100, hour, ms);
    addNumber(form, "General.PublishTimeout", tr("&Publish timeout:"), 1000, hour, ms);
    addNumber(form, "General.SessionTimeout", tr("&Session timeout:"), 1000, noMaximum, ms);
    addNumber(form, "General.SecureChannelLifetime", tr("Secure channel l&ifetime:"), 1000, noMaximum, ms);
    addNumber(form, "General.InternalServiceCallTimeout", tr("Timeout of i&nternal calls:"), 100, hour, ms);
    addFlag(form, "General.AutomaticReconnect", tr("&Reconnect automatically"));
    addNumber(form, "General.WatchdogTime", tr("Connection c&heck every:"), 1000, hour, ms);
    addNumber(form, "General.WatchdogTimeout", tr("Timeout of &a check:"), 100, hour, ms);
    addNumber(form, "General.MaxOperationsPerServiceCall",
              tr("&Most operations in a call (0: server decides):"), 0, noMaximum);
    addChoice(form, "General.TypeDictionaryMode", tr("Load type &dictionaries:"),
              {QStringLiteral("FirstUse"), QStringLiteral("Manual"), QStringLiteral("Connect"),
               QStringLiteral("Reconnect")});
    addText(form, "General.LocaleId", tr("Lan&guage of server texts:"));
}

void QlumSettingsDialog::addCertificatePage()
{
    QFormLayout* form = addPage(tr("C&ertificates"), QStringLiteral("certificates"));
    auto* label = new QLabel(tr("Server certificates pass the validation although"));
    label->setObjectName(QStringLiteral("certificatesLabel"));
    form->addRow(label);
    addFlag(form, "General.DisableError.CertificateTimeInvalid", tr("they are &expired or not yet valid"));
    addFlag(form, "General.DisableError.CertificateIssuerTimeInvalid",
            tr("an &issuer's certificate is expired or not yet valid"));
    addFlag(form, "General.DisableError.CertificateRevocationUnknown",
            tr("there is no &revocation list for them"));
    addFlag(form, "General.DisableError.CertificateIssuerRevocationUnknown",
            tr("there is no revocation list for an issuer's &certificate"));
}

void QlumSettingsDialog::addBrowsePage()
{
    QFormLayout* form = addPage(tr("&Address space"), QStringLiteral("addressSpace"));
    addNumber(form, "General.BrowseTimeout", tr("Browse &timeout:"), 100, hour, tr(" ms"));
    addNumber(form, "General.MaxReferencesToReturn", tr("&References in an answer (0: server decides):"), 0,
              noMaximum);
    addNumber(form, "General.MaxBrowseNextCalls", tr("&Follow-up calls (-1: no limit):"), -1, noMaximum);
    addFlag(form, "General.RetrieveIcons", tr("Show &icons that servers offer"));
    addFlag(form, "General.SubscribeForModelChangeEvents", tr("&Notice changes of the address space"));
}

void QlumSettingsDialog::addLogPage()
{
    QFormLayout* form = addPage(tr("&Log and project"), QStringLiteral("log"));
    addChoice(form, "General.LogLevel", tr("&Least level shown:"),
              {QStringLiteral("ERROR"), QStringLiteral("WARNING"), QStringLiteral("INFO"),
               QStringLiteral("FUNCTION"), QStringLiteral("DATA"), QStringLiteral("PARANOID"),
               QStringLiteral("ALL")});
    addNumber(form, "General.LogMaxEntries", tr("&Entries kept:"), 1, 1000000);
    addFlag(form, "General.LogShowDateWithTimestamps", tr("Show the &date with the time"));
    addNumber(form, "General.NoOfRecentFiles", tr("&Recent projects kept:"), 0, 50);
    addFlag(form, "General.SuppressSaveOnExit", tr("End without &asking to save the project"));
}

void QlumSettingsDialog::addTracePage()
{
    QFormLayout* form = addPage(tr("&Trace"), QStringLiteral("trace"));
    addFlag(form, "Trace.SDKTraceEnabled", tr("Trace Tavelin and the client &layer"));
    addChoice(form, "Trace.SDKTraceLevel", tr("L&evel:"),
              {QStringLiteral("Errors"), QStringLiteral("Warning"), QStringLiteral("Info"),
               QStringLiteral("InterfaceCall"), QStringLiteral("CtorDtor"), QStringLiteral("ProgramFlow"),
               QStringLiteral("Data")});
    addFlag(form, "Trace.StackTraceEnabled", tr("Trace the communication &stack"));
    addChoice(form, "Trace.StackTraceLevel", tr("Le&vel of the stack:"),
              {QStringLiteral("ERROR"), QStringLiteral("WARNING"), QStringLiteral("SYSTEM"),
               QStringLiteral("INFO"), QStringLiteral("DEBUG"), QStringLiteral("CONTENT"),
               QStringLiteral("ALL")});
    addFile(form, "Trace.Filename", tr("&File:"));
    addNumber(form, "Trace.MaxTraceEntries", tr("Entries in a f&ile:"), 100, noMaximum);
    addNumber(form, "Trace.NumBackupFiles", tr("&Older files kept:"), 1, 1000);
}

void QlumSettingsDialog::addUpdatePage()
{
    QFormLayout* form = addPage(tr("&Updates"), QStringLiteral("updates"));
    addFlag(form, "AutomaticUpdate.CheckForUpdates", tr("&Check for updates automatically"));
    addNumber(form, "AutomaticUpdate.UpdateInterval", tr("&Interval:"), 1, 365, tr(" days"));
}

QFormLayout* QlumSettingsDialog::addPage(const QString& title, const QString& name)
{
    auto* page = new QWidget(m_pages);
    page->setObjectName(name);
    auto* form = new QFormLayout(page);
    m_pages->addTab(page, title);
    return form;
}

void QlumSettingsDialog::prepare(QWidget* field, const char* key, const QString& label)
{
    field->setObjectName(QLatin1String(key));
    QString name = label;
    name.remove(QLatin1Char('&')).remove(QLatin1Char(':'));
    field->setAccessibleName(name);
    field->setToolTip(name);
}

void QlumSettingsDialog::addField(const char* key, std::function<QVariant()> get,
                                  std::function<void(const QVariant&)> set)
{
    set(m_settings->value(QLatin1String(key)));
    const QVariant initial = get();
    m_fields.push_back({QLatin1String(key), std::move(get), std::move(set), initial});
}

void QlumSettingsDialog::addFlag(QFormLayout* form, const char* key, const QString& label)
{
    auto* box = new QCheckBox(label);
    prepare(box, key, label);
    form->addRow(box);
    addField(
        key, [box] { return box->isChecked(); },
        [box](const QVariant& value) { box->setChecked(value.toBool()); });
}

void QlumSettingsDialog::addNumber(QFormLayout* form, const char* key, const QString& label, int minimum,
                                   int maximum, const QString& suffix)
{
    auto* box = new QSpinBox;
    prepare(box, key, label);
    box->setRange(minimum, maximum);
    box->setSuffix(suffix);
    box->setGroupSeparatorShown(true);
    form->addRow(label, box);
    addField(
        key, [box] { return box->value(); },
        [box](const QVariant& value) {
            box->setValue(
                static_cast<int>(std::min<double>(value.toDouble(), std::numeric_limits<int>::max())));
        });
}

void QlumSettingsDialog::addChoice(QFormLayout* form, const char* key, const QString& label,
                                   const QStringList& values)
{
    auto* box = new QComboBox;
    prepare(box, key, label);
    box->addItems(values);
    form->addRow(label, box);
    addField(
        key, [box] { return box->currentText(); },
        [box](const QVariant& value) { box->setCurrentText(value.toString()); });
}

void QlumSettingsDialog::addText(QFormLayout* form, const char* key, const QString& label)
{
    auto* edit = new QLineEdit;
    prepare(edit, key, label);
    form->addRow(label, edit);
    addField(
        key, [edit] { return edit->text(); },
        [edit](const QVariant& value) { edit->setText(value.toString()); });
}

void QlumSettingsDialog::addFile(QFormLayout* form, const char* key, const QString& label)
{
    auto* edit = new QLineEdit;
    prepare(edit, key, label);
    auto* choose = new QToolButton;
    choose->setText(tr("..."));
    choose->setObjectName(QStringLiteral("chooseFile"));
    choose->setAccessibleName(tr("Choose a file"));
    choose->setToolTip(tr("Choose a file"));
    connect(choose, &QToolButton::clicked, this, [this, edit] {
        const QString file =
            QFileDialog::getSaveFileName(this, tr("Trace File"), edit->text(), tr("Log Files (*.log)"),
                                         nullptr, QFileDialog::DontConfirmOverwrite);
        if (!file.isEmpty())
            edit->setText(QDir::toNativeSeparators(file));
    });
    auto* row = new QHBoxLayout;
    row->addWidget(edit, 1);
    row->addWidget(choose);
    auto* caption = new QLabel(label);
    caption->setBuddy(edit);
    form->addRow(caption, row);
    addField(
        key, [edit] { return edit->text(); },
        [edit](const QVariant& value) { edit->setText(value.toString()); });
}

void QlumSettingsDialog::sltRestoreDefaults()
{
    for (const Field& field : m_fields)
        if (const QVariant value = m_settings->defaultValue(field.key); value.isValid())
            field.set(value);
}

void QlumSettingsDialog::accept()
{
    for (const Field& field : m_fields) {
        // what was not changed stays unset, so that a later version's default still applies
        if (QVariant value = field.get(); value != field.initial) {
            if (const QVariant standard = m_settings->defaultValue(field.key); standard.isValid())
                value.convert(static_cast<int>(standard.userType()));
            m_settings->setValue(field.key, value);
        }
    }
    QlumBaseWidget::accept();
}
