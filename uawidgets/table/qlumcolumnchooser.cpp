#include <uawidgets/table/qlumcolumnchooser.h>

#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemView>
#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QPoint>
#include <QString>
#include <QWidget>

QlumColumnChooser::QlumColumnChooser(QAbstractItemView* view)
    : QObject(view), m_header(qlumColumnHeader(view)), m_menu(new QMenu(tr("C&olumns"), view))
{
    Q_ASSERT(m_header);
    m_menu->setObjectName(QStringLiteral("columns"));
    m_menu->menuAction()->setObjectName(QStringLiteral("columns"));
    m_menu->menuAction()->setWhatsThis(
        tr("<b>Columns</b><br>Chooses which columns are shown. Their order is changed by dragging titles."));
    connect(m_menu, &QMenu::aboutToShow, this, &QlumColumnChooser::fillMenu);
    m_header->setSectionsMovable(true);
    m_header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_header, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { m_menu->popup(m_header->mapToGlobal(place)); });
    view->addAction(m_menu->menuAction());
    if (m_header->count() > 0 && m_header->hiddenSectionCount() == m_header->count())
        showAll();
}

void QlumColumnChooser::fillMenu()
{
    m_menu->clear();
    const int shown = m_header->count() - m_header->hiddenSectionCount();
    for (int place = 0; place < m_header->count(); ++place) {
        const int column = m_header->logicalIndex(place);
        const bool isShown = !m_header->isSectionHidden(column);
        QString title = m_header->model()->headerData(column, Qt::Horizontal).toString();
        QAction* action = m_menu->addAction(title.replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(isShown);
        action->setEnabled(!isShown || shown > 1);
        connect(action, &QAction::toggled, this, [this, column](bool on) { showColumn(column, on); });
    }
    m_menu->addSeparator();
    m_menu->addAction(tr("Show &All"), this, &QlumColumnChooser::showAll)
        ->setEnabled(shown < m_header->count());
}

void QlumColumnChooser::showColumn(int column, bool show)
{
    if (!show && m_header->hiddenSectionCount() + 1 >= m_header->count())
        return;
    m_header->setSectionHidden(column, !show);
    if (show && m_header->sectionSize(column) == 0)
        m_header->resizeSection(column, m_header->defaultSectionSize());
}

void QlumColumnChooser::showAll()
{
    for (int column = 0; column < m_header->count(); ++column)
        showColumn(column, true);
}
