#include <app/settings/qlumsettingsdialog.h>

#include <app/api/qlumsettingsregistry.h>
#include <app/settings/qlumsettingsmodel.h>
#include <uawidgets/qlumformrow.h>

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
#include <ranges>
#include <utility>

namespace {
// A spin box holds no more; a setting may.
int whole(double value)
{
    constexpr double lowest = std::numeric_limits<int>::lowest();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

QlumFormRow formRow(const QlumSettingRow& row)
{
    return {row.key,
            row.text.label,
            QStringLiteral("<b>%1</b><br>%2").arg(qlumBareLabel(row.text.label), row.text.explanation),
            {}};
}
} // namespace

QlumSettingsDialog::QlumSettingsDialog(QlumSettingsModel* settings, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumSettingsDialog"), parent), m_settings(settings),
      m_pages(new QTabWidget(this))
{
    setWindowTitle(tr("Configure Tavelin"));
    m_pages->setObjectName(QStringLiteral("settingsPages"));
    m_pages->setUsesScrollButtons(false);
    for (const QlumSettingsPage& page : settings->registry().pages())
        addPage(page);

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

void QlumSettingsDialog::addPage(const QlumSettingsPage& page)
{
    if (std::ranges::all_of(page.rows, [](const Row& row) { return row.kind == Row::Unseen; }))
        return;
    auto* widget = new QWidget(m_pages);
    widget->setObjectName(page.name);
    auto* form = new QFormLayout(widget);
    for (const Row& row : page.rows)
        addRow(form, row);
    m_pages->addTab(widget, page.title);
}

void QlumSettingsDialog::addRow(QFormLayout* form, const Row& row)
{
    switch (row.kind) {
    case Row::Unseen:
        break;
    case Row::Note:
        addNote(form, row);
        break;
    case Row::Flag:
        addFlag(form, row);
        break;
    case Row::Number:
        addNumber(form, row);
        break;
    case Row::Choice:
        addChoice(form, row);
        break;
    case Row::Text:
        addText(form, row);
        break;
    case Row::File:
        addFile(form, row);
        break;
    }
}

void QlumSettingsDialog::addField(const QString& key, std::function<QVariant()> get,
                                  std::function<void(const QVariant&)> set)
{
    set(m_settings->value(key));
    const QVariant initial = get();
    m_fields.push_back({key, std::move(get), std::move(set), initial});
}

void QlumSettingsDialog::addNote(QFormLayout* form, const Row& row)
{
    auto* label = new QLabel(row.text.label);
    label->setObjectName(row.key);
    form->addRow(label);
}

void QlumSettingsDialog::addFlag(QFormLayout* form, const Row& row)
{
    auto* box = new QCheckBox(row.text.label);
    qlumAddWideRow(form, box, formRow(row));
    addField(
        row.key, [box] { return box->isChecked(); },
        [box](const QVariant& value) { box->setChecked(value.toBool()); });
}

void QlumSettingsDialog::addNumber(QFormLayout* form, const Row& row)
{
    auto* box = new QSpinBox;
    box->setRange(whole(row.minimum), whole(row.maximum));
    box->setSuffix(row.unit);
    box->setGroupSeparatorShown(true);
    qlumAddRow(form, box, formRow(row));
    addField(
        row.key, [box] { return box->value(); },
        [box](const QVariant& value) { box->setValue(whole(value.toDouble())); });
}

void QlumSettingsDialog::addChoice(QFormLayout* form, const Row& row)
{
    auto* box = new QComboBox;
    box->addItems(row.choices);
    qlumAddRow(form, box, formRow(row));
    addField(
        row.key, [box] { return box->currentText(); },
        [box](const QVariant& value) { box->setCurrentText(value.toString()); });
}

void QlumSettingsDialog::addText(QFormLayout* form, const Row& row)
{
    auto* edit = new QLineEdit;
    qlumAddRow(form, edit, formRow(row));
    addLineField(row.key, edit);
}

void QlumSettingsDialog::addFile(QFormLayout* form, const Row& row)
{
    auto* edit = new QLineEdit;
    auto* choose = new QToolButton;
    choose->setText(tr("..."));
    qlumDescribeField(choose, {QStringLiteral("chooseFile"),
                               tr("Choose a file"),
                               tr("<b>Choose a file</b><br>Asks for a file in place of the one here."),
                               {}});
    connect(choose, &QToolButton::clicked, this, [this, edit] {
        const QString file =
            QFileDialog::getSaveFileName(this, tr("Trace File"), edit->text(), tr("Log Files (*.log)"),
                                         nullptr, QFileDialog::DontConfirmOverwrite);
        if (!file.isEmpty())
            edit->setText(QDir::toNativeSeparators(file));
    });
    auto* layout = new QHBoxLayout;
    layout->addWidget(edit, 1);
    layout->addWidget(choose);
    qlumAddRow(form, edit, formRow(row), layout);
    addLineField(row.key, edit);
}

void QlumSettingsDialog::addLineField(const QString& key, QLineEdit* edit)
{
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

void QlumSettingsDialog::showSetting(const QString& key)
{
    auto* field = key.isEmpty() ? nullptr : m_pages->findChild<QWidget*>(key);
    for (QWidget* page = field; page; page = page->parentWidget())
        if (m_pages->indexOf(page) >= 0)
            m_pages->setCurrentWidget(page);
    if (field)
        field->setFocus(Qt::ShortcutFocusReason);
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
