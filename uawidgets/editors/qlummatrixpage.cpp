#include <uawidgets/editors/qlummatrixpage.h>

#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementcell.h>
#include <uawidgets/editors/qlumopenpart.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/editors/qlumpastereport.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumwaitcursor.h>
#include <uawidgets/table/qlumtable.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QItemSelectionRange>
#include <QKeySequence>
#include <QLabel>
#include <QLayoutItem>
#include <QObject>
#include <QPersistentModelIndex>
#include <QSpinBox>
#include <QStringList>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumMatrixPage", text)

namespace {
enum Id { Fill, Copy, Paste, Open };

constexpr Qt::ShortcutContext own = Qt::WidgetShortcut;
constexpr QlumActionRow matrixRows[] = {
    {Fill, "matrixFill", TEXT("&Fill"), "", qlumNoKey,
     TEXT("Give all selected cells the value of the current one"),
     TEXT("<b>Fill</b><br>Gives all selected cells the value of the current one."), own},
    {Copy, "matrixCopy", TEXT("&Copy"), "copy.png", QKeySequence::Copy, TEXT("Copy the selected cells"),
     TEXT("<b>Copy</b><br>Puts the selected cells on the clipboard as spreadsheets take them."), own},
    {Paste, "matrixPaste", TEXT("&Paste"), "", QKeySequence::Paste,
     TEXT("Paste cells, from the first selected one on"),
     TEXT("<b>Paste</b><br>Takes the cells that were copied in a spreadsheet, from the first selected cell "
          "on. The matrix keeps its shape."),
     own},
    {Open, "matrixOpen", TEXT("&Open..."), "edit.png", qlumNoKey,
     TEXT("Edit the element in a window of its own"),
     TEXT("<b>Open</b><br>Shows the element with all its fields in a window of its own."), own},
};
} // namespace

QlumMatrixPage::QlumMatrixPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_model(new QlumMatrixModel(context, this)),
      m_delegate(
          new QlumPartDelegate([this](const QModelIndex&) { return m_model->elementContext(); }, this)),
      m_messages(new QlumMessageBar(this)), m_view(new QTableView(this)), m_summary(new QLabel(this)),
      m_sliceRow(new QWidget(this))
{
    m_summary->setObjectName(QStringLiteral("matrixSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    auto* slices = new QHBoxLayout(m_sliceRow);
    slices->setContentsMargins(0, 0, 0, 0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_summary);
    layout->addWidget(m_sliceRow);
    layout->addWidget(m_messages);
    layout->addWidget(makeActions());
    layout->addWidget(m_view, 1);
    makeView();
    setFocusProxy(m_view);
    connect(m_model, &QlumMatrixModel::edited, this, [this] {
        m_check.reset();
        updateActions();
        emit edited();
    });
    connect(m_delegate, &QlumPartDelegate::typing, this, &QlumMatrixPage::edited);
    connect(m_delegate, &QlumPartDelegate::refused, this, [this](const QString& why) {
        QlumMessage message;
        message.topic = QStringLiteral("entry");
        message.what = why;
        m_messages->tell(message);
    });
    updateHead();
    updateActions();
}

QToolBar* QlumMatrixPage::makeActions()
{
    m_actions = QlumActionTable(matrixRows, "QlumMatrixPage", this);
    m_actions[Fill]->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    connect(m_actions[Fill], &QAction::triggered, this, &QlumMatrixPage::sltFill);
    connect(m_actions[Copy], &QAction::triggered, this, &QlumMatrixPage::sltCopy);
    connect(m_actions[Paste], &QAction::triggered, this, &QlumMatrixPage::sltPaste);
    connect(m_actions[Open], &QAction::triggered, this, [this] { sltOpen(m_view->currentIndex()); });
    auto* tools = new QToolBar(this);
    tools->setObjectName(QStringLiteral("matrixTools"));
    tools->setAccessibleName(tr("Matrix"));
    tools->addActions(m_actions.list({Fill, Copy, Paste, Open}));
    m_view->addActions(m_actions.list({Fill, Copy, Paste, Open}));
    return tools;
}

void QlumMatrixPage::makeView()
{
    m_view->setObjectName(QStringLiteral("matrixView"));
    m_view->setAccessibleName(tr("Elements"));
    m_view->setModel(m_model);
    m_view->setItemDelegate(m_delegate);
    m_view->setWordWrap(false);
    m_view->setTabKeyNavigation(false);
    m_view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    QlumTableOptions options;
    options.emptyText = tr("The matrix has no elements.");
    options.fileName = QStringLiteral("matrix");
    options.copiesItself = true;
    qlumMakeTable(m_view, options);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumMatrixPage::updateActions);
    connect(m_view, &QAbstractItemView::activated, this, [this](const QModelIndex& index) {
        if (m_model->flags(index) & Qt::ItemIsEditable)
            m_view->edit(index);
        else
            sltOpen(index);
    });
}

// One number for each dimension before those of the grid.
void QlumMatrixPage::makeSlices()
{
    const std::vector<int>& lengths = m_model->dimensions();
    for (QObject* old : m_sliceRow->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        delete old;
    m_slices.clear();
    auto* row = static_cast<QHBoxLayout*>(m_sliceRow->layout());
    while (QLayoutItem* rest = row->takeAt(0))
        delete rest;
    for (std::size_t i = 0; i + 2 < lengths.size(); ++i) {
        auto* caption = new QLabel(tr("Dimension %1:").arg(i + 1), m_sliceRow);
        auto* box = new QSpinBox(m_sliceRow);
        box->setObjectName(QStringLiteral("matrixSlice%1").arg(i + 1));
        box->setAccessibleName(tr("Dimension %1").arg(i + 1));
        box->setToolTip(tr("The index in this dimension of what the grid shows"));
        box->setRange(0, std::max(0, lengths[i] - 1));
        box->setSuffix(tr(" (0 to %1)").arg(box->maximum()));
        caption->setBuddy(box);
        row->addWidget(caption);
        row->addWidget(box);
        connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &QlumMatrixPage::showSlice);
        m_slices.push_back(box);
    }
    row->addStretch(1);
    m_sliceRow->setVisible(!m_slices.empty());
}

void QlumMatrixPage::showSlice()
{
    m_delegate->commitOpen();
    std::vector<int> slice;
    for (const QSpinBox* box : m_slices)
        slice.push_back(box->value());
    m_model->setSlice(slice);
}

// ---- value page

void QlumMatrixPage::setValue(const UaVariant& value)
{
    m_model->setValue(value);
    m_check.reset();
    m_messages->dismiss();
    makeSlices();
    updateHead();
    updateActions();
}

bool QlumMatrixPage::value(UaVariant& value) const
{
    if (!fault().isEmpty())
        return false;
    m_delegate->commitOpen();
    const UaVariant matrix = m_model->value();
    if (matrix.isNull())
        return false;
    value = matrix;
    return true;
}

bool QlumMatrixPage::isModified() const
{
    return m_model->isModified() || m_delegate->isOpenChanged();
}

QString QlumMatrixPage::fault() const
{
    const QString why = m_delegate->openFault();
    return why.isEmpty() ? why : tr("%1: %2").arg(m_model->placeOf(m_view->currentIndex()), why);
}

const QlumValueCheck& QlumMatrixPage::check() const
{
    if (!m_check) {
        const std::vector<OpcUa_Int32> lengths(m_model->dimensions().begin(), m_model->dimensions().end());
        m_check = qlumCheckGiven(
            m_model->elements(),
            UaArray<OpcUa_Int32>(static_cast<OpcUa_Int32>(lengths.size()), lengths.data()), m_context);
    }
    return *m_check;
}

QString QlumMatrixPage::remark() const
{
    QlumValueCheck all = check();
    all.add(m_delegate->openCheck());
    return all.text();
}

QString QlumMatrixPage::refusal() const
{
    QlumValueCheck all = check();
    all.add(m_delegate->openCheck());
    return all.refused;
}

void QlumMatrixPage::setReadOnly(bool readOnly)
{
    m_model->setReadOnly(readOnly);
    updateActions();
}

void QlumMatrixPage::updateHead()
{
    UaVariant one;
    static_cast<void>(one.attachArray(m_model->elements().type(), 0, nullptr)); // needs no memory
    QString type = qlumTypeTextOf(one, m_context);
    type.truncate(type.lastIndexOf(QLatin1Char('[')));
    QStringList lengths;
    for (const int length : m_model->dimensions())
        lengths.append(QString::number(length));
    m_summary->setText(tr("Matrix of %1 elements of type %2").arg(lengths.join(QStringLiteral(" x ")), type));
}

void QlumMatrixPage::updateActions()
{
    if (!m_view->selectionModel())
        return; // not made yet
    const QItemSelection& selection = m_view->selectionModel()->selection();
    const bool canEdit = !m_model->isReadOnly() && !selection.isEmpty();
    m_actions[Fill]->setEnabled(canEdit);
    m_actions[Paste]->setEnabled(canEdit);
    m_actions[Copy]->setEnabled(!selection.isEmpty());
    m_actions[Open]->setEnabled(m_view->currentIndex().isValid());
}

// ---- editing

std::vector<QlumMatrixModel::Block> QlumMatrixPage::selected() const
{
    std::vector<QlumMatrixModel::Block> blocks;
    for (const QItemSelectionRange& range : m_view->selectionModel()->selection())
        blocks.push_back({range.top(), range.left(), range.height(), range.width()});
    return blocks;
}

void QlumMatrixPage::sltFill()
{
    const QModelIndex current = m_view->currentIndex();
    if (!current.isValid())
        return;
    const auto value = current.data(QlumMatrixModel::ValueRole).value<UaVariant>();
    for (const QlumMatrixModel::Block& block : selected())
        m_model->fill(block, value);
}

// Several blocks are copied as the one that holds them all.
void QlumMatrixPage::sltCopy()
{
    const QlumWaitCursor wait;
    const std::vector<QlumMatrixModel::Block> blocks = selected();
    if (blocks.empty())
        return;
    QItemSelectionRange all = m_view->selectionModel()->selection().front();
    int top = all.top(), left = all.left(), bottom = all.bottom(), right = all.right();
    for (const QlumMatrixModel::Block& block : blocks) {
        top = std::min(top, block.row);
        left = std::min(left, block.column);
        bottom = std::max(bottom, block.row + block.rows - 1);
        right = std::max(right, block.column + block.columns - 1);
    }
    QGuiApplication::clipboard()->setText(m_model->textOf({top, left, bottom - top + 1, right - left + 1}));
}

void QlumMatrixPage::sltPaste()
{
    const std::vector<QlumMatrixModel::Block> blocks = selected();
    if (m_model->isReadOnly() || blocks.empty())
        return;
    const QlumWaitCursor wait;
    const QlumPasteReport report = m_model->paste(blocks.front().row, blocks.front().column,
                                                  qlumTabbedRows(QGuiApplication::clipboard()->text()));
    m_messages->dismiss();
    const QlumMessage message = qlumPasteMessage(report, QString());
    if (!message.what.isEmpty())
        m_messages->tell(message);
}

void QlumMatrixPage::sltOpen(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    QlumValueDialog::Taker take;
    if (!m_model->isReadOnly())
        take = [this, place = QPersistentModelIndex(index)](const UaVariant& part) {
            if (!place.isValid())
                return tr("The matrix has changed meanwhile, and this element is gone.");
            return m_model->setData(place, QVariant::fromValue(part), QlumMatrixModel::ValueRole)
                       ? QString()
                       : tr("It is no value of the matrix's type.");
        };
    qlumOpenPart(this, m_model->elementContext(), m_model->placeOf(index),
                 index.data(QlumMatrixModel::ValueRole).value<UaVariant>(), take);
}
