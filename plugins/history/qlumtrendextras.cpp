#include <plugins/history/qlumtrendextras.h>

#include <opcua/opcua_identifiers.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlumformrow.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QSpinBox>
#include <QString>
#include <QWidget>

#include <algorithm>
#include <cstddef>
#include <vector>

QlumTrendExtras::QlumTrendExtras(QWidget* parent)
    : QGroupBox(tr("Besides Raw Values"), parent), m_processed(new QCheckBox(tr("&Processed values"))),
      m_aggregate(new QComboBox), m_interval(new QDoubleSpinBox),
      m_defaults(new QCheckBox(tr("As the server is configured"))),
      m_uncertainAsBad(new QCheckBox(tr("Treat uncertain values as bad"))), m_percentBad(new QSpinBox),
      m_percentGood(new QSpinBox), m_sloped(new QCheckBox(tr("Extrapolate sloped"))),
      m_modified(new QCheckBox(tr("&Modified values")))
{
    setObjectName(QStringLiteral("extras"));
    m_interval->setRange(1, 1e9);
    m_interval->setDecimals(0);
    m_interval->setValue(60'000);
    m_interval->setSuffix(tr(" ms"));
    for (QSpinBox* percent : {m_percentBad, m_percentGood}) {
        percent->setRange(0, 100);
        percent->setValue(100);
        percent->setSuffix(tr(" %"));
    }
    m_defaults->setChecked(true);
    auto* form = new QFormLayout(this);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    qlumAddWideRow(form, m_processed,
                   {QStringLiteral("processed"),
                    m_processed->text(),
                    tr("Reads an aggregate of each variable as well, and draws it beside the raw curve."),
                    {}});
    qlumAddRow(
        form, m_aggregate,
        {QStringLiteral("aggregate"),
         tr("Aggregate:"),
         tr("What the servers calculate of the values of each interval. The list is that of the servers of "
            "these variables."),
         {}});
    qlumAddRow(form, m_interval,
               {QStringLiteral("processingInterval"),
                tr("I&nterval:"),
                tr("How much of the time one processed value stands for."),
                {}});
    qlumAddWideRow(
        form, m_defaults,
        {QStringLiteral("aggregateDefaults"),
         m_defaults->text(),
         tr("The server decides about bad and uncertain values. Switch it off to decide yourself."),
         {}});
    qlumAddWideRow(form, m_uncertainAsBad,
                   {QStringLiteral("uncertainAsBad"),
                    m_uncertainAsBad->text(),
                    tr("Uncertain values count as bad ones in an interval."),
                    {}});
    qlumAddRow(form, m_percentBad,
               {QStringLiteral("percentBad"),
                tr("Bad from:"),
                tr("An interval with at least so many bad values is bad."),
                {}});
    qlumAddRow(form, m_percentGood,
               {QStringLiteral("percentGood"),
                tr("Good from:"),
                tr("An interval with at least so many good values is good."),
                {}});
    qlumAddWideRow(form, m_sloped,
                   {QStringLiteral("slopedExtrapolation"),
                    m_sloped->text(),
                    tr("Beyond the last value the line goes on as it went before, not level."),
                    {}});
    qlumAddWideRow(
        form, m_modified,
        {QStringLiteral("modified"),
         m_modified->text(),
         tr("Reads what somebody has replaced or deleted, with who did it and when, into the list of "
            "modified values."),
         {}});
    connect(m_processed, &QCheckBox::toggled, this, &QlumTrendExtras::showChoices);
    connect(m_defaults, &QCheckBox::toggled, this, &QlumTrendExtras::showChoices);
    showChoices();
}

void QlumTrendExtras::showChoices()
{
    const auto* form = qobject_cast<QFormLayout*>(layout());
    const auto show = [form](QWidget* field, bool isShown) {
        field->setVisible(isShown);
        if (QWidget* label = form->labelForField(field))
            label->setVisible(isShown);
    };
    const bool isProcessed = m_processed->isChecked(), isOwn = isProcessed && !m_defaults->isChecked();
    for (QWidget* field : {static_cast<QWidget*>(m_aggregate), static_cast<QWidget*>(m_interval),
                           static_cast<QWidget*>(m_defaults)})
        show(field, isProcessed);
    for (QWidget* field : {static_cast<QWidget*>(m_uncertainAsBad), static_cast<QWidget*>(m_percentBad),
                           static_cast<QWidget*>(m_percentGood), static_cast<QWidget*>(m_sloped)})
        show(field, isOwn);
}

void QlumTrendExtras::addAggregates(const std::vector<QlumAggregate>& aggregates)
{
    for (const QlumAggregate& aggregate : aggregates) {
        const bool isKnown = std::any_of(m_aggregates.begin(), m_aggregates.end(),
                                         [&](const QlumAggregate& one) { return one.id == aggregate.id; });
        if (isKnown)
            continue;
        m_aggregates.push_back(aggregate);
        m_aggregate->addItem(aggregate.name);
        if (aggregate.id == UaNodeId(OpcUaId_AggregateFunction_Average) && m_aggregate->currentIndex() == 0)
            m_aggregate->setCurrentIndex(m_aggregate->count() - 1); // what most look for
    }
}

bool QlumTrendExtras::wantsProcessed() const
{
    return m_processed->isChecked();
}

bool QlumTrendExtras::hasProcessed() const
{
    return m_processed->isChecked() && m_aggregate->currentIndex() >= 0;
}

UaNodeId QlumTrendExtras::aggregate() const
{
    const int chosen = m_aggregate->currentIndex();
    return chosen < 0 ? UaNodeId() : m_aggregates.at(static_cast<std::size_t>(chosen)).id;
}

QString QlumTrendExtras::aggregateName() const
{
    return m_aggregate->currentText();
}

double QlumTrendExtras::interval() const
{
    return m_interval->value();
}

OpcUa_AggregateConfiguration QlumTrendExtras::configuration() const
{
    OpcUa_AggregateConfiguration configuration{};
    configuration.UseServerCapabilitiesDefaults = m_defaults->isChecked() ? OpcUa_True : OpcUa_False;
    configuration.TreatUncertainAsBad = m_uncertainAsBad->isChecked() ? OpcUa_True : OpcUa_False;
    configuration.PercentDataBad = static_cast<OpcUa_Byte>(m_percentBad->value());
    configuration.PercentDataGood = static_cast<OpcUa_Byte>(m_percentGood->value());
    configuration.UseSlopedExtrapolation = m_sloped->isChecked() ? OpcUa_True : OpcUa_False;
    return configuration;
}

bool QlumTrendExtras::hasModified() const
{
    return m_modified->isChecked();
}
