#include <app/pluginloader/qlumplugindialog.h>

#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumenttypes.h>
#include <app/api/qlumplugininterface.h>
#include <app/pluginloader/qlumpluginnames.h>
#include <uawidgets/table/qlumtable.h>

#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFont>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QObject>
#include <QObjectList>
#include <QPluginLoader>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVBoxLayout>
#include <QWidget>

QlumPluginDialog::QlumPluginDialog(const QString& pluginFolder, const QStringList& fileNames, QWidget* parent)
    : QlumBaseWidget(QStringLiteral("QlumPluginDialog"), parent), m_tree(new QTreeWidget(this))
{
    setWindowTitle(tr("Plugin Information"));
    setWhatsThis(
        tr("<b>Plugin Information</b><br>Shows all loaded plugins and the interfaces they implement."));

    auto* header = new QLabel(tr("Tavelin found the following plugins\n(Plugin Dir: %1)")
                                  .arg(QDir::toNativeSeparators(pluginFolder)),
                              this);
    header->setObjectName(QStringLiteral("header"));
    header->setTextFormat(Qt::PlainText);
    header->setWordWrap(true);

    m_tree->setObjectName(QStringLiteral("plugins"));
    m_tree->setAccessibleName(tr("Plugins"));
    m_tree->setColumnCount(2);
    m_tree->setHeaderHidden(true);
    m_tree->setAlternatingRowColors(false);
    m_tree->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    qlumMakeTable(m_tree, {tr("No plugins were found."), tr("plugins"), nullptr, QString()});

    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName(QStringLiteral("ok"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(header);
    layout->addWidget(m_tree);
    layout->addWidget(ok, 0, Qt::AlignRight);
    resize(480, 420);
    findPlugins(pluginFolder, fileNames);
}

void QlumPluginDialog::findPlugins(const QString& folder, const QStringList& fileNames)
{
    const QObjectList instances = QPluginLoader::staticInstances();
    for (QObject* instance : instances)
        addPlugin(instance, tr("Static Plugin"));
    for (const QString& fileName : fileNames) {
        QPluginLoader loader(QDir(folder).absoluteFilePath(fileName));
        if (QObject* instance = loader.instance())
            addPlugin(instance, fileName);
    }
}

void QlumPluginDialog::addPlugin(QObject* instance, const QString& label)
{
    auto* row = new QTreeWidgetItem(m_tree);
    auto* plugin = qobject_cast<QlumPluginInterface*>(instance);
    row->setText(0, plugin ? tr("%1 (%2)").arg(qlumPluginShown(plugin->name()), label) : label);
    QFont bold = row->font(0);
    bold.setWeight(QFont::Bold);
    row->setFont(0, bold);
    row->setFirstColumnSpanned(true);

    const auto addInterface = [row](const QString& name) {
        auto* item = new QTreeWidgetItem(row);
        item->setText(0, name);
        item->setIcon(0, QIcon(QStringLiteral(":/images/plugininterface.png")));
        return item;
    };
    if (plugin)
        addInterface(QStringLiteral("PluginInterface"));
    if (qobject_cast<QlumAppEventInterface*>(instance))
        addInterface(QStringLiteral("ApplicationEventInterface"));
    if (auto* documents = qobject_cast<QlumDocumentInterface*>(instance)) {
        QTreeWidgetItem* item = addInterface(QStringLiteral("DocumentInterface"));
        addFeatures(item, documents->documentTypes());
        item->setExpanded(true);
    }
    row->setExpanded(true);
}

void QlumPluginDialog::addFeatures(QTreeWidgetItem* parent, const QStringList& features)
{
    for (QString feature : features) {
        if (feature.endsWith(QLatin1String("...")))
            feature.chop(3);
        auto* item = new QTreeWidgetItem(parent);
        item->setText(0, qlumDocumentTypeName(feature));
        item->setIcon(0, QIcon(QStringLiteral(":/images/pluginfeature.png")));
    }
}
