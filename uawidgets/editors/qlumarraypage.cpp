#include <uawidgets/editors/qlumarraypage.h>

#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementcell.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QHeaderView>
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
    : QlumPartsPage(context, parent), m_model(new QlumArrayModel(context, this)), m_view(new QTableView(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    makeHead();
    QToolBar* const tools = makeActions();
    makeView();
    layout->addWidget(messages());
    layout->addWidget(tools);
    layout->addWidget(m_view, 1);
    connect(m_model, &QlumArrayModel::edited, this, &QlumArrayPage::partsChanged);
    showAround();
}

void QlumArrayPage::makeHead()
{
    auto* head = new QHBoxLayout;
    static_cast<QVBoxLayout*>(layout())->addLayout(head);
    summary()->setObjectName(QStringLiteral("arraySummary"));
    head->addWidget(summary(), 1);
    m_length = addNumber(head, "arrayLength", tr("&Length:"),
                         tr("Number of elements; new ones come at the end, and go from there"));
    m_length->setMaximum(maximumLength);
    m_goTo = addNumber(head, "arrayGoTo", tr("&Go to:"), tr("Shows the element with this index"));
    connect(m_length, qOverload<int>(&QSpinBox::valueChanged), this, &QlumArrayPage::sltResize);
    connect(m_goTo, qOverload<int>(&QSpinBox::valueChanged), this, [this](int row) { select(row, 1); });
}

void QlumArrayPage::makeView()
{
    m_view->setModel(m_model);
    m_view->setAlternatingRowColors(true);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->horizontalHeader()->setStretchLastSection(true);
    const auto contextOf = [this](const QModelIndex&) { return m_model->elementContext(); };
    showElementsIn(
        m_view, new QlumPartDelegate(contextOf, this), QStringLiteral("array"),
        tr("The array has no elements. Insert adds one; a column of a spreadsheet can be pasted."));
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
    partsReset();
}

bool QlumArrayPage::value(UaVariant& value) const
{
    if (!takeOpen())
        return false;
    UaVariant array = m_model->value();
    if (array.isNull()) // of no elements, unless memory ran out
        if (m_model->rowCount() > 0 ||
            !OpcUa_IsGood(array.attachArray(m_model->elements().type(), 0, nullptr)))
            return false;
    value = array;
    return true;
}

void QlumArrayPage::setReadOnly(bool readOnly)
{
    m_model->setReadOnly(readOnly);
    showAround();
}

bool QlumArrayPage::arePartsModified() const
{
    return m_model->isModified();
}

QlumValueCheck QlumArrayPage::checkParts() const
{
    const OpcUa_Int32 count = m_model->rowCount();
    return qlumCheckGiven(m_model->elements(), UaArray<OpcUa_Int32>(1, &count), context());
}

QString QlumArrayPage::placeOf(const QModelIndex& index) const
{
    return QStringLiteral("[%1]").arg(index.row());
}

// ---- what is shown around the elements

void QlumArrayPage::showAround()
{
    updateHead();
    updateActions();
}

void QlumArrayPage::updateHead()
{
    const int count = m_model->rowCount();
    const QString name = elementTypeName(m_model->elements().type());
    summary()->setText(count == 1 ? tr("1 element of type %1").arg(name)
                                  : tr("%1 elements of type %2").arg(QLocale().toString(count), name));
    const QSignalBlocker quietLength(m_length);
    const QSignalBlocker quietGoTo(m_goTo);
    m_length->setValue(count);
    m_length->setReadOnly(m_model->isReadOnly());
    m_length->setButtonSymbols(m_model->isReadOnly() ? QSpinBox::NoButtons : QSpinBox::UpDownArrows);
    m_goTo->setMaximum(std::max(0, count - 1));
}
