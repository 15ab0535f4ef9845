#include <uawidgets/editors/qlumstructurepage.h>

#include <app/api/qlumdisplaytext.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumtypedelegate.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
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
    : QlumPartsPage(context, parent), m_model(new QlumStructureModel(context, this)),
      m_view(new QTreeView(this)), m_type(new QToolButton(this)),
      m_actions(structureRows, "QlumStructurePage", this)
{
    summary()->setObjectName(QStringLiteral("structureSummary"));
    summary()->setWordWrap(true);
    m_type->setObjectName(QStringLiteral("structureType"));
    m_type->setText(tr("Other Type"));
    m_type->setToolTip(tr("Begin with an empty value of another type"));
    m_type->setPopupMode(QToolButton::InstantPopup);
    auto* open = new QToolButton(this);
    open->setDefaultAction(m_actions[Open]);
    open->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto* head = new QHBoxLayout;
    head->addWidget(summary(), 1);
    head->addWidget(m_type);
    head->addWidget(open);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(head);
    layout->addWidget(messages());
    layout->addWidget(m_view, 1);
    makeView();
    connect(m_model, &QlumStructureModel::edited, this, &QlumStructurePage::partsChanged);
    connect(m_actions[Open], &QAction::triggered, this, [this] { sltOpen(m_view->currentIndex()); });
    showAround();
}

void QlumStructurePage::makeView()
{
    m_view->setObjectName(QStringLiteral("structureView"));
    m_view->setAccessibleName(tr("Fields"));
    m_view->setModel(m_model);
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
    showIn(m_view, new QlumTypeDelegate(*m_model, this));
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
    partsReset();
    fillTypes();
}

bool QlumStructurePage::value(UaVariant& value) const
{
    QString why;
    return takeOpen() && m_model->value(value, why);
}

void QlumStructurePage::setReadOnly(bool readOnly)
{
    m_model->setReadOnly(readOnly);
    updateActions();
    fillTypes();
}

bool QlumStructurePage::arePartsModified() const
{
    return m_model->isModified();
}

QlumValueCheck QlumStructurePage::checkParts() const
{
    return m_model->check();
}

QString QlumStructurePage::placeOf(const QModelIndex& index) const
{
    return m_model->pathOf(index);
}

// ---- what is shown around the fields

void QlumStructurePage::showAround()
{
    updateHead();
    updateActions();
}

void QlumStructurePage::updateHead()
{
    const QString type = m_model->typeOf(QModelIndex());
    const QString why = m_model->reason();
    summary()->setText(qlumSingleLine(why.isEmpty() ? type : tr("%1: not taken apart. %2").arg(type, why)));
}

void QlumStructurePage::updateActions()
{
    const QModelIndex index = m_view->currentIndex();
    m_actions[Open]->setEnabled(index.isValid() && m_model->hasValue(index));
}

void QlumStructurePage::fillTypes()
{
    const std::vector<UaNodeId> types = m_model->choices(QModelIndex());
    const bool hasOther = types.size() > 1 || (types.size() == 1 && types.front() != context().dataType);
    m_type->setVisible(hasOther && !m_model->isReadOnly());
    delete m_type->menu();
    if (!hasOther)
        return;
    auto* menu = new QMenu(m_type);
    for (const UaNodeId& type : types)
        menu->addAction(
            qlumSingleLine(qlumTypeNameOf(type, context())).replace(QLatin1Char('&'), QLatin1String("&&")),
            this, [this, type] { m_model->choose(QModelIndex(), type); });
    m_type->setMenu(menu);
}

// ---- fields that need more room

void QlumStructurePage::sltOpen(const QModelIndex& index)
{
    const QModelIndex field = index.siblingAtColumn(QlumStructureModel::NameColumn);
    if (!field.isValid() || !m_model->hasValue(field))
        return;
    Putter put;
    if (!m_model->isReadOnly())
        put = [this](const QModelIndex& place, const UaVariant& part) {
            return m_model->replace(place, part);
        };
    openPart(field, m_model->contextOf(field), m_model->valueOf(field), put);
}
