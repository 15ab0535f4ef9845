#pragma once
#include <app/palette/qlumcommandpalette.h>

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class QMainWindow;
class QMenu;
class QTreeView;
class QlumAddressSpacePages;
class QlumDocumentArea;
class QlumProjectModel;
class QlumRecentFiles;

/// Gathers what the command palette offers: every action of the menus and of the context menus in sight,
/// servers and documents of the project, settings, recent projects, and the nodes that the tree in front has
/// loaded.
class QlumPaletteCommands : public QObject
{
    Q_OBJECT
public:
    struct Parts
    {
        QMainWindow* window;
        QlumProjectModel* project;
        QTreeView* projectView;
        QlumAddressSpacePages* pages;
        QlumRecentFiles* recentFiles;
        std::function<void(const QString& key)> configure; ///< the settings dialog, at that setting
        std::function<QStringList()> documentTypes;
        std::function<void(const QString& type)> addDocument;
    };

    explicit QlumPaletteCommands(const Parts& parts);

    /// All of it, as of now.
    [[nodiscard]] std::vector<QlumPaletteEntry> entries() const;

public slots:
    void show();

private:
    using Entries = std::vector<QlumPaletteEntry>;

    void addActions(Entries& entries) const;
    void addMenu(Entries& entries, const QMenu& menu, const QString& path) const;
    void addProject(Entries& entries) const;
    void addSettings(Entries& entries) const;
    void addRecent(Entries& entries) const;
    void addNodes(Entries& entries) const;

    Parts m_parts;
};
