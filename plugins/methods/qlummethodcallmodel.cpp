#include <plugins/methods/qlummethodcallmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <plugins/methods/qlummethodwords.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlummethodarguments.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QLocale>
#include <QString>
#include <QStringList>

#include <deque>
#include <vector>

namespace {
constexpr int keptCalls = 500; // each holds its values

QString textOf(const UaVariant& value, UaDataTypeDictionary* dictionary)
{
    UaString text;
    if (!value.isScalar() || value.type() == OpcUaType_ExtensionObject)
        if (UaValueText::toJson(value, dictionary, text).isNotBad())
            return toQString(text);
    return toQString(value.toString());
}

QString textOf(const std::vector<UaVariant>& values, const QlumMethodArguments& arguments)
{
    QStringList texts;
    for (std::size_t i = 0; i < values.size(); ++i)
        texts.append(
            textOf(values[i], i < arguments.size() ? arguments[i].context.dictionary.get() : nullptr));
    return texts.join(QLatin1String("; "));
}

QString textOf(const QlumMethodCall& call, int column)
{
    switch (column) {
    case QlumMethodCallModel::TimeColumn:
        return qlumShowDateTime(call.begun);
    case QlumMethodCallModel::StatusColumn:
        return qlumShortOutcome(call);
    case QlumMethodCallModel::DurationColumn:
        return qlumDurationText(call.milliseconds);
    case QlumMethodCallModel::InputsColumn:
        return textOf(call.inputs, call.inputArguments);
    default:
        return textOf(call.outputs, call.outputArguments);
    }
}
} // namespace

QlumMethodCallModel::QlumMethodCallModel(QObject* parent)
    : QlumTableModel({tr("Time"), tr("Status"), tr("Duration"), tr("Inputs"), tr("Outputs")}, parent)
{
}

void QlumMethodCallModel::add(const QlumMethodCall& call)
{
    if (rowCount() >= keptCalls)
        remove(keptCalls - 1, rowCount() - keptCalls + 1);
    insert(0, std::deque<QlumMethodCall>{call});
}

QVariant QlumMethodCallModel::cell(const QlumMethodCall& call, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return qlumCutText(qlumSingleLine(textOf(call, column)));
    case Qt::EditRole:
        return textOf(call, column);
    case Qt::ToolTipRole:
        return qlumPlainToolTip(column == StatusColumn ? qlumOutcomeText(call)
                                                       : qlumCutText(textOf(call, column)));
    default:
        return column == StatusColumn
                   ? qlumStatusCell(qlumIsDone(call) ? QlumStatusLevel::Good : QlumStatusLevel::Bad, role)
                   : QVariant();
    }
}
