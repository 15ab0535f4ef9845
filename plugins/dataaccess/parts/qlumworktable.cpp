#include <plugins/dataaccess/parts/qlumworktable.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QHeaderView>
#include <QLatin1String>
#include <QTableView>
#include <QWidget>

QTableView* qlumWorkTable(const char* name, const QString& accessibleName, QAbstractItemModel* model,
                          QWidget* parent)
{
    constexpr int rowMargin = 6;
    auto* table = new QTableView(parent);
    table->setObjectName(QLatin1String(name));
    table->setAccessibleName(accessibleName);
    table->setModel(model);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + rowMargin);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    return table;
}
