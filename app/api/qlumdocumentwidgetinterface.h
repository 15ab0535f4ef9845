#pragma once
#include <QMap>
#include <QtPlugin>

class QSettings;

/// Implemented by document widgets whose content is kept in the project.
class QlumDocumentWidgetInterface
{
public:
    virtual ~QlumDocumentWidgetInterface() = default;

    /// Write the document's state into the group that the caller opened. Strings, numbers and byte arrays
    /// only: other types are refused when a project is read. Keys of server ids, and no others, end with
    /// "ServerId": a document whose tool is missing keeps its settings and translates these.
    virtual void saveSettings(QSettings& settings) = 0;
    /// Restore it; the map translates stored server ids to those of now.
    virtual void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) = 0;
};

#define QlumDocumentWidgetInterface_iid "com.korvanda.UaClient.DocumentWidgetInterface/1.0"
Q_DECLARE_INTERFACE(QlumDocumentWidgetInterface, QlumDocumentWidgetInterface_iid)
