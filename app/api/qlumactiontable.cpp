#include <app/api/qlumactiontable.h>

#include <QAction>
#include <QCoreApplication>
#include <QIcon>
#include <QObject>
#include <QString>

namespace {
QAction* makeAction(const QlumActionRow& row, const char* context, QObject* parent)
{
    const QString text = QCoreApplication::translate(context, row.text);
    const QString name = QString(text).remove(QLatin1Char('&'));
    const QString tip = *row.toolTip ? QCoreApplication::translate(context, row.toolTip) : name;
    auto* action = new QAction(text, parent);
    action->setObjectName(QLatin1String(row.name));
    if (*row.icon)
        action->setIcon(
            QIcon((*row.icon == ':' ? QString() : QStringLiteral(":/images/")) + QLatin1String(row.icon)));
    action->setShortcut(row.shortcut);
    action->setShortcutContext(row.context);
    action->setToolTip(tip);
    action->setStatusTip(tip);
    action->setWhatsThis(*row.whatsThis ? QCoreApplication::translate(context, row.whatsThis)
                                        : QStringLiteral("<b>%1</b><br>%2").arg(name, tip));
    return action;
}
} // namespace

QlumActionTable::QlumActionTable(std::span<const QlumActionRow> rows, const char* context, QObject* parent)
{
    for (const QlumActionRow& row : rows)
        m_actions.insert(row.id, makeAction(row, context, parent));
}

QList<QAction*> QlumActionTable::list(std::initializer_list<int> ids) const
{
    QList<QAction*> actions;
    for (const int id : ids)
        actions.append(m_actions.value(id));
    return actions;
}
