#include <plugins/attributes/qlumattributeview.h>

#include <app/api/qlumactiontable.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/attributes/qlumattributecopy.h>
#include <plugins/attributes/qlumattributedelegate.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <uawidgets/qlumnodecommands.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/table/qlumemptytext.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemDelegate>
#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QIcon>
#include <QKeySequence>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QPoint>
#include <QRegularExpression>
#include <QRegularExpressionMatch>
#include <QScrollBar>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <memory>
#include <vector>

namespace {
enum CopyId {
    CopyCell,
    CopyRow,
    CopyValue,
    CopyPath,
    CopyNodeId,
    CopyJson,
    CopyAllText,
    CopyAllCsv,
    CopyAllJson
};

constexpr QlumActionRow copyRows[] = {
    {CopyCell, "copyCell", QT_TRANSLATE_NOOP("QlumAttributeView", "&Copy"), "copy.png", QKeySequence::Copy,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy the text of the cell"), "", Qt::WidgetShortcut},
    {CopyRow, "copyRow", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy &Row"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy the name and the value of the selected row"), ""},
    {CopyValue, "copyValue", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy &Value"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy the whole value of the row"), ""},
    {CopyPath, "copyPath", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy &Path"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy the names that lead to the row"), ""},
    {CopyNodeId, "copyNodeId", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy &Node Id"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy the id of the node that is shown"), ""},
    {CopyJson, "copyJson", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy Value as &JSON"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy the value of the row in a form that can be read back"), ""},
    {CopyAllText, "copyAllText", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy &All as Text"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy all rows, indented"), ""},
    {CopyAllCsv, "copyAllCsv", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy All as &CSV"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy all rows as comma separated values"), ""},
    {CopyAllJson, "copyAllJson", QT_TRANSLATE_NOOP("QlumAttributeView", "Copy All as J&SON"), "", qlumNoKey,
     QT_TRANSLATE_NOOP("QlumAttributeView", "Copy all attributes in a form that can be read back"), ""},
};

constexpr int nameWidth = 190;
const QLatin1Char separator('/');

// The text as it is, not as it is cut for the view.
QString fullText(const QModelIndex& index)
{
    const int role = index.column() == QlumAttributeModel::ValueColumn ? Qt::EditRole : Qt::DisplayRole;
    return index.data(role).toString();
}

void copyText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
} // namespace

QlumAttributeView::QlumAttributeView(QlumAttributeModel* model, QWidget* parent)
    : QTreeView(parent), m_attributes(model),
      m_delegate(new QlumAttributeDelegate(*model, this)), m_expanded{QStringLiteral("Value")}
{
    setObjectName(QStringLiteral("attributeView"));
    setAccessibleName(tr("Attributes"));
    setModel(model);
    setItemDelegate(m_delegate);
    connect(m_delegate, &QlumAttributeDelegate::refused, this, &QlumAttributeView::entryRefused);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    setTextElideMode(Qt::ElideRight);
    header()->resizeSection(QlumAttributeModel::NameColumn, nameWidth);
    m_state = std::make_unique<QlumViewState>(QStringLiteral("QlumAttributeView"), nullptr);
    createActions();
    qlumMakeTable(this, {{}, tr("attributes"), m_state.get(), QStringLiteral("header"), true});
    m_empty = new QlumEmptyText(this, tr("Select a node in the address space window."));
    new QlumNodeCommands(this, [this] {
        const QlumToolNode node = m_attributes->nodeIn(currentIndex());
        return node.nodeId.isNull() ? QlumToolNodes() : QlumToolNodes{node};
    });
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &QlumAttributeView::saveState);
    connect(model, &QAbstractItemModel::modelReset, this, &QlumAttributeView::restoreState);
    connect(model, &QlumAttributeModel::standingChanged, this, &QlumAttributeView::leaveEditor);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &QlumAttributeView::fetchVisible);
}

QlumAttributeView::~QlumAttributeView() = default;

void QlumAttributeView::setEmptyText(const QString& text)
{
    m_empty->setText(text);
}

// By a key the row's value is meant, wherever in the row the user is.
bool QlumAttributeView::edit(const QModelIndex& cell, EditTrigger trigger, QEvent* event)
{
    const QModelIndex index =
        trigger == EditKeyPressed ? cell.siblingAtColumn(QlumAttributeModel::ValueColumn) : cell;
    if (trigger == DoubleClicked && index.column() == QlumAttributeModel::ValueColumn &&
        showInDocument(index))
        return false;
    const bool begun = QTreeView::edit(index, trigger, event);
    if (begun && isEditing()) // it also says yes to rows without an editor
        m_edited = index;
    else if (trigger == DoubleClicked || trigger == EditKeyPressed)
        editElsewhere(index, trigger);
    return begun;
}

// Images are better looked at than typed.
bool QlumAttributeView::showInDocument(const QModelIndex& index)
{
    QlumToolServices* const tools = QlumToolServices::instance();
    const QlumTypedValue part = m_attributes->rowValue(index);
    if (tools == nullptr || !tools->canShowInDocument(part.value, part.hint.dataTypeId))
        return false;
    bool isWhole = true; // no part, and of no other attribute: those have their id
    for (QModelIndex row = index.siblingAtColumn(0); row.isValid() && isWhole; row = row.parent())
        isWhole = m_attributes->nodeAt(row)->attributeId() == 0 &&
                  m_attributes->nodeAt(row)->step().kind == QlumValueStep::None;
    QlumToolNode origin;
    if (isWhole)
        origin = {m_attributes->serverId(), m_attributes->nodeId(), OpcUa_NodeClass_Variable, {}, {}};
    return tools->showValue(m_attributes->serverId(), part.value, part.hint.dataTypeId, origin);
}

// What has no editor in a cell gets one in a window: by a double click only where that opens no rows.
void QlumAttributeView::editElsewhere(const QModelIndex& index, EditTrigger trigger)
{
    const bool isPart = index.column() == QlumAttributeModel::ValueColumn && state() != EditingState;
    const bool opens = m_attributes->hasChildren(index.siblingAtColumn(0));
    if (!isPart || (opens && trigger == DoubleClicked))
        return;
    if (const QString lock = m_attributes->lock(index); !lock.isEmpty())
        emit editRefused(lock);
    else if (!m_attributes->nodeAt(index)->isWritable())
        return;
    else if (m_attributes->partWriter(index))
        emit windowWanted(index);
    else
        emit editRefused(tr("It is a part of the row above, and changes with it."));
}

void QlumAttributeView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint)
{
    if (hint != QAbstractItemDelegate::RevertModelCache && !m_delegate->fault(editor).isEmpty())
        return;
    QTreeView::closeEditor(editor, hint);
    emit editingEnded();
}

// What is typed for one node must not be written to another. One that is only cut off for a while keeps it.
void QlumAttributeView::leaveEditor()
{
    QWidget* editor = isEditing() ? indexWidget(m_edited) : nullptr;
    if (editor && m_attributes->standing() == QlumAttributeModel::Standing::Left)
        closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
}

// ---- copying

void QlumAttributeView::createActions()
{
    setContextMenuPolicy(Qt::ActionsContextMenu);
    const QlumActionTable actions(copyRows, "QlumAttributeView", this);
    const auto on = [this, &actions](CopyId id, void (QlumAttributeView::*slot)()) {
        connect(actions[id], &QAction::triggered, this, slot);
    };
    on(CopyCell, &QlumAttributeView::sltCopyCell);
    on(CopyRow, &QlumAttributeView::sltCopyRow);
    on(CopyValue, &QlumAttributeView::sltCopyValue);
    on(CopyPath, &QlumAttributeView::sltCopyPath);
    on(CopyNodeId, &QlumAttributeView::sltCopyNodeId);
    on(CopyJson, &QlumAttributeView::sltCopyJson);
    on(CopyAllText, &QlumAttributeView::sltCopyAllText);
    on(CopyAllCsv, &QlumAttributeView::sltCopyAllCsv);
    on(CopyAllJson, &QlumAttributeView::sltCopyAllJson);
    addActions(actions.list({CopyCell, CopyRow, CopyValue, CopyJson, CopyAllText, CopyAllCsv, CopyAllJson,
                             CopyPath, CopyNodeId}));
}

void QlumAttributeView::sltCopyCell()
{
    if (currentIndex().isValid())
        copyText(fullText(currentIndex()));
}

void QlumAttributeView::sltCopyRow()
{
    const QModelIndex index = currentIndex();
    if (index.isValid())
        copyText(fullText(index.siblingAtColumn(QlumAttributeModel::NameColumn)) + QLatin1Char('\t') +
                 fullText(index.siblingAtColumn(QlumAttributeModel::ValueColumn)));
}

void QlumAttributeView::sltCopyValue()
{
    if (currentIndex().isValid())
        copyText(fullText(currentIndex().siblingAtColumn(QlumAttributeModel::ValueColumn)));
}

void QlumAttributeView::sltCopyPath()
{
    if (currentIndex().isValid())
        copyText(pathOf(currentIndex()));
}

void QlumAttributeView::sltCopyNodeId()
{
    if (m_attributes->standing() != QlumAttributeModel::Standing::Left)
        copyText(toQString(m_attributes->nodeId().toXmlString()));
}

void QlumAttributeView::sltCopyJson()
{
    if (currentIndex().isValid())
        copyText(qlumRowAsJson(*m_attributes, currentIndex()));
}

void QlumAttributeView::sltCopyAllText()
{
    copyText(qlumAllAsText(*m_attributes));
}

void QlumAttributeView::sltCopyAllCsv()
{
    copyText(qlumAllAsCsv(*m_attributes));
}

void QlumAttributeView::sltCopyAllJson()
{
    copyText(qlumAllAsJson(*m_attributes));
}

QString QlumAttributeView::pathOf(const QModelIndex& index) const
{
    QString path;
    for (QModelIndex current = index; current.isValid(); current = current.parent()) {
        const QString name = current.siblingAtColumn(QlumAttributeModel::NameColumn).data().toString();
        path = path.isEmpty() ? name : name + separator + path;
    }
    return path;
}

// ---- from one node to the next

void QlumAttributeView::saveState()
{
    m_scrollPosition = verticalScrollBar()->value();
    m_current = pathOf(currentIndex());
    // Only what is there can have been closed.
    std::vector<QModelIndex> open{QModelIndex()};
    while (!open.empty()) {
        const QModelIndex parent = open.back();
        open.pop_back();
        for (int row = 0; row < m_attributes->rowCount(parent); ++row) {
            const QModelIndex index = m_attributes->index(row, 0, parent);
            if (!m_attributes->hasChildren(index))
                continue;
            if (isExpanded(index)) {
                m_expanded.insert(pathOf(index));
                open.push_back(index);
            } else {
                m_expanded.remove(pathOf(index));
            }
        }
    }
}

void QlumAttributeView::restoreState()
{
    restoreBranch(QModelIndex(), QString());
    verticalScrollBar()->setValue(m_scrollPosition);
}

void QlumAttributeView::restoreBranch(const QModelIndex& parent, const QString& path)
{
    for (int row = 0; row < m_attributes->rowCount(parent); ++row) {
        const QModelIndex index = m_attributes->index(row, 0, parent);
        const QString name = index.data().toString();
        const QString own = path.isEmpty() ? name : path + separator + name;
        if (own == m_current)
            setCurrentIndex(index);
        if (!m_expanded.contains(own) || !m_attributes->hasChildren(index))
            continue;
        // elements of arrays come in portions
        const int wanted = lastWantedElement(own);
        while (m_attributes->rowCount(index) <= wanted && m_attributes->canFetchMore(index))
            m_attributes->fetchMore(index);
        expand(index);
        restoreBranch(index, own);
    }
}

int QlumAttributeView::lastWantedElement(const QString& array) const
{
    static const QRegularExpression element(QStringLiteral("^/\\[(\\d{1,6})\\]"));
    int last = -1;
    const auto look = [&](const QString& path) {
        if (!path.startsWith(array))
            return;
        if (const QRegularExpressionMatch match = element.match(path.mid(array.size())); match.hasMatch())
            last = std::max(last, match.captured(1).toInt());
    };
    look(m_current);
    for (const QString& path : m_expanded)
        look(path);
    return last;
}

// An array's last row in sight calls for the next ones.
void QlumAttributeView::fetchVisible()
{
    const int bottom = viewport()->height();
    QModelIndex index = indexAt(QPoint(0, 0));
    std::vector<QPersistentModelIndex> wanting;
    for (; index.isValid() && visualRect(index).top() < bottom; index = indexBelow(index)) {
        const QModelIndex parent = index.parent();
        if (m_attributes->canFetchMore(parent) && index.row() == m_attributes->rowCount(parent) - 1)
            wanting.emplace_back(parent);
    }
    for (const QPersistentModelIndex& parent : wanting)
        m_attributes->fetchMore(parent);
}
