#include <app/startpage/qlumstartpageplace.h>

#include <app/project/qlumprojectmodel.h>

#include <QAbstractItemModel>
#include <QPoint>
#include <QRect>
#include <QStackedWidget>
#include <QTabWidget>

QlumStartPagePlace::QlumStartPagePlace(QWidget* page, QStackedWidget* stack, QTabWidget* documents,
                                       QlumProjectModel* project)
    : QObject(stack), m_page(page), m_stack(stack), m_documents(documents), m_project(project)
{
    connect(documents, &QTabWidget::currentChanged, this, &QlumStartPagePlace::update);
    connect(project, &QAbstractItemModel::rowsInserted, this, &QlumStartPagePlace::update);
    connect(project, &QAbstractItemModel::rowsRemoved, this, &QlumStartPagePlace::update);
    update();
}

void QlumStartPagePlace::setFirstDocument(QWidget* document)
{
    m_first = document;
    if (document)
        document->installEventFilter(this);
    update();
}

void QlumStartPagePlace::update()
{
    const bool hasDocuments = m_documents->count() > 0;
    if (!hasDocuments) {
        if (m_stack->indexOf(m_page) < 0)
            m_stack->insertWidget(0, m_page);
        m_stack->setCurrentWidget(m_page);
        return;
    }
    m_stack->setCurrentWidget(m_documents);
    // a sibling of what the document is in, so that it does not go with the document
    if (m_page->parentWidget() != m_documents)
        m_page->setParent(m_documents);
    const bool isAbove = m_first && m_documents->currentWidget() == m_first && m_project->servers().isEmpty();
    if (isAbove)
        cover();
    m_page->setVisible(isAbove);
}

void QlumStartPagePlace::cover()
{
    m_page->setGeometry(QRect(m_first->mapTo(m_documents, QPoint()), m_first->size()));
    m_page->raise();
}

bool QlumStartPagePlace::eventFilter(QObject* watched, QEvent* event)
{
    const bool hasMoved = event->type() == QEvent::Resize || event->type() == QEvent::Move;
    if (hasMoved && watched == m_first && m_page->parentWidget() == m_documents)
        cover();
    return QObject::eventFilter(watched, event);
}
