#pragma once
#include <app/api/qlumprojectnode.h>

#include <QIcon>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QWidget>

/// An open document: its type and the widget that shows it. The widget belongs to the document area.
class QlumProjectNodeDocument : public QlumProjectNode
{
    Q_OBJECT
public:
    QlumProjectNodeDocument(const QString& displayName, const QString& documentType);

    [[nodiscard]] int type() const override { return Document; }
    [[nodiscard]] Qt::ItemFlags flags() const override;
    /// Renames the document unless another one has that name or the name cannot be a name in a project file;
    /// then the user is told.
    bool setData(const QVariant& value, int role) override;
    [[nodiscard]] QIcon icon() const override;
    void setDisplayName(const QString& name) override;

    [[nodiscard]] QString documentType() const { return m_documentType; }
    [[nodiscard]] QWidget* widget() const { return m_widget; }
    void setWidget(QWidget* widget) { m_widget = widget; }

    /// Why a text cannot be the name of a document, for the user; empty when it can.
    [[nodiscard]] static QString whyNoName(const QString& name);

signals:
    void documentNodeChanged(QlumProjectNode* node, QWidget* widget, const QString& name);

private:
    QString m_documentType;
    QPointer<QWidget> m_widget;
};
