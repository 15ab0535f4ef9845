#include <app/api/qlumdocksize.h>

#include <QDockWidget>
#include <QSize>
#include <QVariant>

namespace {
constexpr const char* sizeProperty = "qlumInitialSize";
}

void qlumSetInitialDockSize(QDockWidget* dock, const QSize& size)
{
    dock->setProperty(sizeProperty, size);
}

QSize qlumInitialDockSize(const QDockWidget* dock)
{
    const QVariant size = dock->property(sizeProperty);
    return size.isValid() ? size.toSize() : QSize(0, 0);
}
