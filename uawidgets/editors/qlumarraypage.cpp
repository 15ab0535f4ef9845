#include <uawidgets/editors/qlumarraypage.h>

#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementcell.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableView>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int maximumLength = 16 * 1024 * 1024;

QSpinBox* addNumber(QHBoxLayout* layout, const char* name, const QString& label, const QString& toolTip)
{
    auto* caption = new QLabel(label, layout->parentWidget());
    auto* box = new QSpinBox(layout->parentWidget());
    box->setObjectName(QLatin1String(name));
    box->setAccessibleName(QString(label).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
    box->setToolTip(toolTip);
    box->setKeyboardTracking(false); // a length that is being typed must not cut the array
    caption->setBuddy(box);
    layout->addWidget(caption);
    layout->addWidget(box);
    return box;
}
} // namespace

QlumArrayPage::QlumArrayPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_model(new QlumArrayModel(context, this)),
      m_delegate(
          new QlumPartDelegate([this](const QModelIndex&) { return m_model->elementContext(); }, this)),
      m_messages(new QlumMessageBar(this)), m_view(new QTableView(this)), m_summary(new QLabel(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    makeHead();
    QToolBar* const tools = makeActions();
    makeView();
    layout->addWidget(m_messages);
    layout->addWidget(tools);
    layout->addWidget(m_view, 1);
    setFocusProxy(m_view);

    connect(m_model, &QlumArrayModel::edited, this, [this] {
        m_check.reset();
        updateHead();
        updateActions();
        emit edited();
    });
    connect(m_delegate, &QlumPartDelegate::typing, this, &QlumArrayPage::edited);
    connect(m_delegate, &QlumPartDelegate::refused, this, [this](const QString& why) {
        QlumMessage message;
        message.topic = QStringLiteral("entry");
        message.what = why;
        m_messages->tell(message);
    });
    updateHead();
    updateActions();
}

void QlumArrayPage::makeHead()
{
    auto* head = new QHBoxLayout;
    static_cast<QVBoxLayout*>(layout())->addLayout(head);
    m_summary->setObjectName(QStringLiteral("arraySummary"));
    m_summary->setTextFormat(Qt::PlainText);
    head->addWidget(m_summary, 1);
    m_length = addNumber(head, "arrayLength", tr("&Length:"),
                         tr("Number of elements; new ones come at the end, and go from there"));
    m_length->setMaximum(maximumLength);
    m_goTo = addNumber(head, "arrayGoTo", tr("&Go to:"), tr("Shows the element with this index"));
    connect(m_length, qOverload<int>(&QSpinBox::valueChanged), this, &QlumArrayPage::sltResize);
    connect(m_goTo, qOverload<int>(&QSpinBox::valueChanged), this, [this](int row) { select(row, 1); });
}

void QlumArrayPage::makeView()
{
    m_view->setObjectName(QStringLiteral("arrayView"));
    m_view->setAccessibleName(tr("Elements"));
    m_view->setModel(m_model);
    m_view->setItemDelegate(m_delegate);
    m_view->setAlternatingRowColors(true);
    m_view->setWordWrap(false);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_view->setTabKeyNavigation(false);
    m_view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_view->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->setContextMenuPolicy(Qt::ActionsContextMenu);
    QlumTableOptions options;
    options.emptyText =
        tr("The array has no elements. Insert adds one; a column of a spreadsheet can be pasted.");
    options.fileName = QStringLiteral("array");
    options.copiesItself = true;
    qlumMakeTable(m_view, options);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumArrayPage::updateActions);
    connect(m_view, &QAbstractItemView::activated, this, [this](const QModelIndex& index) {
        if (m_model->flags(index) & Qt::ItemIsEditable)
            m_view->edit(index);
        else
            sltOpen(index);
    });
}

// ---- value page

void QlumArrayPage::setValue(const UaVariant& value)
{
    m_model->setValue(value);
    m_check.reset();
    m_messages->dismiss();
    updateHead();
    updateActions();
}

bool QlumArrayPage::value(UaVariant& value) const
{
    if (!fault().isEmpty())
        return false;
    m_delegate->commitOpen();
    UaVariant array = m_model->value();
    if (array.isNull()) // of no elements, unless memory ran out
        if (m_model->rowCount() > 0 ||
            !OpcUa_IsGood(array.attachArray(m_model->elements().type(), 0, nullptr)))
            return false;
    value = array;
    return true;
}

bool QlumArrayPage::isModified() const
{
    return m_model->isModified() || m_delegate->isOpenChanged();
}

QString QlumArrayPage::fault() const
{
    const QString why = m_delegate->openFault();
    return why.isEmpty() ? why : tr("[%1]: %2").arg(QString::number(m_view->currentIndex().row()), why);
}

QString QlumArrayPage::remark() const
{
    QlumValueCheck all = check();
    all.add(m_delegate->openCheck());
    return all.text();
}

QString QlumArrayPage::refusal() const
{
    QlumValueCheck all = check();
    all.add(m_delegate->openCheck());
    return all.refused;
}

void QlumArrayPage::setReadOnly(bool readOnly)
{
    m_model->setReadOnly(readOnly);
    updateHead();
    updateActions();
}

// ---- what is shown around the elements

void QlumArrayPage::updateHead()
{
    const int count = m_model->rowCount();
    const OpcUa_BuiltInType type = m_model->elements().type();
    UaVariant none;
    static_cast<void>(none.attachArray(type, 0, nullptr)); // no elements need no memory
    QString name = qlumTypeTextOf(none, m_context);
    name.truncate(name.lastIndexOf(QLatin1Char('[')));
    m_summary->setText(count == 1 ? tr("1 element of type %1").arg(name)
                                  : tr("%1 elements of type %2").arg(QLocale().toString(count), name));
    const QSignalBlocker quietLength(m_length);
    const QSignalBlocker quietGoTo(m_goTo);
    m_length->setValue(count);
    m_length->setReadOnly(m_model->isReadOnly());
    m_length->setButtonSymbols(m_model->isReadOnly() ? QSpinBox::NoButtons : QSpinBox::UpDownArrows);
    m_goTo->setMaximum(std::max(0, count - 1));
}

const QlumValueCheck& QlumArrayPage::check() const
{
    if (!m_check) {
        const OpcUa_Int32 count = m_model->rowCount();
        m_check = qlumCheckGiven(m_model->elements(), UaArray<OpcUa_Int32>(1, &count), m_context);
    }
    return *m_check;
}
