#include <uawidgets/table/qlumemptytext.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QAbstractProxyModel>
#include <QColor>
#include <QEvent>
#include <QLabel>
#include <QPalette>

namespace {
constexpr int textMargin = 12;
}

QlumEmptyText::QlumEmptyText(QAbstractItemView* view, const QString& text)
    : QObject(view), m_view(view), m_label(new QLabel(view->viewport())), m_text(text)
{
    m_label->setObjectName(QStringLiteral("emptyText"));
    m_label->setTextFormat(Qt::PlainText);
    m_label->setWordWrap(true);
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setMargin(textMargin);
    m_label->setForegroundRole(QPalette::WindowText);
    applyColor();
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents); // what is dropped is the view's
    view->viewport()->installEventFilter(this);
    const QAbstractItemModel* model = view->model();
    connect(model, &QAbstractItemModel::rowsInserted, this, &QlumEmptyText::update);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &QlumEmptyText::update);
    connect(model, &QAbstractItemModel::modelReset, this, &QlumEmptyText::update);
    connect(model, &QAbstractItemModel::layoutChanged, this, &QlumEmptyText::update);
    update();
}

// Paler than rows, and still to be read. A label in the role of placeholders paints nothing.
void QlumEmptyText::applyColor()
{
    constexpr double strength = 0.65;
    QPalette palette = m_view->palette();
    QColor ink = palette.color(QPalette::Text);
    ink.setAlphaF(strength);
    palette.setColor(QPalette::WindowText, ink);
    m_label->setPalette(palette);
}

void QlumEmptyText::setText(const QString& text)
{
    m_text = text;
    update();
}

void QlumEmptyText::update()
{
    if (!m_label)
        return; // the view is being destroyed, and its own model lets its rows go
    const QAbstractItemModel* model = m_view->model();
    const auto* proxy = qobject_cast<const QAbstractProxyModel*>(model);
    const bool isFiltered = proxy && proxy->sourceModel() && proxy->sourceModel()->rowCount() > 0;
    m_label->setText(isFiltered ? tr("No row has what the filter asks for.") : m_text);
    m_label->setGeometry(m_view->viewport()->rect());
    m_label->setVisible(model && model->rowCount(m_view->rootIndex()) == 0);
}

bool QlumEmptyText::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        update();
    else if (event->type() == QEvent::PaletteChange && m_label)
        applyColor();
    return QObject::eventFilter(watched, event);
}
