#pragma once
#include <app/mainwindow/qlumdocumentdialog.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QWidget>

class QTabWidget;
class QlumDocumentInterface;
class QlumPluginLoader;
class QlumProjectModel;
class QlumProjectNodeDocument;

/// The documents: tabs of the central tab widget, each with its node in the project.
class QlumDocumentArea : public QObject
{
    Q_OBJECT
public:
    QlumDocumentArea(QTabWidget* tabs, QlumProjectModel* project, const QlumPluginLoader* plugins,
                     QObject* parent);

    /// Opens a document as the front tab; null when no plugin knows the type.
    QlumProjectNodeDocument* add(const QString& type, const QString& name);
    /// A document of the type, in front: the one that is there already, else another, else a new one; null
    /// when no plugin knows the type.
    QlumProjectNodeDocument* bringUp(const QString& type);
    void remove(QlumProjectNodeDocument* document);
    void clear();
    void show(const QlumProjectNodeDocument* document);
    /// Of the front tab; null without one.
    [[nodiscard]] QlumProjectNodeDocument* current() const;
    /// The type itself or the type with the first free number.
    [[nodiscard]] QString freeName(const QString& type) const;

    /// What can be opened, each with a name that is free.
    [[nodiscard]] QList<QlumDocumentType> types() const;
    /// Lets the user choose a type and a name; true when a document was added.
    bool askAndAdd();

signals:
    /// Null when the last tab went.
    void currentChanged(QlumProjectNodeDocument* document);

private:
    void sltCurrentTabChanged();
    void sltDocumentRenamed(QWidget* widget, const QString& name);

    QTabWidget* m_tabs;
    QlumProjectModel* m_project;
    const QlumPluginLoader* m_plugins;
};
