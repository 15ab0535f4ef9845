#include <app/mainwindow/qlumdocumentstack.h>

#include <QLayout>
#include <QTabBar>
#include <QTabWidget>
#include <QWidget>

#include <algorithm>

int QlumDocumentStack::heightForWidth(int width) const
{
    const QWidget* page = currentWidget();
    int height = 0;
    if (const auto* tabs = qobject_cast<const QTabWidget*>(page)) {
        height = tabs->tabBar()->sizeHint().height();
        page = tabs->currentWidget();
    }
    if (page && page->layout())
        height += page->layout()->minimumHeightForWidth(width);
    return std::max(height, minimumSizeHint().height());
}
