#include <app/mainwindow/qlumshortcutsdialog.h>

#include <uawidgets/qlumformrow.h>

#include <QAction>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QKeySequence>
#include <QLineEdit>
#include <QSet>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>

#include <algorithm>
#include <tuple>

namespace {
QString shortcutPlace(const QAction& action, const QTabWidget* documents)
{
    for (QWidget* widget : action.associatedWidgets())
        for (const QWidget* above = widget; above; above = above->parentWidget()) {
            if (const auto* dock = qobject_cast<const QDockWidget*>(above))
                return dock->windowTitle();
            if (const int tab = documents->indexOf(const_cast<QWidget*>(above)); tab >= 0)
                return documents->tabText(tab);
        }
    return QlumShortcutsDialog::tr("Everywhere");
}
} // namespace

QList<QlumShortcutRow> qlumShortcutRows(const QWidget* window, const QTabWidget* documents)
{
    QList<QlumShortcutRow> rows;
    QSet<QString> seen;
    for (const QAction* action : window->findChildren<QAction*>()) {
        if (action->shortcuts().isEmpty() || action->text().isEmpty())
            continue;
        QlumShortcutRow row{QKeySequence::listToString(action->shortcuts(), QKeySequence::NativeText),
                            qlumBareLabel(action->text()), shortcutPlace(*action, documents)};
        const QString whole = QStringList{row.keys, row.command, row.place}.join(QLatin1Char('\n'));
        if (seen.contains(whole))
            continue;
        seen.insert(whole);
        rows.append(std::move(row));
    }
    std::sort(rows.begin(), rows.end(), [](const QlumShortcutRow& left, const QlumShortcutRow& right) {
        return std::tie(left.place, left.command) < std::tie(right.place, right.command);
    });
    return rows;
}

QlumShortcutsDialog::QlumShortcutsDialog(const QList<QlumShortcutRow>& rows, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumShortcutsDialog"), parent)
{
    setWindowTitle(tr("Keyboard Shortcuts"));
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 30);
    auto* search = new QLineEdit(this);
    qlumDescribeField(search, {QStringLiteral("shortcutSearch"),
                               tr("Search the commands"),
                               tr("<b>Search the commands</b><br>Shows only commands with this text."),
                               {}});
    search->setPlaceholderText(tr("Search"));
    search->setClearButtonEnabled(true);
    auto* list = new QTreeWidget(this);
    list->setObjectName(QStringLiteral("shortcuts"));
    list->setAccessibleName(tr("Keyboard shortcuts"));
    list->setHeaderLabels({tr("Command"), tr("Keys"), tr("Where")});
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    for (const QlumShortcutRow& row : rows)
        new QTreeWidgetItem(list, {row.command, row.keys, row.place});
    for (int column = 0; column < list->columnCount(); ++column)
        list->resizeColumnToContents(column);
    connect(search, &QLineEdit::textChanged, list, [list](const QString& text) {
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            QTreeWidgetItem* item = list->topLevelItem(row);
            const QString whole =
                item->text(0) + QLatin1Char(' ') + item->text(1) + QLatin1Char(' ') + item->text(2);
            item->setHidden(!whole.contains(text, Qt::CaseInsensitive));
        }
    });
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(search);
    layout->addWidget(list, 1);
    layout->addWidget(buttons);
}
