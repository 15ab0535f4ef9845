#pragma once
#include <app/api/qlumservicerecorder.h>
#include <app/api/qlumstructuretree.h>
#include <uawidgets/models/qlumtreemodel.h>
#include <uawidgets/models/qlumtreenode.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

/// A row of the details.
class QlumServiceDetail : public QlumTreeNode<QlumServiceDetail>
{
public:
    QString name;
    QString type;
    QString value;
};

/// One call in all detail: how its time passed, its request and its response. It is decoded when it is shown.
class QlumServiceDetails : public QlumTreeModel<QlumServiceDetail>
{
    Q_OBJECT
public:
    enum Column { Name, Value, Type };

    explicit QlumServiceDetails(QObject* parent = nullptr);

    void show(const QlumServiceRecord& record);
    void clear();

protected:
    [[nodiscard]] QVariant cell(const QlumServiceDetail& node, int column, int role) const override;

private:
    void addTimes(const QlumServiceRecord& record);
    void addMessage(const QString& name, const QlumServiceRecord& record, const QlumServiceMessage* message,
                    const QString& missing);
    QlumServiceDetail& add(QlumServiceDetail& parent, const QString& name, const QString& value,
                           const QString& type = QString());
    void addFields(QlumServiceDetail& parent, const QlumFieldText& field);

    std::unique_ptr<QlumServiceDetail> m_root;
};
