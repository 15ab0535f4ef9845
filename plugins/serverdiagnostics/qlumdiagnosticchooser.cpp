#include <plugins/serverdiagnostics/qlumdiagnosticchooser.h>

#include <plugins/serverdiagnostics/qlumdiagnostictable.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtablefilter.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSizePolicy>
#include <QTreeView>
#include <QVBoxLayout>

QlumDiagnosticChooser::QlumDiagnosticChooser(const Names& names, QAbstractItemModel* model,
                                             QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_model(model), m_filter(new QlumTableFilter(this)), m_endedText(names.ended)
{
    setObjectName(names.object);
    m_filter->setSourceModel(model);
    m_filter->setSortRole(qlumDiagnosticSortRole);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 0);
    layout->addWidget(makeBar(names));
    m_note = new QLabel;
    m_note->setObjectName(names.object + QStringLiteral("Note"));
    m_note->setTextFormat(Qt::PlainText);
    m_note->setWordWrap(true);
    m_note->hide();
    layout->addWidget(m_note);
    makeTable(names, state);
    layout->addWidget(m_table, 1);
}

QWidget* QlumDiagnosticChooser::makeBar(const Names& names)
{
    auto* bar = new QlumWrappingBar;
    auto* label = new QLabel(names.label);
    m_list = new QComboBox;
    m_list->setModel(m_model);
    m_list->setModelColumn(0);
    m_list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_list->setMinimumContentsLength(12);
    m_list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    qlumDescribeField(m_list, {names.object + QStringLiteral("List"), names.label, {}, {}});
    m_refresh = new QPushButton(names.refresh);
    m_refresh->setObjectName(names.object + QStringLiteral("Refresh"));
    m_refresh->setToolTip(tr("Read the list from the server again"));
    m_refresh->setWhatsThis(m_refresh->toolTip());
    m_reading = new QLabel(tr("reading..."));
    m_reading->setObjectName(names.object + QStringLiteral("Reading"));
    m_text = new QLineEdit;
    m_text->setPlaceholderText(tr("Filter"));
    m_text->setClearButtonEnabled(true);
    qlumDescribeField(m_text,
                      {names.object + QStringLiteral("Filter"), tr("Text to filter the table by"), {}, {}});
    connect(m_refresh, &QPushButton::clicked, this, &QlumDiagnosticChooser::refreshClicked);
    connect(
        m_text, &QLineEdit::textChanged, this, [this](const QString& text) { m_filter->setText(text); });
    connect(m_list, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this](int row) { userChose(m_model->index(row, 0).data(qlumDiagnosticKeyRole).toString()); });
    bar->add(label, m_list);
    bar->add(m_refresh);
    bar->add(m_text);
    bar->add(m_reading);
    QSizePolicy place = m_reading->sizePolicy();
    place.setRetainSizeWhenHidden(true);
    m_reading->setSizePolicy(place);
    m_reading->hide();
    return bar;
}

void QlumDiagnosticChooser::makeTable(const Names& names, QlumViewState& state)
{
    m_table = new QTreeView;
    m_table->setObjectName(names.object + QStringLiteral("Table"));
    m_table->setAccessibleName(names.table);
    m_table->setRootIsDecorated(false);
    m_table->setUniformRowHeights(true);
    m_table->setAlternatingRowColors(true);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_table->setSortingEnabled(true);
    m_table->setModel(m_filter);
    m_table->sortByColumn(-1, Qt::AscendingOrder); // the server's order until the user wants another
    m_table->header()->setDefaultSectionSize(fontMetrics().averageCharWidth() * 16);
    m_table->header()->resizeSection(0, fontMetrics().averageCharWidth() * 30);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& row) {
                if (row.isValid())
                    userChose(row.siblingAtColumn(0).data(qlumDiagnosticKeyRole).toString());
            });
    qlumMakeTable(m_table, {names.empty, names.object, &state, names.object});
}

QModelIndex QlumDiagnosticChooser::rowOf(const QString& key) const
{
    if (key.isEmpty())
        return {};
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (const QModelIndex index = m_model->index(row, 0); index.data(qlumDiagnosticKeyRole) == key)
            return index;
    return {};
}

void QlumDiagnosticChooser::show(const QModelIndex& row)
{
    const QScopedValueRollback showing(m_isShowing, true);
    m_list->setCurrentIndex(row.isValid() ? row.row() : -1);
    const QModelIndex shown = m_filter->mapFromSource(row);
    if (shown.row() != m_table->currentIndex().row() || !shown.isValid())
        m_table->setCurrentIndex(shown);
}

void QlumDiagnosticChooser::userChose(const QString& key)
{
    if (m_isShowing || key == m_key)
        return;
    choose(key);
    emit chosen(m_key);
}

void QlumDiagnosticChooser::choose(const QString& key)
{
    const QModelIndex row = rowOf(key);
    m_key = row.isValid() ? key : QString();
    m_hasEnded = false;
    show(row);
    showNote();
}

bool QlumDiagnosticChooser::update(const std::function<void()>& change)
{
    {
        const QScopedValueRollback showing(m_isShowing, true); // rows that go take the selection along
        change();
    }
    const bool wasChosen = !m_key.isEmpty();
    if (!wasChosen) {
        show(QModelIndex());
        return true;
    }
    choose(m_key);
    m_hasEnded = m_key.isEmpty();
    return !m_hasEnded;
}

void QlumDiagnosticChooser::setReading(bool isReading)
{
    m_reading->setVisible(isReading);
}

void QlumDiagnosticChooser::setOnline(bool isOnline)
{
    m_refresh->setEnabled(isOnline);
}

void QlumDiagnosticChooser::setNote(const QString& note)
{
    m_noteText = note;
    showNote();
}

void QlumDiagnosticChooser::showNote()
{
    const QString text = m_hasEnded ? m_endedText + QLatin1Char(' ') + m_noteText : m_noteText;
    m_note->setText(text.trimmed());
    m_note->setVisible(!m_note->text().isEmpty());
}
