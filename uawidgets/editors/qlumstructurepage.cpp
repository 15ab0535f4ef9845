#include <uawidgets/editors/qlumstructurepage.h>

#include <app/api/qlumdisplaytext.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumopenpart.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/editors/qlumtypedelegate.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QPersistentModelIndex>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <vector>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumStructurePage", text)

namespace {
enum Id { Open };

constexpr QlumActionRow structureRows[] = {
    {Open, "structureOpen", TEXT("&Open..."), "edit.png", qlumNoKey,
     TEXT("Edit the field in a window of its own"),
     TEXT("<b>Open</b><br>Shows the field in a window of its own: arrays with all their elements, long "
          "texts, other structures."),
     Qt::WidgetShortcut},
};

constexpr int nameWidth = 200;
constexpr int valueWidth = 240;
} // namespace

QlumStructurePage::QlumStructurePage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_model(new QlumStructureModel(context, this)),
      m_delegate(new QlumTypeDelegate(*m_model, this)), m_messages(new QlumMessageBar(this)),
      m_view(new QTreeView(this)), m_summary(new QLabel(this)), m_type(new QToolButton(this)),
      m_actions(structureRows, "QlumStructurePage", this)
{
    m_summary->setObjectName(QStringLiteral("structureSummary"));
    m_summary->setTextFormat(Qt::PlainText);
    m_summary->setWordWrap(true);
    m_type->setObjectName(QStringLiteral("structureType"));
    m_type->setText(tr("Other Type"));
    m_type->setToolTip(tr("Begin with an empty value of another type"));
    m_type->setPopupMode(QToolButton::InstantPopup);
    auto* open = new QToolButton(this);
    open->setDefaultAction(m_actions[Open]);
    open->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto* head = new QHBoxLayout;
    head->addWidget(m_summary, 1);
    head->addWidget(m_type);
    head->addWidget(open);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(head);
    layout->addWidget(m_messages);
    layout->addWidget(m_view, 1);
    makeView();
    setFocusProxy(m_view);

    connect(m_model, &QlumStructureModel::edited, this, [this] {
        updateHead();
        updateActions();
        emit edited();
    });
    connect(m_delegate, &QlumPartDelegate::typing, this, &QlumStructurePage::edited);
    connect(
        m_delegate, &QlumPartDelegate::refused, this,
        [this](const QString& why) {
            QlumMessage message;
            message.topic = QStringLiteral("entry");
            message.what = why;
            m_messages->tell(message);
        });
    connect(m_actions[Open], &QAction::triggered, this, [this] { sltOpen(m_view->currentIndex()); });
    updateHead();
    updateActions();
}

void QlumStructurePage::makeView()
{
    m_view->setObjectName(QStringLiteral("structureView"));
    m_view->setAccessibleName(tr("Fields"));
    m_view->setModel(m_model);
    m_view->setItemDelegate(m_delegate);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setExpandsOnDoubleClick(false);
    m_view->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_view->header()->resizeSection(QlumStructureModel::NameColumn, nameWidth);
    m_view->header()->resizeSection(QlumStructureModel::ValueColumn, valueWidth);
    m_view->addAction(m_actions[Open]);
    QlumTableOptions options;
    options.emptyText = tr("There are no fields.");
    options.fileName = QStringLiteral("structure");
    qlumMakeTable(m_view, options);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &QlumStructurePage::updateActions);
    connect(m_view, &QAbstractItemView::activated, this, [this](const QModelIndex& index) {
        const QModelIndex value = index.siblingAtColumn(QlumStructureModel::ValueColumn);
        const QModelIndex edited = index.column() == QlumStructureModel::TypeColumn ? index : value;
        if (m_model->flags(edited) & Qt::ItemIsEditable) {
            m_view->setCurrentIndex(edited);
            m_view->edit(edited);
        } else if (m_model->hasChildren(index.siblingAtColumn(0))) {
            m_view->setExpanded(index.siblingAtColumn(0), !m_view->isExpanded(index.siblingAtColumn(0)));
        } else {
            sltOpen(index);
        }
    });
}

// ---- value page

void QlumStructurePage::setValue(const UaVariant& value)
{
    m_model->setValue(value);
    m_messages->dismiss();
    updateHead();
    updateActions();
    fillTypes();
}

bool QlumStructurePage::value(UaVariant& value) const
{
    if (!m_delegate->openFault().isEmpty())
        return false;
    m_delegate->commitOpen();
    QString why;
    return m_model->value(value, why);
}

bool QlumStructurePage::isModified() const
{
    return m_model->isModified() || m_delegate->isOpenChanged();
}

QString QlumStructurePage::fault() const
{
    const QString why = m_delegate->openFault();
    return why.isEmpty() ? why : tr("%1: %2").arg(m_model->pathOf(m_view->currentIndex()), why);
}

QString QlumStructurePage::remark() const
{
    QlumValueCheck all = m_model->check();
    all.add(m_delegate->openCheck());
    return all.text();
}

QString QlumStructurePage::refusal() const
{
    QlumValueCheck all = m_model->check();
    all.add(m_delegate->openCheck());
    return all.refused;
}

void QlumStructurePage::setReadOnly(bool readOnly)
{
    m_model->setReadOnly(readOnly);
    updateActions();
    fillTypes();
}

// ---- what is shown around the fields

void QlumStructurePage::updateHead()
{
    const QString type = m_model->typeOf(QModelIndex());
    const QString why = m_model->reason();
    m_summary->setText(qlumSingleLine(why.isEmpty() ? type : tr("%1: not taken apart. %2").arg(type, why)));
}

void QlumStructurePage::updateActions()
{
    const QModelIndex index = m_view->currentIndex();
    m_actions[Open]->setEnabled(index.isValid() && m_model->hasValue(index));
}

void QlumStructurePage::fillTypes()
{
    const std::vector<UaNodeId> types = m_model->choices(QModelIndex());
    m_type->setVisible(!types.empty() && !m_model->isReadOnly());
    delete m_type->menu();
    if (types.empty())
        return;
    auto* menu = new QMenu(m_type);
    for (const UaNodeId& type : types)
        menu->addAction(
            qlumSingleLine(qlumTypeNameOf(type, m_context)).replace(QLatin1Char('&'), QLatin1String("&&")),
            this, [this, type] { m_model->choose(QModelIndex(), type); });
    m_type->setMenu(menu);
}

// ---- fields that need more room

void QlumStructurePage::sltOpen(const QModelIndex& index)
{
    const QModelIndex field = index.siblingAtColumn(QlumStructureModel::NameColumn);
    if (!field.isValid() || !m_model->hasValue(field))
        return;
    QlumValueDialog::Taker take;
    if (!m_model->isReadOnly())
        take = [this, place = QPersistentModelIndex(field)](const UaVariant& part) {
            if (!place.isValid())
                return tr("The structure has changed meanwhile, and this field is gone.");
            return m_model->replace(place, part) ? QString() : tr("It is no value of the field's type.");
        };
    qlumOpenPart(this, m_model->contextOf(field), m_model->pathOf(field), m_model->valueOf(field), take);
}
