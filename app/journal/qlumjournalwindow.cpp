#include <app/journal/qlumjournalwindow.h>

#include <app/api/qlumjob.h>
#include <app/journal/qlumjournalmodel.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QString>
#include <QStringList>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

QlumJournalWindow::QlumJournalWindow(std::shared_ptr<QlumJournal> journal, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumJournalWindow"), parent), m_journal(std::move(journal)),
      m_model(new QlumJournalModel(this)), m_filter(new QlumJournalFilter(this)), m_day(new QComboBox),
      m_server(new QComboBox), m_outcome(new QComboBox), m_text(new QLineEdit), m_table(makeTable()),
      m_message(new QLabel)
{
    setWindowTitle(tr("Journal"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(1100, 500);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(makeFilters());
    layout->addWidget(m_table);
    layout->addLayout(makeButtons());
    fillDays();
    connect(m_day, qOverload<int>(&QComboBox::currentIndexChanged), this, &QlumJournalWindow::read);
    connect(
        m_server, qOverload<int>(&QComboBox::currentIndexChanged), m_filter,
        [this] { m_filter->setServer(m_server->currentData().toString()); });
    connect(m_outcome, qOverload<int>(&QComboBox::currentIndexChanged), m_filter,
            [this] { m_filter->setOutcome(m_outcome->currentData().toInt()); });
    connect(m_text, &QLineEdit::textChanged, m_filter, &QlumJournalFilter::setText);
    connect(m_filter, &QAbstractItemModel::rowsInserted, this, &QlumJournalWindow::tell);
    connect(m_filter, &QAbstractItemModel::rowsRemoved, this, &QlumJournalWindow::tell);
    connect(m_filter, &QAbstractItemModel::layoutChanged, this, &QlumJournalWindow::tell); // another filter
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &QlumJournalWindow::fillServers);
    read();
}

QlumJournalWindow::~QlumJournalWindow() = default;

QTreeView* QlumJournalWindow::makeTable()
{
    m_filter->setSourceModel(m_model);
    auto* table = new QTreeView(this);
    table->setObjectName(QStringLiteral("journalTable"));
    table->setAccessibleName(tr("Journal"));
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAlternatingRowColors(true);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setModel(m_filter);
    table->setSortingEnabled(true);
    table->sortByColumn(QlumJournalModel::Time, Qt::DescendingOrder);
    const int em = fontMetrics().averageCharWidth();
    const int widths[] = {32, 18, 17, 12, 40, 18, 18, 30, 24};
    for (int column = 0; column < m_model->columnCount(); ++column)
        table->header()->resizeSection(column, em * widths[column]);
    qlumMakeTable(table, {tr("No change of that day is shown."), tr("journal"), nullptr, {}});
    return table;
}

QLayout* QlumJournalWindow::makeFilters()
{
    qlumDescribeField(m_day, {QStringLiteral("day"), tr("Day"), {}, tr("The day whose changes are shown")});
    qlumDescribeField(m_server,
                      {QStringLiteral("server"), tr("Server"), {}, tr("Show changes on this server")});
    qlumDescribeField(m_outcome,
                      {QStringLiteral("outcome"), tr("Outcome"), {}, tr("Show changes that came to this")});
    qlumDescribeField(m_text,
                      {QStringLiteral("text"), tr("Filter"), {}, tr("Show changes that hold this text")});
    m_server->addItem(tr("All servers"), QString());
    m_outcome->addItem(tr("All outcomes"), -1);
    m_outcome->addItem(tr("Done"), QlumJournalModel::Done);
    m_outcome->addItem(tr("Failed"), QlumJournalModel::Failed);
    m_outcome->addItem(tr("Not sent"), QlumJournalModel::NotSent);
    m_text->setPlaceholderText(tr("Filter"));
    m_text->setClearButtonEnabled(true);
    auto* row = new QHBoxLayout;
    row->addWidget(m_day);
    row->addWidget(m_server);
    row->addWidget(m_outcome);
    row->addWidget(m_text, 1);
    return row;
}

QLayout* QlumJournalWindow::makeButtons()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* save = buttons->addButton(tr("E&xport..."), QDialogButtonBox::ActionRole);
    save->setObjectName(QStringLiteral("export"));
    save->setAutoDefault(false);
    save->setToolTip(tr("Writes the rows that are shown as comma separated values"));
    connect(save, &QPushButton::clicked, this, [this] { qlumExportCsv(m_table, tr("journal")); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    auto* row = new QHBoxLayout;
    row->addWidget(m_message, 1);
    row->addWidget(buttons);
    return row;
}

void QlumJournalWindow::fillDays()
{
    const QDate today = QDate::currentDate();
    m_day->addItem(tr("Today"), today);
    for (const QDate& day : m_journal->days())
        if (day != today)
            m_day->addItem(QLocale::system().toString(day, QLocale::LongFormat), day);
}

QDate QlumJournalWindow::day() const
{
    return m_day->currentData().toDate();
}

// What is written while the file is read is in both, or only in what is told.
void QlumJournalWindow::read()
{
    m_journal->disconnect(this);
    m_pool.cancelAll();
    m_model->setEntries({});
    m_pending.clear();
    m_remark.clear();
    m_isReading = true;
    m_message->setText(tr("Reading..."));
    connect(m_journal.get(), &QlumJournal::appended, this, &QlumJournalWindow::add);
    m_pool.add({tr("Reading the journal"), qlumNoServer}, [this, journal = m_journal,
                                                           day = day()](QlumJob& job) {
        auto reading =
            std::make_shared<QlumJournalReading>(journal->read(day, [&job] { return job.isCancelled(); }));
        job.post([this, reading] { take(*reading); });
    });
}

void QlumJournalWindow::add(const std::vector<QlumJournalEntry>& entries)
{
    std::vector<QlumJournalEntry> ofDay;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(ofDay),
                 [this](const QlumJournalEntry& entry) { return entry.time.date() == day(); });
    if (m_isReading)
        m_pending.insert(m_pending.end(), ofDay.begin(), ofDay.end());
    else
        m_model->add(ofDay);
}

void QlumJournalWindow::take(const QlumJournalReading& reading)
{
    QStringList remarks;
    if (!reading.error.isEmpty())
        remarks.append(tr("The file cannot be read: %1.").arg(reading.error));
    if (reading.leftOut > 0)
        remarks.append(tr("%n older change(s) are in the file only.", nullptr, reading.leftOut));
    if (reading.unreadable > 0)
        remarks.append(tr("%n line(s) cannot be read.", nullptr, reading.unreadable));
    m_remark = remarks.join(QLatin1Char(' '));
    std::vector<QlumJournalEntry> entries = reading.entries;
    for (const QlumJournalEntry& entry : std::exchange(m_pending, {}))
        if (std::find(entries.rbegin(), entries.rend(), entry) == entries.rend())
            entries.push_back(entry);
    m_isReading = false;
    m_model->setEntries(entries);
    fillServers();
    tell();
}

void QlumJournalWindow::fillServers()
{
    const QStringList names = m_model->servers();
    QStringList offered;
    for (int i = 1; i < m_server->count(); ++i)
        offered.append(m_server->itemData(i).toString());
    if (offered == names)
        return;
    const QString chosen = m_server->currentData().toString();
    const QSignalBlocker blocker(m_server);
    while (m_server->count() > 1)
        m_server->removeItem(1);
    for (const QString& name : names)
        m_server->addItem(name, name);
    if (m_server->findData(chosen) < 0)
        m_server->addItem(chosen, chosen);
    m_server->setCurrentIndex(m_server->findData(chosen));
}

void QlumJournalWindow::tell()
{
    const QString count = tr("%1 of %n change(s)", nullptr, m_model->rowCount()).arg(m_filter->rowCount());
    m_message->setText(m_remark.isEmpty() ? count : count + QStringLiteral(". ") + m_remark);
}
