#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

class QTreeWidget;
class QTreeWidgetItem;

/// Lists the plugins and the interfaces that they implement.
class QlumPluginDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    QlumPluginDialog(const QString& pluginFolder, const QStringList& fileNames, QWidget* parent = nullptr);

private:
    void findPlugins(const QString& folder, const QStringList& fileNames);
    void addPlugin(QObject* instance, const QString& label);
    void addFeatures(QTreeWidgetItem* parent, const QStringList& features);

    QTreeWidget* m_tree;
};
