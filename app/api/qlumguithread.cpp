#include <app/api/qlumguithread.h>

#include <QCoreApplication>
#include <QThread>

void qlumAssertGuiThread()
{
    Q_ASSERT(!QCoreApplication::instance() ||
             QCoreApplication::instance()->thread() == QThread::currentThread());
}
