#include <uawidgets/qlumrolebox.h>

#include <uawidgets/qlumrolelook.h>

QlumRoleBox::QlumRoleBox(QWidget* parent) : QComboBox(parent)
{
    for (const QlumServerRole role :
         {QlumServerRole::Look, QlumServerRole::Operate, QlumServerRole::Commission}) {
        addItem(qlumRoleIcon(role), qlumRoleName(role), static_cast<int>(role));
        setItemData(count() - 1, qlumRoleExplanation(role), Qt::ToolTipRole);
    }
    setRole(qlumRoleOfNewServers());
}

QlumServerRole QlumRoleBox::role() const
{
    return static_cast<QlumServerRole>(currentData().toInt());
}

void QlumRoleBox::setRole(QlumServerRole role)
{
    setCurrentIndex(findData(static_cast<int>(role)));
}
