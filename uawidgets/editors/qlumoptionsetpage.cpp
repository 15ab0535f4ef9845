#include <uawidgets/editors/qlumoptionsetpage.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluetext.h>
#include <uawidgets/qlumformrow.h>

#include <QFormLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QString>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <set>

namespace {
constexpr int bitRole = Qt::UserRole;
constexpr int mostBits = 1024; // that a page shows
enum Column { BitColumn, ValidColumn };
} // namespace

QlumOptionSetPage::QlumOptionSetPage(const QlumValueContext& context, const UaOptionSetDefinition& definition,
                                     QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_definition(definition), m_value(definition),
      m_number(new QLineEdit(this)), m_bits(new QTreeWidget(this))
{
    const bool isStructured = definition.builtInType() == OpcUaType_ExtensionObject;
    m_bits->setObjectName(QStringLiteral("bits"));
    m_bits->setAccessibleName(tr("Bits"));
    m_bits->setRootIsDecorated(false);
    m_bits->setUniformRowHeights(true);
    m_bits->setHeaderLabels({tr("Bit"), tr("Valid")});
    m_bits->setColumnHidden(ValidColumn, !isStructured);
    m_bits->header()->setSectionResizeMode(BitColumn, QHeaderView::Stretch);
    m_bits->header()->setStretchLastSection(false);
    auto* form = new QFormLayout;
    form->setContentsMargins(0, 0, 0, 0);
    if (isStructured)
        m_number->hide();
    else
        qlumAddRow(form, m_number,
                   {QStringLiteral("number"), tr("&Number:"), QString(),
                    tr("Decimal, hexadecimal (0x21) or binary (0b100001), or names joined by |")});
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(form);
    layout->addWidget(m_bits, 1);
    setFocusProxy(m_bits);
    connect(m_bits, &QTreeWidget::itemChanged, this,
            [this](const QTreeWidgetItem* item, int column) { takeTick(*item, column); });
    connect(m_number, &QLineEdit::textEdited, this, &QlumOptionSetPage::takeNumber);
}

void QlumOptionSetPage::setValue(const UaVariant& value)
{
    m_hasValue = !value.isNull();
    m_isModified = false;
    m_fault.clear();
    m_value = UaGenericOptionSetValue(m_definition);
    if (m_hasValue && m_value.decode(value, m_definition).isBad())
        m_value = UaGenericOptionSetValue(m_definition);
    fill();
    showTicks();
    m_number->setText(m_hasValue ? QLatin1String("0x") + QString::number(m_value.value(), 16) : QString());
}

void QlumOptionSetPage::fill()
{
    std::set<int> bits;
    for (int i = 0; i < std::min(m_definition.bitCount(), mostBits); ++i) {
        const OpcUa_Int64 bit = m_definition.bitAt(i).value;
        if (bit >= 0 && bit < mostBits)
            bits.insert(static_cast<int>(bit));
    }
    for (int bit = 0; bit < mostBits; ++bit)
        if (m_value.isSet(static_cast<OpcUa_UInt32>(bit)))
            bits.insert(bit);
    m_isShowing = true;
    m_bits->clear();
    for (const int bit : bits)
        addBit(bit);
    m_isShowing = false;
}

void QlumOptionSetPage::addBit(int bit)
{
    const QString name = toQString(m_definition.bitName(bit));
    const QString shown = qlumCutText(qlumSingleLine(name), 100);
    auto* item = new QTreeWidgetItem(
        m_bits, {name.isEmpty() ? tr("%1 (no name)").arg(bit) : tr("%1 (%2)").arg(shown).arg(bit)});
    item->setData(BitColumn, bitRole, bit);
}

void QlumOptionSetPage::showTicks()
{
    m_isShowing = true;
    for (int row = 0; row < m_bits->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = m_bits->topLevelItem(row);
        const auto bit = item->data(BitColumn, bitRole).toUInt();
        item->setCheckState(BitColumn, m_value.isSet(bit) ? Qt::Checked : Qt::Unchecked);
        if (!m_bits->isColumnHidden(ValidColumn))
            item->setCheckState(ValidColumn, m_value.isValid(bit) ? Qt::Checked : Qt::Unchecked);
        item->setFlags(m_isReadOnly ? Qt::ItemIsEnabled | Qt::ItemIsSelectable
                                    : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    }
    m_isShowing = false;
}

void QlumOptionSetPage::takeTick(const QTreeWidgetItem& item, int column)
{
    if (m_isShowing)
        return;
    const auto bit = item.data(BitColumn, bitRole).toUInt();
    const bool isSet = item.checkState(BitColumn) == Qt::Checked;
    // a bit that the user sets is meant to count
    const bool isValid = m_bits->isColumnHidden(ValidColumn) || (column == BitColumn && isSet) ||
                         item.checkState(ValidColumn) == Qt::Checked;
    if (m_value.setBit(bit, isSet, isValid).isBad())
        m_fault = tr("The option set has no bit %1.").arg(bit);
    else
        m_fault.clear();
    m_hasValue = true;
    m_isModified = true;
    showTicks();
    m_number->setText(QLatin1String("0x") + QString::number(m_value.value(), 16));
    emit edited();
}

void QlumOptionSetPage::takeNumber()
{
    OpcUa_UInt64 number = 0;
    UaVariant value;
    const bool isNumber = qlumFromOptionSetText(m_number->text(), m_definition, number);
    value = UaVariant(number);
    m_fault.clear();
    if (!isNumber)
        m_fault = tr("'%1' is neither a number nor names of bits.").arg(qlumCutText(m_number->text(), 40));
    else if (value.changeType(m_definition.builtInType(), false).isBad() ||
             m_value.decode(value, m_definition).isBad())
        m_fault =
            tr("The number is too large. It takes: %1").arg(qlumNumberRangeText(m_definition.builtInType()));
    m_isModified = true;
    if (m_fault.isEmpty()) {
        m_hasValue = true;
        fill();
        showTicks();
    }
    emit edited();
}

bool QlumOptionSetPage::value(UaVariant& value) const
{
    UaVariant encoded;
    if (!m_hasValue || !m_fault.isEmpty() || m_value.encode(encoded).isBad())
        return false;
    value = encoded;
    return true;
}

QString QlumOptionSetPage::fault() const
{
    return m_fault;
}

QString QlumOptionSetPage::remark() const
{
    UaVariant entered;
    return m_isModified && value(entered) ? qlumCheckElement(entered, m_context).text() : QString();
}

void QlumOptionSetPage::setReadOnly(bool readOnly)
{
    m_isReadOnly = readOnly;
    m_number->setReadOnly(readOnly);
    showTicks();
}
