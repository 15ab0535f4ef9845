#include <app/api/qlumdocumenttypes.h>

#include <QCoreApplication>

namespace {
// The tools keep their types as keys; their names stand together here, since only translators ask for them.
[[maybe_unused]] constexpr const char* documentTypeNames[] = {
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Data Access View"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Data Logger View"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Devices View"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Event View"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "GDS View (Push Model)"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "History Trend View"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Image Viewer"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Performance View"),
    QT_TRANSLATE_NOOP("QlumDocumentTypes", "Server Diagnostics View"),
};
} // namespace

QString qlumDocumentTypeName(const QString& type)
{
    return QCoreApplication::translate("QlumDocumentTypes", type.toUtf8().constData());
}

QString qlumDocumentTypeText(const QString& type, const QString& description)
{
    return QStringLiteral("<b>%1</b><br>%2").arg(qlumDocumentTypeName(type).toHtmlEscaped(), description);
}
