#include <app/settings/qlumsettingsform.h>

#include <app/settings/qlumsettingsmodel.h>
#include <uawidgets/qlumformrow.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayoutItem>
#include <QLineEdit>
#include <QSpinBox>
#include <QToolButton>

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

void collect(QLayoutItem* item, std::vector<QWidget*>& widgets)
{
    if (!item)
        return;
    if (item->widget())
        widgets.push_back(item->widget());
    for (int i = 0; item->layout() && i < item->layout()->count(); ++i)
        collect(item->layout()->itemAt(i), widgets);
}
} // namespace

QString qlumTraceFileFault(const QString& file)
{
    const QFileInfo info(QDir::fromNativeSeparators(file));
    if (file.trimmed().isEmpty())
        return QlumSettingsForm::tr("A trace needs the name of a file.");
    if (info.isRelative())
        return QlumSettingsForm::tr("The name of the trace file must begin with its folder.");
    if (info.isDir())
        return QlumSettingsForm::tr("%1 is a folder.").arg(file);
    if (!info.absoluteDir().exists())
        return QlumSettingsForm::tr("The folder %1 is not there.")
            .arg(QDir::toNativeSeparators(info.absolutePath()));
    const bool isWritable =
        info.exists() ? info.isWritable() && info.isFile() : QFileInfo(info.absolutePath()).isWritable();
    return isWritable ? QString() : QlumSettingsForm::tr("%1 cannot be written.").arg(file);
}

QlumSettingsForm::QlumSettingsForm(QlumSettingsModel* settings, const QlumSettingsPage& page, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_title(qlumBareLabel(page.title))
{
    setObjectName(page.name);
    auto* form = new QFormLayout(this);
    // in a narrow window a label may stand above its field
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    for (const Row& row : page.rows) {
        const int count = form->rowCount();
        addRow(form, row);
        for (int line = count; line < form->rowCount(); ++line) {
            Line added{{},
                       row.text.label + QLatin1Char(' ') + row.text.explanation + QLatin1Char(' ') + row.key};
            added.text.remove(QLatin1Char('&'));
            for (const auto role :
                 {QFormLayout::LabelRole, QFormLayout::FieldRole, QFormLayout::SpanningRole})
                collect(form->itemAt(line, role), added.widgets);
            m_lines.push_back(std::move(added));
        }
    }
}

// ---- fields

void QlumSettingsForm::addRow(QFormLayout* form, const Row& row)
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

void QlumSettingsForm::addField(const Row& row, QWidget* widget, std::function<QVariant()> get,
                                std::function<void(const QVariant&)> set, std::function<QString()> fault)
{
    set(m_settings->value(row.key));
    const QVariant initial = get();
    m_fields.push_back({row.key, widget, std::move(get), std::move(set), std::move(fault), row.effect,
                        qlumBareLabel(row.text.label), initial});
}

void QlumSettingsForm::addNote(QFormLayout* form, const Row& row)
{
    auto* label = new QLabel(row.text.label);
    label->setObjectName(row.key);
    label->setWordWrap(true);
    form->addRow(label);
}

void QlumSettingsForm::addFlag(QFormLayout* form, const Row& row)
{
    auto* box = new QCheckBox(row.text.label);
    qlumAddWideRow(form, box, formRow(row));
    addField(
        row, box, [box] { return box->isChecked(); },
        [box](const QVariant& value) { box->setChecked(value.toBool()); });
    connect(box, &QCheckBox::toggled, this, &QlumSettingsForm::edited);
}

// Of a number that is more than an int holds, such as that of a queue as long as it can be.
void QlumSettingsForm::addWideNumber(QFormLayout* form, const Row& row)
{
    auto* box = new QDoubleSpinBox;
    box->setDecimals(0);
    box->setRange(row.minimum, row.maximum);
    box->setSuffix(row.unit);
    box->setGroupSeparatorShown(true);
    qlumAddRow(form, box, formRow(row));
    addField(
        row, box, [box] { return static_cast<qlonglong>(box->value()); },
        [box](const QVariant& value) { box->setValue(value.toDouble()); });
    connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &QlumSettingsForm::edited);
}

void QlumSettingsForm::addNumber(QFormLayout* form, const Row& row)
{
    if (row.maximum > std::numeric_limits<int>::max()) {
        addWideNumber(form, row);
        return;
    }
    auto* box = new QSpinBox;
    box->setRange(whole(row.minimum), whole(row.maximum));
    box->setSuffix(row.unit);
    box->setGroupSeparatorShown(true);
    qlumAddRow(form, box, formRow(row));
    addField(
        row, box, [box] { return box->value(); },
        [box](const QVariant& value) { box->setValue(whole(value.toDouble())); });
    connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, &QlumSettingsForm::edited);
}

void QlumSettingsForm::addChoice(QFormLayout* form, const Row& row)
{
    auto* box = new QComboBox;
    for (int i = 0; i < row.choices.size(); ++i)
        box->addItem(row.words.value(i, row.choices.at(i)), row.choices.at(i));
    qlumAddRow(form, box, formRow(row));
    addField(
        row, box, [box] { return box->currentData(); },
        [box](const QVariant& value) {
            if (const int place = box->findData(value); place >= 0)
                box->setCurrentIndex(place);
        });
    connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QlumSettingsForm::edited);
}

void QlumSettingsForm::addText(QFormLayout* form, const Row& row)
{
    auto* edit = new QLineEdit;
    qlumAddRow(form, edit, formRow(row));
    addLineField(row, edit);
}

void QlumSettingsForm::addFile(QFormLayout* form, const Row& row)
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
    auto* wrong = new QLabel;
    wrong->setObjectName(row.key + QStringLiteral("Fault"));
    wrong->setTextFormat(Qt::PlainText);
    wrong->setWordWrap(true);
    const auto fault = [edit] { return qlumTraceFileFault(edit->text()); };
    const auto tell = [wrong, fault] {
        wrong->setText(fault());
        wrong->setVisible(!wrong->text().isEmpty());
    };
    form->addRow(QString(), wrong);
    connect(edit, &QLineEdit::textChanged, wrong, tell);
    addLineField(row, edit, fault);
    tell();
}

void QlumSettingsForm::addLineField(const Row& row, QLineEdit* edit, std::function<QString()> fault)
{
    addField(
        row, edit, [edit] { return edit->text(); },
        [edit](const QVariant& value) { edit->setText(value.toString()); }, std::move(fault));
    connect(edit, &QLineEdit::textChanged, this, &QlumSettingsForm::edited);
}

// ---- what the dialog does with them

bool QlumSettingsForm::search(const QStringList& words)
{
    bool isAny = false;
    for (const Line& line : m_lines) {
        const QString text = m_title + QLatin1Char(' ') + line.text;
        const bool isWanted = std::ranges::all_of(
            words, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
        isAny = isAny || isWanted;
        for (QWidget* widget : line.widgets) {
            const auto* label = qobject_cast<QLabel*>(widget);
            const bool isEmpty = label && label->text().isEmpty(); // nothing is wrong
            widget->setVisible(isWanted && !isEmpty);
        }
    }
    return isAny;
}

void QlumSettingsForm::restoreDefaults()
{
    for (const Field& field : m_fields)
        if (const QVariant value = m_settings->defaultValue(field.key); value.isValid())
            field.set(value);
}

bool QlumSettingsForm::focusField(const QString& key)
{
    const auto field = std::ranges::find(m_fields, key, &Field::key);
    if (field == m_fields.end())
        return false;
    field->widget->setFocus(Qt::ShortcutFocusReason);
    return true;
}

// What was wrong before holds nobody up.
QString QlumSettingsForm::focusFault()
{
    for (const Field& field : m_fields)
        if (const QString fault = field.fault && field.get() != field.initial ? field.fault() : QString();
            !fault.isEmpty()) {
            field.widget->setFocus(Qt::OtherFocusReason);
            return fault;
        }
    return {};
}

void QlumSettingsForm::store()
{
    for (const Field& field : m_fields) {
        // what was not changed stays unset, so that a later version's default still applies
        QVariant value = field.get();
        if (value == field.initial)
            continue;
        if (const QVariant standard = m_settings->defaultValue(field.key); standard.isValid())
            value.convert(static_cast<int>(standard.userType()));
        m_settings->setValue(field.key, value);
    }
}

QStringList QlumSettingsForm::changed(QlumSettingRow::Effect effect) const
{
    QStringList labels;
    for (const Field& field : m_fields)
        if (field.effect == effect && field.get() != field.initial)
            labels.append(field.label);
    return labels;
}
