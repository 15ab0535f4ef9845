#include <uawidgets/editors/qlumpartdialog.h>

#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluewidget.h>
#include <uawidgets/qlummessagebar.h>

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QSize>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

namespace {
constexpr QSize usualSize(560, 420);
}

QlumPartDialog::QlumPartDialog(const QlumValueContext& context, const QString& place, const UaVariant& part,
                               Taker take, QWidget* parent)
    : QDialog(parent), m_take(std::move(take)), m_messages(new QlumMessageBar(this)),
      m_value(new QlumValueWidget(context, this))
{
    setObjectName(QStringLiteral("partDialog"));
    setWindowTitle(m_take ? tr("Edit %1").arg(place) : place);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    m_value->setObjectName(QStringLiteral("part"));
    m_value->setReadOnly(!m_take);
    m_value->setValue(part);
    auto* buttons = new QDialogButtonBox(
        m_take ? QDialogButtonBox::Ok | QDialogButtonBox::Cancel : QDialogButtonBox::Close, this);
    // Enter ends the editing of a cell, not the dialog
    for (QAbstractButton* button : buttons->buttons())
        if (auto* push = qobject_cast<QPushButton*>(button)) {
            push->setAutoDefault(false);
            push->setDefault(false);
        }
    connect(buttons, &QDialogButtonBox::accepted, this, &QlumPartDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QlumPartDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_messages);
    layout->addWidget(m_value, 1);
    layout->addWidget(buttons);
    resize(usualSize);
    m_value->setFocus();
}

void QlumPartDialog::accept()
{
    QlumMessage message;
    message.what = tr("This cannot be taken.");
    UaVariant part;
    if (!m_value->value(part))
        message.why = m_value->fault();
    else if (m_value->isModified())
        message.why = m_take(part);
    else
        return QDialog::accept();
    if (message.why.isEmpty() && !part.isNull())
        return QDialog::accept();
    m_messages->tell(message);
}
