#include <app/project/qlumprojectnodedocument.h>

#include <QIcon>
#include <QMessageBox>
#include <QString>
#include <QVariant>

namespace {
constexpr int maximumNameLength = 200;

bool isTaken(const QlumProjectNode* folder, const QlumProjectNode* self, const QString& name)
{
    if (!folder)
        return false;
    for (const QlumProjectNode* node : folder->childNodes())
        if (node != self && node->displayName() == name)
            return true;
    return false;
}

void refuse(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Warning, title, text, QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}
} // namespace

QlumProjectNodeDocument::QlumProjectNodeDocument(const QString& displayName, const QString& documentType)
    : QlumProjectNode(displayName), m_documentType(documentType)
{
}

Qt::ItemFlags QlumProjectNodeDocument::flags() const
{
    return QlumProjectNode::flags() | Qt::ItemIsEditable;
}

QString QlumProjectNodeDocument::whyNoName(const QString& name)
{
    if (name.isEmpty())
        return tr("A document needs a name.");
    if (name.size() > maximumNameLength)
        return tr("The name of a document can have at most %1 characters.").arg(maximumNameLength);
    // the name is a group in the project file, where these two separate groups
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')))
        return tr("The name of a document cannot contain '/' or '\\'.");
    return {};
}

bool QlumProjectNodeDocument::setData(const QVariant& value, int role)
{
    if (role != Qt::EditRole)
        return false;
    const QString name = value.toString().trimmed();
    if (name == displayName())
        return true;
    const QString title = tr("Error while renaming a document");
    if (const QString why = whyNoName(name); !why.isEmpty()) {
        refuse(title, why);
        return false;
    }
    if (isTaken(parentNode(), this, name)) {
        refuse(title, tr("A document with the name '%1' already exists.").arg(name));
        return false;
    }
    setDisplayName(name);
    return true;
}

QIcon QlumProjectNodeDocument::icon() const
{
    return QIcon(QStringLiteral(":/images/document.png"));
}

void QlumProjectNodeDocument::setDisplayName(const QString& name)
{
    if (name == displayName())
        return;
    QlumProjectNode::setDisplayName(name);
    emit documentNodeChanged(this, m_widget, name);
}
