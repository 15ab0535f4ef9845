#pragma once
#include <QString>
#include <QStringList>
#include <QtPlugin>

class QWidget;

/// Offered by plugins that have document types.
class QlumDocumentInterface
{
public:
    virtual ~QlumDocumentInterface() = default;

    /// Names of the types; shown to the user and used as type key in project files.
    virtual QStringList documentTypes() = 0;
    /// A new document without parent, owned by the caller; null for a type that is not this plugin's. The
    /// widget also implements QlumDocumentWidgetInterface.
    virtual QWidget* createDocument(const QString& type) = 0;
    /// Rich text that tells the user what the type is for; its name is written above it.
    virtual QString description(const QString& type) = 0;
};

#define QlumDocumentInterface_iid "com.korvanda.UaClient.DocumentInterface/1.0"
Q_DECLARE_INTERFACE(QlumDocumentInterface, QlumDocumentInterface_iid)
