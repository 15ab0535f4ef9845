#include <app/mainwindow/qlumupdatedialog.h>

#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>
#include <QString>
#include <QWidget>

QlumUpdateDialog::QlumUpdateDialog(int interval, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumUpdateDialog"), parent),
      m_check(new QCheckBox(tr("&Check for updates automatically"), this)), m_interval(new QSpinBox(this))
{
    setWindowTitle(tr("Automatic Update"));
    auto* text =
        new QLabel(tr("Tavelin can ask from time to time whether there is a newer version. Nothing but the "
                      "question is sent. You can change this in the settings at any time."),
                   this);
    text->setWordWrap(true);
    m_check->setObjectName(QStringLiteral("checkForUpdates"));
    m_check->setChecked(true);
    m_interval->setObjectName(QStringLiteral("updateInterval"));
    m_interval->setAccessibleName(tr("Days between checks"));
    m_interval->setRange(1, 365);
    m_interval->setSuffix(tr(" days"));
    m_interval->setValue(interval);
    connect(m_check, &QCheckBox::toggled, m_interval, &QWidget::setEnabled);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* layout = new QFormLayout(this);
    layout->addRow(text);
    layout->addRow(m_check);
    layout->addRow(tr("&Interval:"), m_interval);
    layout->addRow(buttons);
}

bool QlumUpdateDialog::checkForUpdates() const
{
    return m_check->isChecked();
}

int QlumUpdateDialog::interval() const
{
    return m_interval->value();
}
