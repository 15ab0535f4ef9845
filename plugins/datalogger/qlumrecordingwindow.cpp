#include <plugins/datalogger/qlumrecordingwindow.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <recording/csvrecord.h>
#include <uabase/values/uadatavalue.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumtimefield.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QByteArray>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLocale>
#include <QModelIndex>
#include <QPushButton>
#include <QSaveFile>
#include <QString>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t mostShown = 10'000;       // values in the table
constexpr std::size_t mostOfACurve = 1'000'000; // values
constexpr std::size_t mostMarks = 100'000;
constexpr int loggerWrittenAtOnce = 1 << 20;
constexpr OpcUa_DateTime endOfTime = std::numeric_limits<OpcUa_DateTime>::max();

QTableView* makeRecordingTable(const char* name, const QString& what, QAbstractItemModel* model,
                               const QString& emptyText)
{
    auto* table = new QTableView;
    table->setObjectName(QLatin1String(name));
    table->setAccessibleName(what);
    auto* filter = new QlumTableFilter(table);
    filter->setSourceModel(model);
    table->setModel(filter);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setWordWrap(false);
    table->setSortingEnabled(true);
    table->sortByColumn(-1, Qt::AscendingOrder);
    table->verticalHeader()->hide();
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    qlumMakeTable(table, {emptyText, what, nullptr, QString(), false});
    return table;
}

// What can be plotted: numbers of a range, by the time of their source.
QlumToolCurve curveOf(const recording::RecordReader::Item& item,
                      const std::vector<recording::Record>& records)
{
    QlumToolCurve curve;
    curve.name = item.item.server + QStringLiteral(": ") +
                 (item.item.name.isEmpty() ? item.item.nodeId : item.item.name);
    curve.unit = item.item.unit;
    curve.isStepped = true;
    curve.samples.reserve(records.size());
    for (const recording::Record& record : records) {
        const UaDataValue& value = record.value;
        OpcUa_DateTime time = value.sourceTimestamp();
        if (time == 0)
            time = value.serverTimestamp().isNull() ? record.received : value.serverTimestamp().value();
        bool isNumber = false;
        const double number = value.value().isScalar() ? value.value().toDouble(&isNumber) : 0;
        curve.samples.push_back({time, isNumber ? number : std::numeric_limits<double>::quiet_NaN(),
                                 value.statusCode().code(), value.serverTimestamp()});
    }
    return curve;
}

} // namespace

QlumRecordingWindow::QlumRecordingWindow(const QString& path, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumRecordingWindow"), parent), m_path(path),
      m_pool(std::make_unique<QlumJobPool>(1)), m_items(new QlumRecordedItemModel(this)),
      m_marks(new QlumMarkModel(*m_items, this)), m_values(new QlumRecordModel(*m_items, this)),
      m_messages(new QlumMessageBar(this)), m_summary(new QLabel), m_from(new QDateTimeEdit),
      m_to(new QDateTimeEdit)
{
    setObjectName(QStringLiteral("recordingWindow"));
    setWindowTitle(tr("Recording %1").arg(QFileInfo(path).fileName()));
    constexpr int wide = 1000, high = 600;
    resize(wide, high);
    m_summary->setObjectName(QStringLiteral("recordingSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setWordWrap(true);
    makeTables();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_messages);
    layout->addWidget(m_summary);
    layout->addWidget(makeRange());
    layout->addWidget(m_pages, 1);
    layout->addWidget(makeButtons());
    connect(m_itemTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumRecordingWindow::showCommands);
    showCommands();
    refresh();
}

QlumRecordingWindow::~QlumRecordingWindow()
{
    m_pool.reset(); // before what receives its results
}

// ---- widgets

void QlumRecordingWindow::makeTables()
{
    m_pages = new QTabWidget;
    m_pages->setObjectName(QStringLiteral("recordingPages"));
    m_pages->setAccessibleName(tr("What is in the recording"));
    m_itemTable =
        makeRecordingTable("recordedItems", tr("Items"), m_items, tr("This recording has no items."));
    m_markTable =
        makeRecordingTable("recordedMarks", tr("Events"), m_marks, tr("Nothing happened in this time."));
    m_valueTable = makeRecordingTable("recordedValues", tr("Values"), m_values,
                                      tr("Select items and press \"Show Values\"."));
    m_pages->addTab(m_itemTable, tr("&Items"));
    m_pages->addTab(m_markTable, tr("&Events"));
    m_pages->addTab(m_valueTable, tr("&Values"));
}

QWidget* QlumRecordingWindow::makeRange()
{
    auto* bar = new QWidget;
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](QDateTimeEdit* field, const char* name, const QString& text) {
        qlumFollowTimeLook(field);
        field->setCalendarPopup(true);
        qlumDescribeField(field, {QLatin1String(name), text, tr("Of the reception."), {}});
        auto* label = new QLabel(text);
        label->setBuddy(field);
        layout->addWidget(label);
        layout->addWidget(field);
        connect(field, &QDateTimeEdit::dateTimeChanged, this, [this] { m_isRangeTouched = true; });
    };
    add(m_from, "rangeFrom", tr("&From:"));
    add(m_to, "rangeTo", tr("&to:"));
    layout->addStretch(1);
    return bar;
}

QWidget* QlumRecordingWindow::makeButtons()
{
    auto* bar = new QWidget;
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto add = [&](const char* name, const QString& text, const QString& toolTip, auto act) {
        auto* button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        button->setToolTip(toolTip);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, act);
        layout->addWidget(button);
        return button;
    };
    add("refreshRecording", tr("&Read Again"), tr("For a recording that is still written."),
        &QlumRecordingWindow::refresh);
    m_show = add("showValues", tr("&Show Values"), tr("Values of the selected items in this time."),
                 &QlumRecordingWindow::showValues);
    m_trend =
        add("openInTrend", tr("Open in &Trend View"),
            tr("Plots the values of the selected items in this time."), &QlumRecordingWindow::openInTrend);
    m_export = add("exportRecording", tr("E&xport as CSV..."),
                   tr("Writes the values and events of this time, of the selected items or of all."),
                   &QlumRecordingWindow::askExport);
    layout->addStretch(1);
    add("closeRecording", tr("&Close"), tr("Closes this window."), &QDialog::accept);
    return bar;
}

void QlumRecordingWindow::showCommands()
{
    const bool hasSelection = m_itemTable->selectionModel()->hasSelection();
    const QlumToolServices* const tools = QlumToolServices::instance();
    m_show->setEnabled(hasSelection);
    m_trend->setVisible(tools != nullptr && tools->canShowSamples());
    m_trend->setEnabled(hasSelection);
    m_export->setEnabled(m_items->rowCount() > 0);
}

std::vector<recording::RecordReader::Item> QlumRecordingWindow::selectedItems() const
{
    std::vector<recording::RecordReader::Item> items;
    const auto* filter = static_cast<const QlumTableFilter*>(m_itemTable->model());
    for (const QModelIndex& index : m_itemTable->selectionModel()->selectedRows())
        items.push_back(m_items->rowAt(filter->mapToSource(index)));
    return items;
}

std::vector<recording::ItemNumber> QlumRecordingWindow::selectedNumbers() const
{
    std::vector<recording::ItemNumber> numbers;
    for (const recording::RecordReader::Item& item : selectedItems())
        numbers.push_back(item.number);
    return numbers;
}

OpcUa_DateTime QlumRecordingWindow::from() const
{
    return m_isRangeTouched ? qlumUaDateTime(m_from->dateTime()) : 0;
}

OpcUa_DateTime QlumRecordingWindow::to() const
{
    return m_isRangeTouched ? qlumUaDateTime(m_to->dateTime()) : endOfTime;
}

// ---- reading

void QlumRecordingWindow::refresh()
{
    m_messages->dismiss(QStringLiteral("read"));
    m_summary->setText(tr("Reading %1...").arg(m_path));
    const auto work = [this, path = m_path, first = from(), last = to()](QlumJob& job) {
        recording::RecordReader reader;
        Read read;
        if (!reader.open(path) || !reader.items(read.items) ||
            !reader.marks(first, last, mostMarks, read.marks))
            read.error = reader.error();
        job.post([this, read = std::move(read)] { take(read); });
    };
    m_pool->add({tr("Reading a recording")}, work);
}

void QlumRecordingWindow::take(const Read& read)
{
    if (!read.error.isEmpty()) {
        m_summary->setText(m_path);
        m_messages->tell({QlumMessage::Error, QStringLiteral("read"), tr("The recording cannot be shown."),
                          read.error, tr("&Read Again"), [this] { refresh(); }});
        return;
    }
    m_items->setItems(read.items);
    m_marks->setMarks(read.marks);
    for (QTableView* table : {m_itemTable, m_markTable})
        table->resizeColumnsToContents(); // looks at some rows only
    OpcUa_DateTime first = 0, last = 0;
    OpcUa_UInt64 records = 0;
    for (const recording::RecordReader::Item& item : read.items) {
        records += item.records;
        first = first == 0 ? item.first : item.first == 0 ? first : std::min(first, item.first);
        last = std::max(last, item.last);
    }
    const auto gaps = std::count_if(read.marks.begin(), read.marks.end(),
                                    [](const recording::Mark& mark) { return qlumIsGap(mark.kind); });
    const QString missing =
        gaps == 0 ? tr("nothing is known to be missing")
                  : tr("%n event(s) say that something may be missing", nullptr, static_cast<int>(gaps));
    m_summary->setText(tr("%1: %2 records of %n item(s); %3.", nullptr, static_cast<int>(read.items.size()))
                           .arg(m_path, QLocale().toString(static_cast<qulonglong>(records)), missing));
    if (!m_isRangeTouched && first != 0) {
        qlumSetMoment(m_from, qlumDateTime(first));
        qlumSetMoment(m_to, qlumDateTime(last).addMSecs(1)); // behind the last one
        m_isRangeTouched = false;
    }
    showCommands();
}

void QlumRecordingWindow::showValues()
{
    m_pages->setCurrentWidget(m_valueTable);
    const auto work = [this, path = m_path, items = selectedNumbers(), first = from(),
                       last = to()](QlumJob& job) {
        recording::RecordReader reader;
        std::vector<std::vector<recording::Record>> each;
        std::vector<recording::Record> all;
        const bool isDone = reader.open(path) && reader.readEach(items, first, last, mostShown + 1, each);
        for (const std::vector<recording::Record>& some : each)
            all.insert(all.end(), some.begin(),
                       some.begin() +
                           static_cast<std::ptrdiff_t>(std::min(some.size(), mostShown + 1 - all.size())));
        const bool isCut = all.size() > mostShown;
        all.resize(std::min(all.size(), mostShown));
        std::stable_sort(all.begin(), all.end(), [](const recording::Record& a, const recording::Record& b) {
            return a.received < b.received;
        });
        const QString error = isDone ? QString() : reader.error();
        job.post([this, all = std::move(all), isCut, error] {
            m_values->setRecords(all);
            m_valueTable->resizeColumnsToContents();
            if (!error.isEmpty())
                m_messages->tell({QlumMessage::Error,
                                  QStringLiteral("read"),
                                  tr("Values cannot be shown."),
                                  error,
                                  {},
                                  {}});
            else if (isCut)
                m_messages->tell({QlumMessage::Note,
                                  QStringLiteral("read"),
                                  tr("Only %1 values are shown.")
                                      .arg(QLocale().toString(static_cast<qulonglong>(mostShown))),
                                  tr("Choose a shorter time, or export them."),
                                  {},
                                  {}});
        });
    };
    m_pool->add({tr("Reading values of a recording")}, work);
}

void QlumRecordingWindow::openInTrend()
{
    const auto work = [this, path = m_path, items = selectedItems(), numbers = selectedNumbers(),
                       first = from(), last = to()](QlumJob& job) {
        recording::RecordReader reader;
        std::vector<QlumToolCurve> curves;
        std::vector<std::vector<recording::Record>> each;
        const bool isDone = reader.open(path) && reader.readEach(numbers, first, last, mostOfACurve, each);
        bool isCut = false;
        for (std::size_t i = 0; i < each.size(); ++i) {
            isCut = isCut || each[i].size() == mostOfACurve;
            curves.push_back(curveOf(items[i], each[i]));
        }
        const QString error = isDone ? QString() : reader.error();
        job.post([this, curves = std::move(curves), error, isCut] {
            QlumToolServices* const tools = QlumToolServices::instance();
            if (!error.isEmpty() || tools == nullptr || !tools->showSamples(curves))
                m_messages->tell({QlumMessage::Error,
                                  QStringLiteral("trend"),
                                  tr("The recording cannot be plotted."),
                                  error.isEmpty() ? tr("No view for curves is there.") : error,
                                  {},
                                  {}});
            else if (isCut)
                m_messages->tell({QlumMessage::Warning,
                                  QStringLiteral("trend"),
                                  tr("Long curves were cut."),
                                  tr("A curve shows up to a million values from the beginning of the time. "
                                     "Choose a shorter one."),
                                  {},
                                  {}});
        });
    };
    m_pool->add({tr("Reading curves of a recording")}, work);
}

// ---- export

void QlumRecordingWindow::askExport()
{
    const QFileInfo info(m_path);
    const QString path = QFileDialog::getSaveFileName(this, tr("Export as CSV"),
                                                      info.path() + QLatin1Char('/') +
                                                          info.completeBaseName() + QStringLiteral(".csv"),
                                                      tr("CSV files (*.csv)"));
    if (!path.isEmpty())
        exportTo(path);
}

void QlumRecordingWindow::exportTo(const QString& path)
{
    std::vector<recording::RecordReader::Item> known(m_items->rows().begin(), m_items->rows().end());
    const auto work = [this, source = m_path, path, known = std::move(known), wanted = selectedNumbers(),
                       first = from(), last = to()](QlumJob& job) {
        recording::CsvRows rows;
        for (const recording::RecordReader::Item& item : known)
            rows.addItem(item.number, item.item);
        QSaveFile file(path);
        QByteArray text = recording::CsvRows::heading();
        OpcUa_UInt64 count = 0;
        recording::RecordReader reader;
        QString error;
        if (!file.open(QIODevice::WriteOnly))
            error = file.errorString();
        else if (!reader.open(source) ||
                 !reader.visit(first, last, wanted, [&](const recording::Portion& portion) {
                     rows.append(text, portion);
                     count += portion.records.size();
                     if (text.size() >= loggerWrittenAtOnce) {
                         file.write(text); // a fault shows at the commit
                         text.clear();
                     }
                     return !job.isCancelled();
                 }))
            error = reader.error();
        file.write(text);
        if (error.isEmpty() && !job.isCancelled() && !file.commit())
            error = file.errorString();
        job.post([this, path, count, error] {
            if (error.isEmpty())
                m_messages->tell(
                    {QlumMessage::Note,
                     QStringLiteral("export"),
                     tr("%1 values were written.").arg(QLocale().toString(static_cast<qulonglong>(count))),
                     QDir::toNativeSeparators(path),
                     {},
                     {}});
            else
                m_messages->tell({QlumMessage::Error,
                                  QStringLiteral("export"),
                                  tr("%1 was not written.").arg(path),
                                  error,
                                  {},
                                  {}});
        });
    };
    m_pool->add({tr("Exporting a recording")}, work);
}
