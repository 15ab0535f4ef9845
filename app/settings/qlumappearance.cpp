#include <app/settings/qlumappearance.h>

#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <app/ini/qluminicheck.h>
#include <app/ini/qluminitext.h>
#include <app/settings/qlumoutlinedstyle.h>
#include <app/settings/qlumsettingsmodel.h>
#include <uabase/system/uadir.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/qlumtimefield.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QByteArray>
#include <QColor>
#include <QRgb>
#include <QStringList>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

#include <array>
#include <string_view>
#include <utility>

namespace {
constexpr const char* scaleVariable = "QT_SCALE_FACTOR";

// Tables ask for their texts and colours when they are drawn.
void drawViewsAnew()
{
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* view = qobject_cast<QAbstractItemView*>(widget))
            view->viewport()->update();
}
} // namespace

QPalette qlumPalette(bool isDark)
{
    using Colours = std::array<std::pair<QPalette::ColorRole, QRgb>, 13>;
    constexpr Colours dark{{{QPalette::Window, 0xff2d3136},
                            {QPalette::WindowText, 0xffe8eaed},
                            {QPalette::Base, 0xff1f2226},
                            {QPalette::AlternateBase, 0xff262a2f},
                            {QPalette::Text, 0xffe8eaed},
                            {QPalette::Button, 0xff373c42},
                            {QPalette::ButtonText, 0xffe8eaed},
                            {QPalette::BrightText, 0xffffffff},
                            {QPalette::Highlight, 0xff2f6fb5},
                            {QPalette::HighlightedText, 0xffffffff},
                            {QPalette::Link, 0xff7ab8f5},
                            {QPalette::LinkVisited, 0xffb79df0},
                            {QPalette::PlaceholderText, 0xffa0a6ad}}};
    constexpr Colours light{{{QPalette::Window, 0xffefefef},
                             {QPalette::WindowText, 0xff1b1d1f},
                             {QPalette::Base, 0xffffffff},
                             {QPalette::AlternateBase, 0xfff5f6f7},
                             {QPalette::Text, 0xff1b1d1f},
                             {QPalette::Button, 0xffe6e7e9},
                             {QPalette::ButtonText, 0xff1b1d1f},
                             {QPalette::BrightText, 0xffffffff},
                             {QPalette::Highlight, 0xff2f6fb5},
                             {QPalette::HighlightedText, 0xffffffff},
                             {QPalette::Link, 0xff0a5aa8},
                             {QPalette::LinkVisited, 0xff5b3aa0},
                             {QPalette::PlaceholderText, 0xff6a7077}}};
    QPalette palette(QColor(isDark ? 0xff373c42 : 0xffe6e7e9), QColor(isDark ? 0xff2d3136 : 0xffefefef));
    for (const auto& [role, colour] : isDark ? dark : light)
        palette.setColor(role, QColor(colour));
    palette.setColor(QPalette::ToolTipBase, palette.color(QPalette::Base));
    palette.setColor(QPalette::ToolTipText, palette.color(QPalette::Text));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(isDark ? 0xff8a9098 : 0xff7b8087));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(isDark ? 0xff4a4f56 : 0xffc0c4c9));
    return palette;
}

QlumAppearance::QlumAppearance(const QlumSettingsModel& settings, QObject* parent)
    : QObject(parent), m_settings(settings), m_systemStyle(QApplication::style()->objectName()),
      m_systemPalette(QApplication::palette())
{
    connect(&settings, &QlumSettingsModel::valueChanged, this, &QlumAppearance::sltChanged);
    // what is set to the system is left alone: others may have changed it since
    if (m_settings.value(QlumSettings::palette.key()) != QlumSettings::palette.standard())
        applyPalette();
    applyStatus();
    applyTimes();
}

void QlumAppearance::applyPalette()
{
    const QString wanted = m_settings.value(QlumSettings::palette.key()).toString();
    const bool isDark = wanted == QLatin1String("Dark");
    const bool isOwn = isDark || wanted == QLatin1String("Light");
    // styles of desktops draw with colours of their own
    if (isOwn)
        QApplication::setStyle(new QlumOutlinedStyle);
    else
        QApplication::setStyle(m_systemStyle);
    QApplication::setPalette(isOwn ? qlumPalette(isDark) : m_systemPalette);
}

void QlumAppearance::applyStatus()
{
    qlumSetSafeStatusColours(m_settings.value(QlumSettings::safeStatusColours.key()).toBool());
    drawViewsAnew();
}

void QlumAppearance::applyTimes()
{
    const bool isUtc = m_settings.value(QlumSettings::utcTimes.key()).toBool();
    const bool wasUtc = qlumTimeLook().isUtc;
    qlumSetTimeLook(
        {isUtc, m_settings.value(QlumSettings::timeFormat.key()).toString() == QLatin1String("ISO")});
    drawViewsAnew();
    qlumRefreshTimeFields();
    if (isUtc == wasUtc)
        return;
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* plot = qobject_cast<QlumPlot*>(widget))
            plot->setUtc(isUtc);
}

void QlumAppearance::sltChanged(const QString& key)
{
    if (key == QlumSettings::palette.key())
        applyPalette();
    else if (key == QlumSettings::safeStatusColours.key())
        applyStatus();
    else if (key == QlumSettings::utcTimes.key() || key == QlumSettings::timeFormat.key())
        applyTimes();
}

// ---- before there is an application

QString qlumEarlySetting(const QString& key)
{
    const QlumIniCheck check = qlumCheckIniFile(toQString(UaDir::applicationDataPath()) +
                                                QStringLiteral("/korvanda/tavelin/tavelin.ini"));
    if (!check.readable)
        return {};
    const QlumIniText text = qlumReadIni(
        std::string_view(check.content.constData(), static_cast<std::size_t>(check.content.size())));
    return text.entries.value(key).value(0);
}

QlumScaleAsSet::QlumScaleAsSet()
{
    constexpr int smallest = 50;
    constexpr int largest = 400;
    if (qEnvironmentVariableIsSet(scaleVariable))
        return;
    bool isNumber = false;
    const int percent = qlumEarlySetting(QlumSettings::scale.key()).toInt(&isNumber);
    if (isNumber && percent >= smallest && percent <= largest)
        m_isSet = qputenv(scaleVariable, QByteArray::number(percent / 100.0));
}

QlumScaleAsSet::~QlumScaleAsSet()
{
    if (m_isSet)
        qunsetenv(scaleVariable);
}
