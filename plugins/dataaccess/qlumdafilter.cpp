#include <plugins/dataaccess/qlumdafilter.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumnodeaddress.h>
#include <plugins/dataaccess/qlumdamodel.h>

#include <QModelIndex>
#include <QString>

#include <limits>
#include <map>
#include <vector>

void QlumDaFilter::lookAgain()
{
    rankGroups();
    refilter();
}

void QlumDaFilter::setGroup(Group group)
{
    if (group == m_group)
        return;
    m_group = group;
    rankGroups();
    if (group != NoGroups && sortColumn() < 0)
        sort(QlumDaModel::Number);
    else
        refilter();
}

QString QlumDaFilter::groupName(int sourceRow) const
{
    const auto& model = *static_cast<const QlumDaModel*>(sourceModel());
    const QString server = model.index(sourceRow, QlumDaModel::Server).data().toString();
    if (m_group != ByFolder)
        return server;
    return server + QLatin1Char(' ') + qlumPathAbove(model.rowAt(sourceRow).browsePath);
}

// The names are made once, not in each of the many comparisons of a sort.
void QlumDaFilter::rankGroups()
{
    m_groups.clear();
    if (m_group == NoGroups)
        return;
    std::map<QString, int> places;
    std::vector<std::map<QString, int>::iterator> ofRows;
    for (int row = 0; row < sourceModel()->rowCount(); ++row)
        ofRows.push_back(places.try_emplace(groupName(row)).first);
    int place = 0;
    for (auto& [name, number] : places)
        number = place++;
    for (const auto& group : ofRows)
        m_groups.push_back(group->second);
}

int QlumDaFilter::groupOf(int sourceRow) const
{
    const auto place = static_cast<std::size_t>(sourceRow);
    return place < m_groups.size() ? m_groups[place] : std::numeric_limits<int>::max();
}

QHash<int, QString> QlumDaFilter::headings() const
{
    QHash<int, QString> texts;
    if (m_group == NoGroups)
        return texts;
    const auto sourceRow = [this](int row) { return mapToSource(index(row, 0)).row(); };
    for (int first = 0, end = 0; first < rowCount(); first = end) {
        const int group = groupOf(sourceRow(first));
        for (end = first + 1; end < rowCount() && groupOf(sourceRow(end)) == group;)
            ++end;
        const QString name = group == std::numeric_limits<int>::max() ? QString() // until lookAgain()
                                                                      : groupName(sourceRow(first)).trimmed();
        texts.insert(first, tr("%1 (%n row(s))", nullptr, end - first)
                                .arg(name.isEmpty() ? tr("Not known yet") : qlumSingleLine(name)));
    }
    return texts;
}

bool QlumDaFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    if (m_group != NoGroups)
        if (const int one = groupOf(left.row()), other = groupOf(right.row()); one != other)
            return (one < other) == (sortOrder() == Qt::AscendingOrder);
    return QlumTableFilter::lessThan(left, right);
}

void QlumDaFilter::setShow(Show show)
{
    if (show == m_show)
        return;
    m_show = show;
    refilter();
}

bool QlumDaFilter::acceptsRow(int row, const QModelIndex&) const
{
    const auto& model = *static_cast<const QlumDaModel*>(sourceModel());
    switch (m_show) {
    case Troubled:
        return model.level(model.rowAt(row)) != QlumStatusLevel::Good;
    case Writable:
        return model.rowAt(row).isWritable;
    case All:
        break;
    }
    return true;
}
