#include <plugins/devices/qlumparametermodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uawidgets/editors/qlumcelltext.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QFont>
#include <QLocale>
#include <QObject>
#include <QStringList>

#include <deque>
#include <map>
#include <utility>

namespace {
const QlumValueContext& contextOf(const QlumParameterRow& row)
{
    static const QlumValueContext nothing;
    return row.parameter.context ? *row.parameter.context : nothing;
}

QString parameterRange(const QlumValueContext& context)
{
    const auto& range = context.euRange ? context.euRange : context.instrumentRange;
    if (!range)
        return {};
    const QLocale locale = QLocale::system();
    return QlumParameterModel::tr("%1 to %2").arg(locale.toString(range->low), locale.toString(range->high));
}
} // namespace

QlumParameterModel::QlumParameterModel(QObject* parent)
    : QlumTableModel({tr("Parameter"), tr("Value"), tr("Unit"), tr("State"), tr("Groups"), tr("Range"),
                      tr("Access"), tr("Value of the type")},
                     parent)
{
}

void QlumParameterModel::setDetails(const QlumDeviceDetails& details, bool keepsChanges)
{
    std::map<UaNodeId, UaVariant> kept;
    if (keepsChanges)
        for (const QlumParameterRow& row : rows())
            if (row.changed)
                kept.emplace(row.parameter.id, *row.changed);
    std::deque<QlumParameterRow> next;
    for (const QlumDeviceParameter& parameter : details.parameters) {
        QlumParameterRow row;
        row.parameter = parameter;
        if (const auto found = kept.find(parameter.id); found != kept.end())
            row.changed = found->second;
        next.push_back(std::move(row));
    }
    reset(std::move(next));
    emit changesChanged();
}

void QlumParameterModel::setValue(int row, const UaDataValue& value)
{
    if (row >= 0 && row < rowCount())
        change(
            row, [&](QlumParameterRow& changed) { changed.parameter.value = value; });
}

void QlumParameterModel::setWatched(int row, bool isWatched)
{
    change(
        row, [&](QlumParameterRow& changed) { changed.isWatched = isWatched; });
}

int QlumParameterModel::find(const UaNodeId& id) const
{
    for (int row = 0; row < rowCount(); ++row)
        if (rowAt(row).parameter.id == id)
            return row;
    return -1;
}

// ---- what the user changes

QString QlumParameterModel::obstacle(int row) const
{
    const QString access = contextOf(rowAt(row)).accessFault;
    return access.isEmpty() ? m_obstacle : access;
}

QString QlumParameterModel::stage(int row, const UaVariant& value)
{
    const QString why = obstacle(row);
    if (why.isEmpty())
        restage(row, value);
    return why;
}

void QlumParameterModel::restage(int row, const UaVariant& value)
{
    change(row, [&](QlumParameterRow& changed) {
        // back at what the server has, there is nothing to be written
        const bool isSame = value == changed.parameter.value.value();
        changed.changed = isSame ? std::nullopt : std::optional(value);
        changed.outcome.clear();
    });
    emit changesChanged();
}

void QlumParameterModel::discardChanges()
{
    changeRows([](QlumParameterRow& row) {
        const bool wasTouched = row.changed || !row.outcome.isEmpty();
        row.changed.reset();
        row.outcome.clear();
        return wasTouched;
    });
    emit changesChanged();
}

std::vector<QlumParameterWrite> QlumParameterModel::changes() const
{
    std::vector<QlumParameterWrite> wanted;
    for (const QlumParameterRow& row : rows())
        if (row.changed)
            wanted.push_back(
                {row.parameter.id, row.parameter.name, *row.changed, row.parameter.value.value()});
    return wanted;
}

int QlumParameterModel::changeCount() const
{
    return static_cast<int>(changes().size());
}

void QlumParameterModel::setOutcomes(const QlumParameterOutcomes& outcomes)
{
    for (const QlumParameterOutcome& cell : outcomes.cells) {
        const int place = find(cell.id);
        if (place < 0)
            continue;
        change(place, [&](QlumParameterRow& row) {
            const bool isRead = !cell.back.statusCode().isBad();
            const UaVariant wanted = row.changed.value_or(UaVariant());
            if (isRead)
                row.parameter.value = cell.back;
            if (cell.status.isBad()) {
                row.outcome = qlumResultInWords(cell.status);
                row.level = QlumStatusLevel::Bad;
                return; // the user's value stays, so that he can try again
            }
            row.changed.reset();
            row.level = QlumStatusLevel::Good;
            row.outcome = tr("Written");
            if (!isRead || cell.back.value() != wanted) {
                row.level = QlumStatusLevel::Uncertain;
                row.outcome = isRead ? tr("Written, but the device has taken %1 instead")
                                           .arg(valueText(row, cell.back.value()))
                                     : tr("Written, but it could not be read back");
            }
        });
    }
    emit changesChanged();
}

// ---- cells

const UaVariant& QlumParameterModel::shown(const QlumParameterRow& row)
{
    return row.changed ? *row.changed : row.parameter.value.value();
}

QString QlumParameterModel::valueText(const QlumParameterRow& row, const UaVariant& value)
{
    return qlumCellText(value, contextOf(row));
}

QlumStatusLevel QlumParameterModel::levelOf(const QlumParameterRow& row)
{
    if (!row.outcome.isEmpty())
        return row.level;
    if (row.changed)
        return qlumCheckValue(*row.changed, contextOf(row)).text().isEmpty() ? QlumStatusLevel::Good
                                                                             : QlumStatusLevel::Uncertain;
    return qlumStatusLevel(row.parameter.value.statusCode().code());
}

QString QlumParameterModel::stateText(const QlumParameterRow& row)
{
    if (!row.outcome.isEmpty())
        return row.outcome;
    if (row.changed) {
        const QString before = valueText(row, row.parameter.value.value());
        QStringList texts{tr("Changed, not written yet; the device has %1").arg(before)};
        texts.append(qlumCheckValue(*row.changed, contextOf(row)).text());
        texts.removeAll(QString());
        return qlumSingleLine(texts.join(QStringLiteral(". ")));
    }
    const UaStatus status(row.parameter.value.statusCode());
    if (!status.isGood())
        return qlumResultInWords(status);
    return row.isWatched ? tr("Watched") : QString();
}

QString QlumParameterModel::text(const QlumParameterRow& row, int column) const
{
    const QlumValueContext& context = contextOf(row);
    switch (column) {
    case Name:
        return row.parameter.name;
    case Groups:
        return row.parameter.groups.join(QStringLiteral(", "));
    case Value:
        return valueText(row, shown(row));
    case Unit:
        return qlumSingleLine(context.unit);
    case Range:
        return parameterRange(context);
    case Access:
        return context.accessFault.isEmpty() ? tr("read and write") : tr("read only");
    case State:
        return stateText(row);
    case Default:
        return row.parameter.hasDefault ? valueText(row, row.parameter.byType) : QString();
    default:
        return {};
    }
}

QVariant QlumParameterModel::cell(const QlumParameterRow& row, int column, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return text(row, column);
    case Qt::EditRole:
    case Qt::UserRole:
        return column == Value ? QVariant::fromValue(shown(row)) : QVariant();
    case DictionaryRole:
        return QVariant::fromValue(contextOf(row).dictionary.get());
    case DataTypeRole:
        return QVariant::fromValue(contextOf(row).dataType);
    case Qt::ToolTipRole:
        if (column == Access && !contextOf(row).accessFault.isEmpty())
            return qlumPlainToolTip(contextOf(row).accessFault);
        return qlumPlainToolTip(text(row, column));
    case Qt::FontRole: {
        if (!row.changed || (column != Value && column != Name))
            return {};
        QFont font;
        font.setBold(true);
        return font;
    }
    default:
        break;
    }
    const bool hasState = column == State && !stateText(row).isEmpty();
    return hasState ? qlumStatusCell(levelOf(row), role) : QVariant();
}

Qt::ItemFlags QlumParameterModel::flags(const QModelIndex& index) const
{
    const bool isEditable = index.isValid() && index.column() == Value && obstacle(index.row()).isEmpty();
    return QlumTableModel::flags(index) | (isEditable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

bool QlumParameterModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::UserRole || !index.isValid() || index.column() != Value)
        return false;
    return stage(index.row(), value.value<UaVariant>()).isEmpty();
}

// ---- filter

void QlumParameterFilter::setGroup(const QString& group)
{
    m_group = group;
    refilter();
}

bool QlumParameterFilter::acceptsRow(int row, const QModelIndex&) const
{
    const auto* const model = qobject_cast<const QlumParameterModel*>(sourceModel());
    return m_group.isEmpty() || !model || model->rowAt(row).parameter.groups.contains(m_group);
}
