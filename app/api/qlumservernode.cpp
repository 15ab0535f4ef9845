#include <app/api/qlumservernode.h>

#include <QString>

void QlumServerNode::setDisplayName(const QString& name)
{
    if (name == displayName())
        return;
    QlumProjectNode::setDisplayName(name);
    emit nameChanged();
}

bool QlumServerNode::startConnect()
{
    emit connectEnded(connectServer());
    return true;
}

int QlumServerNode::namespaceIndexFromUri(const QString& uri) const
{
    return namespaceTable().indexOf(uri);
}

QString QlumServerNode::namespaceUriFromIndex(int index) const
{
    return namespaceTable().value(index);
}
