#pragma once
#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>

class QStackedWidget;
class QTabWidget;
class QlumProjectModel;

/// Keeps a start page where it belongs: in place of the documents while there is none, and above the document
/// that a new project begins with while the project has no server.
class QlumStartPagePlace : public QObject
{
    Q_OBJECT
public:
    /// The page is the first of the stack, the documents are the second.
    QlumStartPagePlace(QWidget* page, QStackedWidget* stack, QTabWidget* documents,
                       QlumProjectModel* project);

    /// The document that a new project begins with.
    void setFirstDocument(QWidget* document);
    void update();

protected:
    /// The page is as large as the document below it.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cover();

    QWidget* m_page;
    QStackedWidget* m_stack;
    QTabWidget* m_documents;
    QlumProjectModel* m_project;
    QPointer<QWidget> m_first;
};
