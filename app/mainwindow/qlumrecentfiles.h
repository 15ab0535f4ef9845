#pragma once
#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

class QMenu;
class QlumSettingsModel;

/// The projects used last, in a sub-menu and in the settings.
class QlumRecentFiles : public QObject
{
    Q_OBJECT
public:
    QlumRecentFiles(QlumSettingsModel* settings, QWidget* window);

    [[nodiscard]] QMenu* menu() const { return m_menu; }
    [[nodiscard]] QStringList files() const;
    /// Puts the file in the first place.
    void add(const QString& fileName);
    void remove(const QString& fileName);
    /// Shows what the settings hold now.
    void updateActions();
    /// As if the user chose it in the menu.
    void choose(const QString& fileName);

signals:
    /// The menu shows what the settings hold now.
    void updated();
    /// The user chose a file that exists.
    void chosen(const QString& fileName);

private:
    void store(const QStringList& files);

    QlumSettingsModel* m_settings;
    QWidget* m_window;
    QMenu* m_menu;
};
