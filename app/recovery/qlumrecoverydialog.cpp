#include <app/recovery/qlumrecoverydialog.h>

#include <app/api/qlumtext.h>

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QString>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

namespace {
constexpr qint64 maximumReport = 1024 * 1024;

using Leftover = QlumSessionRecord::Leftover;

QString projectText(const Leftover& leftover)
{
    return leftover.project.isEmpty() ? QlumRecoveryDialog::tr("New project")
                                      : QDir::toNativeSeparators(leftover.project);
}

QString contentText(const Leftover& leftover)
{
    if (leftover.recovered.isEmpty())
        return QlumRecoveryDialog::tr("Report of a crash");
    return leftover.crashReport.isEmpty() ? QlumRecoveryDialog::tr("Unsaved changes")
                                          : QlumRecoveryDialog::tr("Unsaved changes, report of a crash");
}

QString explanation(const Leftover& leftover)
{
    if (!leftover.recovered.isEmpty())
        return QlumRecoveryDialog::tr(
            "The project had changes that were not saved. They can be opened as they were at most a minute "
            "before the end; the project file stays as it is until you save.");
    if (leftover.project.isEmpty())
        return QlumRecoveryDialog::tr("No project was open. The report says where it happened.");
    return QlumRecoveryDialog::tr(
        "The project had no changes that were not saved. The report says where it happened.");
}

QString read(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(maximumReport)) : QString();
}
} // namespace

QlumRecoveryDialog::QlumRecoveryDialog(const QlumSessionRecord& record, QList<Leftover> leftovers,
                                       QWidget* parent)
    : QDialog(parent), m_record(record), m_leftovers(std::move(leftovers)), m_list(new QTreeWidget(this)),
      m_what(new QLabel(this)), m_report(new QPlainTextEdit(this))
{
    setWindowTitle(tr("Recover Work"));
    setObjectName(QStringLiteral("recoveryDialog"));
    makeWidgets();
    fillList();
    connect(m_list, &QTreeWidget::currentItemChanged, this, &QlumRecoveryDialog::showCurrent);
    showCurrent();
    resize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 28);
}

void QlumRecoveryDialog::makeWidgets()
{
    auto* text = new QLabel(tr("Tavelin did not end as it should have. This is what was left:"), this);
    text->setWordWrap(true);
    m_list->setObjectName(QStringLiteral("leftovers"));
    m_list->setAccessibleName(tr("What was left"));
    m_list->setHeaderLabels({tr("Ended"), tr("Project"), tr("What is there")});
    m_list->setRootIsDecorated(false);
    m_list->setMaximumHeight(fontMetrics().height() * 8);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_what->setObjectName(QStringLiteral("explanation"));
    m_what->setTextFormat(Qt::PlainText);
    m_what->setWordWrap(true);
    m_report->setObjectName(QStringLiteral("report"));
    m_report->setAccessibleName(tr("Report of the crash"));
    m_report->setReadOnly(true);
    m_report->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto* buttons = new QDialogButtonBox(this);
    m_open = buttons->addButton(tr("&Open Project"), QDialogButtonBox::AcceptRole);
    m_open->setObjectName(QStringLiteral("openProject"));
    m_save = buttons->addButton(tr("&Save Report..."), QDialogButtonBox::ActionRole);
    m_save->setObjectName(QStringLiteral("saveReport"));
    m_discard = buttons->addButton(tr("&Throw Away"), QDialogButtonBox::ActionRole);
    m_discard->setObjectName(QStringLiteral("throwAway"));
    buttons->addButton(tr("&Later"), QDialogButtonBox::RejectRole)->setObjectName(QStringLiteral("later"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_save, &QPushButton::clicked, this, &QlumRecoveryDialog::saveReport);
    connect(m_discard, &QPushButton::clicked, this, &QlumRecoveryDialog::discardCurrent);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(m_list);
    layout->addWidget(m_what);
    layout->addWidget(m_report, 1);
    layout->addWidget(buttons);
}

void QlumRecoveryDialog::fillList()
{
    for (const Leftover& leftover : std::as_const(m_leftovers))
        m_list->addTopLevelItem(new QTreeWidgetItem(
            {qlumShowMinute(leftover.ended), projectText(leftover), contentText(leftover)}));
    m_list->setCurrentItem(m_list->topLevelItem(0));
}

int QlumRecoveryDialog::current() const
{
    return m_list->indexOfTopLevelItem(m_list->currentItem());
}

Leftover QlumRecoveryDialog::chosen() const
{
    return m_leftovers.value(current());
}

void QlumRecoveryDialog::showCurrent()
{
    const Leftover leftover = chosen();
    const bool hasReport = !leftover.crashReport.isEmpty();
    m_what->setText(leftover.id.isEmpty() ? QString() : explanation(leftover));
    m_report->setVisible(hasReport);
    m_report->setPlainText(hasReport ? read(leftover.crashReport) : QString());
    m_save->setEnabled(hasReport);
    m_discard->setEnabled(!leftover.id.isEmpty());
    m_open->setEnabled(!leftover.recovered.isEmpty() || QFileInfo(leftover.project).isFile());
}

void QlumRecoveryDialog::saveReport()
{
    const QString report = chosen().crashReport;
    const QString fileName = QFileDialog::getSaveFileName(
        this, tr("Save Report"), QFileInfo(report).fileName(), tr("Text Files (*.txt)"));
    if (fileName.isEmpty())
        return;
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_report->toPlainText().toUtf8()) < 0 ||
        !file.commit())
        QMessageBox::warning(this, tr("Save Report"),
                             tr("The report could not be written: %1").arg(file.errorString()));
}

void QlumRecoveryDialog::discardCurrent()
{
    const int row = current();
    const Leftover leftover = m_leftovers.value(row);
    if (!leftover.recovered.isEmpty() &&
        QMessageBox::question(this, tr("Throw Away"),
                              tr("The unsaved changes cannot be brought back then. Throw them away?")) !=
            QMessageBox::Yes)
        return;
    m_record.discard(leftover);
    m_leftovers.removeAt(row);
    delete m_list->takeTopLevelItem(row);
    if (m_leftovers.isEmpty())
        reject();
}
