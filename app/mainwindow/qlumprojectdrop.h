#pragma once
#include <QEvent>
#include <QMimeData>
#include <QObject>
#include <QString>
#include <QWidget>

#include <functional>

/// Takes one project file that is dragged onto the window; views in it that take what is dragged come first.
class QlumProjectDrop : public QObject
{
    Q_OBJECT
public:
    /// What is done with the file; it may ask the user.
    QlumProjectDrop(QWidget* window, std::function<void(const QString&)> open);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void(const QString&)> m_open;
};

/// The one project file of this computer that is dragged; empty for anything else.
[[nodiscard]] QString qlumDraggedProject(const QMimeData* data);
