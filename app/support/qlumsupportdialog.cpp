#include <app/support/qlumsupportdialog.h>

#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlummessagebar.h>

#include <QDateTime>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

QlumSupportDialog::QlumSupportDialog(std::vector<QlumReportPart> parts, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumSupportDialog"), parent), m_parts(std::move(parts)),
      m_list(new QListWidget), m_text(new QPlainTextEdit), m_messages(new QlumMessageBar(this))
{
    setWindowTitle(tr("Report for Support"));
    resize(fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 30);
    auto* note = new QLabel(tr("This is what the report contains. Passwords, keys and user names are left "
                               "out; take away what you do not want to pass on."),
                            this);
    note->setWordWrap(true);
    qlumDescribeField(m_list, {QStringLiteral("reportParts"),
                               tr("Parts of the report"),
                               tr("<b>Parts of the report</b><br>What is checked is written."),
                               {}});
    for (const QlumReportPart& part : m_parts) {
        auto* item = new QListWidgetItem(part.title, m_list);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    qlumDescribeField(m_text, {QStringLiteral("reportText"),
                               tr("Text of the part"),
                               tr("<b>Text of the part</b><br>Just as it is written."),
                               {}});
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* splitter = new QSplitter(this);
    splitter->addWidget(m_list);
    splitter->addWidget(m_text);
    splitter->setStretchFactor(1, 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    m_save = buttons->button(QDialogButtonBox::Save);
    connect(buttons, &QDialogButtonBox::accepted, this, &QlumSupportDialog::sltSave);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_list, &QListWidget::currentRowChanged, this, &QlumSupportDialog::sltShow);
    connect(m_list, &QListWidget::itemChanged, this, [this] { m_save->setEnabled(!chosen().empty()); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(note);
    layout->addWidget(m_messages);
    layout->addWidget(splitter, 1);
    layout->addWidget(buttons);
    m_list->setCurrentRow(0);
}

std::vector<QlumReportPart> QlumSupportDialog::chosen() const
{
    std::vector<QlumReportPart> parts;
    for (int row = 0; row < m_list->count(); ++row)
        if (m_list->item(row)->checkState() == Qt::Checked)
            parts.push_back(m_parts[static_cast<std::size_t>(row)]);
    return parts;
}

void QlumSupportDialog::sltShow(int row)
{
    m_text->setPlainText(row < 0 ? QString()
                                 : QString::fromUtf8(m_parts[static_cast<std::size_t>(row)].content));
}

void QlumSupportDialog::sltSave()
{
    const QString name = QStringLiteral("tavelin-report-%1.zip")
                             .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmm")));
    const QString file = QFileDialog::getSaveFileName(this, tr("Save Report"), QDir::home().filePath(name),
                                                      tr("Zip Archives (*.zip)"));
    if (file.isEmpty())
        return;
    if (const QString why = qlumWriteReport(file, chosen()); !why.isEmpty())
        m_messages->tell({QlumMessage::Error, {}, tr("The report could not be written."), why, {}, {}});
    else
        accept();
}
