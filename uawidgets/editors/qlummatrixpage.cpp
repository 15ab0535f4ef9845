#include <uawidgets/editors/qlummatrixpage.h>

#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementcell.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/editors/qlumpastereport.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumwaitcursor.h>
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

constexpr int cellMargins = 16;

// What has no more than a few digits.
bool isShort(OpcUa_BuiltInType type)
{
    return type >= OpcUaType_Boolean && type <= OpcUaType_UInt32;
}
} // namespace

QlumMatrixPage::QlumMatrixPage(const QlumValueContext& context, QWidget* parent)
    : QlumPartsPage(context, parent), m_model(new QlumMatrixModel(context, this)),
      m_view(new QTableView(this)), m_sliceRow(new QWidget(this))
{
    summary()->setObjectName(QStringLiteral("matrixSummary"));
    auto* slices = new QHBoxLayout(m_sliceRow);
    slices->setContentsMargins(0, 0, 0, 0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(summary());
    layout->addWidget(m_sliceRow);
    layout->addWidget(messages());
    layout->addWidget(makeActions());
    layout->addWidget(m_view, 1);
    makeView();
    makeSlices();
    connect(m_model, &QlumMatrixModel::edited, this, &QlumMatrixPage::partsChanged);
    showAround();
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
    m_view->setModel(m_model);
    const auto contextOf = [this](const QModelIndex&) { return m_model->elementContext(); };
    showElementsIn(m_view, new QlumPartDelegate(contextOf, this), QStringLiteral("matrix"),
                   tr("The matrix has no elements."));
    if (!isShort(m_model->elementContext().builtInType))
        m_view->horizontalHeader()->setDefaultSectionSize(
            fontMetrics().horizontalAdvance(QStringLiteral("-2.2250738585072014e-308")) + cellMargins);
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
    takeOpen();
    std::vector<int> slice;
    for (const QSpinBox* box : m_slices)
        slice.push_back(box->value());
    m_model->setSlice(slice);
}

// ---- value page

void QlumMatrixPage::setValue(const UaVariant& value)
{
    m_model->setValue(value);
    makeSlices();
    partsReset();
}

bool QlumMatrixPage::value(UaVariant& value) const
{
    if (!takeOpen())
        return false;
    const UaVariant matrix = m_model->value();
    if (matrix.isNull())
        return false;
    value = matrix;
    return true;
}

void QlumMatrixPage::setReadOnly(bool readOnly)
{
    m_model->setReadOnly(readOnly);
    showAround();
}

bool QlumMatrixPage::arePartsModified() const
{
    return m_model->isModified();
}

QlumValueCheck QlumMatrixPage::checkParts() const
{
    const std::vector<OpcUa_Int32> lengths(m_model->dimensions().begin(), m_model->dimensions().end());
    return qlumCheckGiven(m_model->elements(),
                          UaArray<OpcUa_Int32>(static_cast<OpcUa_Int32>(lengths.size()), lengths.data()),
                          context());
}

QString QlumMatrixPage::placeOf(const QModelIndex& index) const
{
    return m_model->placeOf(index);
}

// ---- what is shown around the elements

void QlumMatrixPage::showAround()
{
    updateHead();
    updateActions();
}

void QlumMatrixPage::updateHead()
{
    QStringList lengths;
    for (const int length : m_model->dimensions())
        lengths.append(QString::number(length));
    summary()->setText(
        tr("Matrix of %1 elements of type %2")
            .arg(lengths.join(QStringLiteral(" x ")), elementTypeName(m_model->elements().type())));
}

void QlumMatrixPage::updateActions()
{
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
    messages()->dismiss();
    const QlumMessage message = qlumPasteMessage(report, QString());
    if (!message.what.isEmpty())
        messages()->tell(message);
}

void QlumMatrixPage::sltOpen(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    Putter put;
    if (!m_model->isReadOnly())
        put = [this](const QModelIndex& place, const UaVariant& part) {
            return m_model->setData(place, QVariant::fromValue(part), QlumMatrixModel::ValueRole);
        };
    openPart(index, m_model->elementContext(), index.data(QlumMatrixModel::ValueRole).value<UaVariant>(),
             put);
}
