#include <app/mainwindow/qlumprojectdrop.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QTimer>
#include <QUrl>

#include <utility>

QString qlumDraggedProject(const QMimeData* data)
{
    if (!data || data->urls().size() != 1 || !data->urls().first().isLocalFile())
        return {};
    const QString file = data->urls().first().toLocalFile();
    return file.endsWith(QLatin1String(".uap")) ? file : QString();
}

QlumProjectDrop::QlumProjectDrop(QWidget* window, std::function<void(const QString&)> open)
    : QObject(window), m_open(std::move(open))
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool QlumProjectDrop::eventFilter(QObject* watched, QEvent* event)
{
    const bool isDrop = event->type() == QEvent::Drop;
    if (!isDrop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    const QString file = qlumDraggedProject(drop->mimeData());
    if (file.isEmpty())
        return QObject::eventFilter(watched, event);
    drop->setDropAction(Qt::CopyAction); // the file stays where it is
    drop->accept();
    // the other program waits for the answer, and the user may be asked
    if (isDrop)
        QTimer::singleShot(0, this, [this, file] { m_open(file); });
    return true;
}
