#include <app/mainwindow/qlumdocumentarea.h>

#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumenttypes.h>
#include <app/api/qlumprojectnode.h>
#include <app/mainwindow/qlumdocumentdialog.h>
#include <app/mainwindow/qlumhelppages.h>
#include <app/pluginloader/qlumpluginloader.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>

#include <QDialog>
#include <QList>
#include <QString>
#include <QTabWidget>
#include <QWidget>

#include <memory>
#include <utility>

namespace {
// A tab's text is one where '&' marks a shortcut.
QString tabText(QString name)
{
    return name.replace(QLatin1Char('&'), QLatin1String("&&"));
}
} // namespace

QlumDocumentArea::QlumDocumentArea(QTabWidget* tabs, QlumProjectModel* project,
                                   const QlumPluginLoader* plugins, QObject* parent)
    : QObject(parent), m_tabs(tabs), m_project(project), m_plugins(plugins)
{
    connect(tabs, &QTabWidget::currentChanged, this, &QlumDocumentArea::sltCurrentTabChanged);
    connect(
        project, &QlumProjectModel::documentNodeChanged, this,
        [this](QlumProjectNode*, QWidget* widget, const QString& name) { sltDocumentRenamed(widget, name); });
}

QlumProjectNodeDocument* QlumDocumentArea::add(const QString& type, const QString& name)
{
    QlumDocumentInterface* plugin = m_plugins->pluginFromDocumentType(type);
    QWidget* widget = plugin ? plugin->createDocument(type) : nullptr;
    if (!widget)
        return nullptr;
    qlumSetHelpTool(widget, type);
    if (widget->whatsThis().isEmpty()) // for its parts that have none of their own
        widget->setWhatsThis(qlumDocumentTypeText(type, plugin->description(type)));
    auto node = std::make_unique<QlumProjectNodeDocument>(name, type);
    node->setWidget(widget);
    QlumProjectNodeDocument* document = m_project->addDocument(std::move(node));
    const int tab = m_tabs->addTab(widget, document->icon(), tabText(name));
    m_tabs->setCurrentIndex(tab);
    return document;
}

QlumProjectNodeDocument* QlumDocumentArea::bringUp(const QString& type)
{
    QlumProjectNodeDocument* found = current();
    if (found && found->documentType() == type)
        return found;
    for (QlumProjectNodeDocument* document : m_project->documents()) {
        if (document->documentType() != type)
            continue;
        show(document);
        return document;
    }
    return add(type, freeName(qlumDocumentTypeName(type)));
}

void QlumDocumentArea::remove(QlumProjectNodeDocument* document)
{
    QWidget* widget = document->widget();
    m_project->removeDocument(document);
    if (widget) {
        m_tabs->removeTab(m_tabs->indexOf(widget));
        delete widget;
    }
}

void QlumDocumentArea::clear()
{
    for (QlumProjectNodeDocument* document : m_project->documents())
        remove(document);
}

void QlumDocumentArea::show(const QlumProjectNodeDocument* document)
{
    m_tabs->setCurrentWidget(document->widget());
}

QlumProjectNodeDocument* QlumDocumentArea::current() const
{
    const QWidget* widget = m_tabs->currentWidget();
    return widget ? m_project->findDocument(widget) : nullptr;
}

QString QlumDocumentArea::freeName(const QString& type) const
{
    QString name = type;
    for (int i = 2; m_project->findDocument(name); ++i)
        name = QStringLiteral("%1 %2").arg(type).arg(i);
    return name;
}

QList<QlumDocumentType> QlumDocumentArea::types() const
{
    QList<QlumDocumentType> types;
    for (const QString& key : m_plugins->filenames()) {
        if (auto* plugin = qobject_cast<QlumDocumentInterface*>(m_plugins->plugin(key)))
            for (const QString& type : plugin->documentTypes())
                types.append({type, qlumDocumentTypeText(type, plugin->description(type)),
                              freeName(qlumDocumentTypeName(type))});
    }
    return types;
}

bool QlumDocumentArea::askAndAdd()
{
    QlumDocumentDialog dialog(
        types(), [this](const QString& name) { return m_project->findDocument(name) != nullptr; },
        m_tabs->window());
    return dialog.exec() == QDialog::Accepted && add(dialog.type(), dialog.name()) != nullptr;
}

void QlumDocumentArea::sltCurrentTabChanged()
{
    emit currentChanged(current());
}

void QlumDocumentArea::sltDocumentRenamed(QWidget* widget, const QString& name)
{
    if (const int tab = m_tabs->indexOf(widget); tab >= 0)
        m_tabs->setTabText(tab, tabText(name));
}
