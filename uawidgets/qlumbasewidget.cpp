#include <uawidgets/qlumbasewidget.h>

#include <QSettings>
#include <QShowEvent>
#include <QString>
#include <QWidget>

namespace {
const auto geometryKey = QStringLiteral("geometry");
}

QlumBaseWidget::QlumBaseWidget(const QString& settingsGroup, QWidget* parent, Qt::WindowFlags flags)
    : QDialog(parent, flags), m_settingsGroup(settingsGroup)
{
    setObjectName(settingsGroup);
    setWindowFlag(Qt::WindowContextHelpButtonHint, true);
}

QlumBaseWidget::~QlumBaseWidget()
{
    if (!m_restored) // never shown: there is no size that the user chose
        return;
    QSettings settings;
    settings.beginGroup(m_settingsGroup);
    settings.setValue(geometryKey, saveGeometry());
}

void QlumBaseWidget::showEvent(QShowEvent* event)
{
    if (!m_restored) {
        m_restored = true;
        QSettings settings;
        settings.beginGroup(m_settingsGroup);
        restoreGeometry(settings.value(geometryKey).toByteArray());
    }
    QDialog::showEvent(event);
}
