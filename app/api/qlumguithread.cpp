#include <app/api/qlumguithread.h>

#include <QCoreApplication>
#include <QThread>

#if !defined(QT_NO_DEBUG) || defined(QT_FORCE_ASSERTS)
void qlumAssertGuiThread()
{
    Q_ASSERT(!QCoreApplication::instance() ||
             QCoreApplication::instance()->thread() == QThread::currentThread());
}
#endif
