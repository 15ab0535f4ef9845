#include <uawidgets/editors/qlumvaluewidget.h>

#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumscalarpage.h>

#include <QString>
#include <QVBoxLayout>
#include <QWidget>

#include <utility>

QlumValueWidget::QlumValueWidget(QlumValueContext context, QWidget* parent)
    : QlumValuePage(parent), m_context(std::move(context))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

void QlumValueWidget::setValue(const UaVariant& value)
{
    if (!m_page) {
        m_page = new QlumScalarPage(m_context, this);
        m_page->setReadOnly(m_readOnly);
        layout()->addWidget(m_page);
        setFocusProxy(m_page);
        connect(m_page, &QlumValuePage::edited, this, &QlumValuePage::edited);
    }
    m_page->setValue(value);
}

bool QlumValueWidget::value(UaVariant& value) const
{
    return m_page && m_page->value(value);
}

bool QlumValueWidget::isModified() const
{
    return m_page && m_page->isModified();
}

QString QlumValueWidget::fault() const
{
    return m_page ? m_page->fault() : QString();
}

QString QlumValueWidget::remark() const
{
    return m_page ? m_page->remark() : QString();
}

void QlumValueWidget::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    if (m_page)
        m_page->setReadOnly(readOnly);
}
