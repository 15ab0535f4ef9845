#include <app/settings/qlumsettingsdialog.h>

#include <app/api/qlumsettingsregistry.h>
#include <app/settings/qlumsettingsform.h>
#include <app/settings/qlumsettingsmodel.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>

#include <QDialog>
#include <QDialogButtonBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QVBoxLayout>

#include <algorithm>
#include <ranges>
#include <tuple>

QlumSettingsDialog::QlumSettingsDialog(QlumSettingsModel* settings, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumSettingsDialog"), parent), m_settings(settings),
      m_search(new QLineEdit(this)), m_list(new QListWidget(this)), m_pages(new QStackedWidget(this)),
      m_waits(new QLabel(this)), m_messages(new QlumMessageBar(this))
{
    setWindowTitle(tr("Configure Tavelin"));
    qlumDescribeField(m_search,
                      {QStringLiteral("settingsSearch"),
                       tr("Search the settings"),
                       tr("<b>Search the settings</b><br>Shows only the settings with these words."),
                       {}});
    m_search->setPlaceholderText(tr("Search"));
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, &QlumSettingsDialog::sltSearch);
    m_waits->setObjectName(QStringLiteral("settingsWait"));
    m_waits->setTextFormat(Qt::PlainText);
    m_waits->setWordWrap(true);
    m_waits->hide();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_messages);
    layout->addWidget(makePages(), 1);
    layout->addWidget(m_waits);
    layout->addWidget(makeButtons());
    m_list->setCurrentRow(0);
}

QWidget* QlumSettingsDialog::makePages()
{
    auto* box = new QWidget(this);
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    qlumDescribeField(m_list, {QStringLiteral("settingsPages"),
                               tr("Pages"),
                               tr("<b>Pages</b><br>What the settings are about."),
                               {}});
    layout->addWidget(m_list);
    layout->addWidget(m_pages, 1);
    for (const QlumSettingsPage& page : m_settings->registry().pages()) {
        if (std::ranges::all_of(page.rows,
                                [](const QlumSettingRow& row) { return row.kind == QlumSettingRow::Unseen; }))
            continue;
        auto* form = new QlumSettingsForm(m_settings, page);
        connect(form, &QlumSettingsForm::edited, this, &QlumSettingsDialog::sltEdited);
        auto* area = new QScrollArea;
        area->setFrameShape(QFrame::NoFrame);
        area->setWidgetResizable(true);
        area->setWidget(form);
        m_pages->addWidget(area);
        m_list->addItem(form->title());
        m_forms.push_back(form);
    }
    m_list->setMaximumWidth(m_list->sizeHintForColumn(0) + 3 * fontMetrics().averageCharWidth());
    connect(m_list, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    return box;
}

QWidget* QlumSettingsDialog::makeButtons()
{
    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::RestoreDefaults, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QlumSettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QPushButton* restore = buttons->button(QDialogButtonBox::RestoreDefaults);
    restore->setToolTip(tr("Of this page"));
    connect(restore, &QPushButton::clicked, this, [this] {
        if (const int row = m_list->currentRow(); row >= 0)
            m_forms[static_cast<std::size_t>(row)]->restoreDefaults();
    });
    return buttons;
}

void QlumSettingsDialog::sltSearch(const QString& text)
{
    const QStringList words = text.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    int first = -1;
    for (int row = 0; row < m_list->count(); ++row) {
        const bool isFound = m_forms[static_cast<std::size_t>(row)]->search(words);
        m_list->item(row)->setHidden(!isFound);
        if (isFound && (first < 0 || row == m_list->currentRow()))
            first = row;
    }
    m_pages->setVisible(first >= 0);
    if (first >= 0)
        m_list->setCurrentRow(first);
}

// Told before OK, so that nobody waits for what does not come.
void QlumSettingsDialog::sltEdited()
{
    using Row = QlumSettingRow;
    QStringList lines;
    const auto add = [&](Row::Effect effect, const QString& text) {
        QStringList labels;
        for (const QlumSettingsForm* form : m_forms)
            labels += form->changed(effect);
        if (!labels.isEmpty())
            lines.append(text.arg(labels.join(QStringLiteral(", "))));
    };
    add(Row::AtConnect, tr("When a server is connected the next time: %1"));
    add(Row::InNewViews, tr("In views that are opened from now on: %1"));
    add(Row::AtStart, tr("When Tavelin is started the next time: %1"));
    m_waits->setText(lines.join(QLatin1Char('\n')));
    m_waits->setVisible(!lines.isEmpty());
}

void QlumSettingsDialog::showSetting(const QString& key)
{
    for (std::size_t i = 0; !key.isEmpty() && i < m_forms.size(); ++i)
        if (m_forms[i]->focusField(key)) {
            m_list->setCurrentRow(static_cast<int>(i));
            m_forms[i]->focusField(key); // now that its page is shown
        }
}

void QlumSettingsDialog::accept()
{
    for (std::size_t i = 0; i < m_forms.size(); ++i)
        if (const QString fault = m_forms[i]->focusFault(); !fault.isEmpty()) {
            m_list->setCurrentRow(static_cast<int>(i));
            std::ignore = m_forms[i]->focusFault();
            m_messages->tell({QlumMessage::Error, {}, tr("This setting cannot be used."), fault, {}, {}});
            return;
        }
    for (QlumSettingsForm* form : m_forms)
        form->store();
    QlumBaseWidget::accept();
}
