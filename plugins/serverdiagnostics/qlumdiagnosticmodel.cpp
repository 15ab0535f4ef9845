#include <plugins/serverdiagnostics/qlumdiagnosticmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <chrono>
#include <utility>

QlumDiagnosticModel::QlumDiagnosticModel(const QStringList& titles, QObject* parent)
    : QlumTreeModel(titles, parent), m_root(std::make_unique<QlumDiagnosticItem>())
{
    setRoot(m_root.get());
}

QlumDiagnosticModel::~QlumDiagnosticModel() = default;

QlumDiagnosticItem* QlumDiagnosticModel::addRow(const QString& label, QlumDiagnosticKind kind,
                                                QlumDiagnosticItem* parent)
{
    QlumDiagnosticItem& above = parent ? *parent : *m_root;
    auto item = std::make_unique<QlumDiagnosticItem>();
    item->label = label;
    item->kind = kind;
    QlumDiagnosticItem* const added = item.get();
    above.m_isGroup = true;
    insertChildren(above, above.childCount(), 1, [&] { above.appendChild(std::move(item)); });
    return added;
}

void QlumDiagnosticModel::setNewValue(QlumDiagnosticItem* item, const UaDataValue& value,
                                      QlumDiagnosticClock::time_point time, const QStringList* names)
{
    setText(item, qlumDiagnosticText(value, {item->label, item->kind, names}));
    if (item->kind != QlumDiagnosticKind::Counter)
        return;
    const std::optional<OpcUa_UInt32> count = qlumCounterOf(value);
    const double seconds = std::chrono::duration<double>(time - item->m_time).count();
    setMore(item,
            count && item->m_count ? qlumRateText(qlumRate(*item->m_count, *count, seconds)) : QString());
    item->m_count = count;
    item->m_time = time;
}

void QlumDiagnosticModel::setText(QlumDiagnosticItem* item, const QlumDiagnosticText& text)
{
    fill(*item, text);
    tellChanged(*item);
    replaceParts(item, text.parts);
}

void QlumDiagnosticModel::setMore(QlumDiagnosticItem* item, const QString& more)
{
    item->more = more;
    tellChanged(*item);
}

// Parts of the same number stay the rows that they are, opened and selected as they may be.
void QlumDiagnosticModel::replaceParts(QlumDiagnosticItem* item, const std::vector<QlumDiagnosticText>& parts)
{
    const int count = static_cast<int>(parts.size());
    if (item->childCount() > count)
        removeNodes(*item, count, item->childCount() - count);
    for (int i = 0; i < item->childCount(); ++i)
        setText(item->child(i), parts[static_cast<std::size_t>(i)]);
    if (const int had = item->childCount(); had < count) {
        const std::vector<QlumDiagnosticText> added(parts.begin() + had, parts.end());
        insertChildren(*item, had, count - had, [&] { append(*item, added); });
    }
}

void QlumDiagnosticModel::fill(QlumDiagnosticItem& item, const QlumDiagnosticText& text)
{
    if (!text.label.isEmpty())
        item.label = text.label;
    item.text = text.text;
    item.isFault = text.isFault;
    item.bytes = text.bytes;
}

void QlumDiagnosticModel::append(QlumDiagnosticItem& parent, const std::vector<QlumDiagnosticText>& parts)
{
    for (const QlumDiagnosticText& part : parts) {
        QlumDiagnosticItem& item = parent.appendChild(std::make_unique<QlumDiagnosticItem>());
        fill(item, part);
        append(item, part.parts);
    }
}

void QlumDiagnosticModel::clearBelow(QlumDiagnosticItem& parent)
{
    for (int row = 0; row < parent.childCount(); ++row) {
        QlumDiagnosticItem& item = *parent.child(row);
        if (item.m_isGroup) {
            clearBelow(item);
            continue;
        }
        item.m_count.reset();
        item.more.clear();
        setText(&item, {});
    }
}

void QlumDiagnosticModel::clearValues()
{
    clearBelow(*m_root);
}

void QlumDiagnosticModel::setTree(const QlumDiagnosticText& tree)
{
    reset([&] {
        m_root->clearChildren();
        append(*m_root, tree.parts);
    });
}

QlumDiagnosticItem* QlumDiagnosticModel::find(const QString& label) const
{
    for (int row = 0; row < m_root->childCount(); ++row) {
        QlumDiagnosticItem* const item = m_root->child(row);
        if (item->label == label)
            return item;
        for (int child = 0; child < item->childCount(); ++child)
            if (item->child(child)->label == label)
                return item->child(child);
    }
    return nullptr;
}

namespace {
void writeBelow(const QlumDiagnosticItem& parent, const QString& indent, QString& text)
{
    for (int row = 0; row < parent.childCount(); ++row) {
        const QlumDiagnosticItem& item = *parent.child(row);
        text += indent + item.label;
        if (!item.text.isEmpty())
            text += QStringLiteral(": ") + item.text;
        if (!item.more.isEmpty())
            text += QStringLiteral(" (%1)").arg(item.more);
        text += QLatin1Char('\n');
        writeBelow(item, indent + QStringLiteral("  "), text);
    }
}
} // namespace

QString QlumDiagnosticModel::toText() const
{
    QString text;
    writeBelow(*m_root, QString(), text);
    return text;
}

QVariant QlumDiagnosticModel::cell(const QlumDiagnosticItem& item, int column, int role) const
{
    if (role == Qt::DisplayRole)
        return column == Parameter ? item.label : column == Value ? item.text : item.more;
    if (role == Qt::ToolTipRole && column == Value)
        return qlumPlainToolTip(item.text);
    if (role == Qt::TextAlignmentRole && column == More)
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (column == Value && item.isFault)
        return qlumStatusCell(QlumStatusLevel::Uncertain, role);
    return {};
}
