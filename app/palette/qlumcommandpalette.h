#pragma once
#include <QDialog>
#include <QEvent>
#include <QIcon>
#include <QObject>
#include <QString>
#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QLineEdit;
class QTreeWidget;

/// Something that can be chosen in the palette.
struct QlumPaletteEntry
{
    QString text;   ///< that is searched
    QString kind;   ///< "Command", "Server", ...
    QString detail; ///< shortcut or place; searched, too, but what is found there only comes last
    QIcon icon;
    std::function<void()> run;
    bool isEnabled = true; ///< what cannot be done now is shown, last and grey
};

/// Finds commands, servers, settings, projects and nodes by a few letters, and does what is chosen. The
/// entries are those of the moment when it opened.
class QlumCommandPalette : public QDialog
{
    Q_OBJECT
public:
    /// More are not shown at once, and the palette says so.
    static constexpr int maximumShown = 100;

    QlumCommandPalette(std::vector<QlumPaletteEntry> entries, QWidget* parent = nullptr);

    /// What was chosen, once it was accepted; runs after the dialog has gone.
    [[nodiscard]] std::function<void()> chosen() const { return m_chosen; }

protected:
    /// Arrow keys and pages go to the list while the keyboard is in the line.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeWidgets();
    void fill(const QString& letters);
    void choose();

    const std::vector<QlumPaletteEntry> m_entries;
    QLineEdit* m_line;
    QTreeWidget* m_list;
    QLabel* m_count;
    std::function<void()> m_chosen;
};
