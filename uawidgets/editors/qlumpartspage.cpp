#include <uawidgets/editors/qlumpartspage.h>

#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumpartdelegate.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/table/qlumtable.h>

#include <QAbstractItemView>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QObject>
#include <QTableView>

namespace {
const QString entryTopic = QStringLiteral("entry");
} // namespace

QlumPartsPage::QlumPartsPage(const QlumValueContext& context, QWidget* parent)
    : QlumValuePage(parent), m_context(context), m_messages(new QlumMessageBar(this)),
      m_summary(new QLabel(this))
{
    m_summary->setTextFormat(Qt::PlainText);
}

// An editor that is open loses the focus when the page goes, and gives its value to the model then: nobody is
// there any more to hear of that.
QlumPartsPage::~QlumPartsPage()
{
    for (QObject* child : findChildren<QObject*>())
        child->disconnect(this);
}

// ---- what is edited

void QlumPartsPage::showIn(QAbstractItemView* view, QlumPartDelegate* delegate)
{
    m_view = view;
    m_delegate = delegate;
    view->setItemDelegate(delegate);
    setFocusProxy(view);
    connect(delegate, &QlumPartDelegate::typing, this, [this] {
        m_messages->dismiss(entryTopic);
        emit edited();
    });
    connect(delegate, &QlumPartDelegate::refused, this, [this](const QString& why) {
        QlumMessage message;
        message.topic = entryTopic;
        message.what = why;
        m_messages->tell(message);
    });
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &QlumPartsPage::showAround);
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, &QlumPartsPage::showAround);
}

void QlumPartsPage::showElementsIn(QTableView* table, QlumPartDelegate* delegate, const QString& name,
                                   const QString& emptyText)
{
    table->setObjectName(name + QStringLiteral("View"));
    table->setAccessibleName(tr("Elements"));
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);
    table->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    table->setContextMenuPolicy(Qt::ActionsContextMenu);
    QlumTableOptions options;
    options.emptyText = emptyText;
    options.fileName = name;
    options.copiesItself = true;
    qlumMakeTable(table, options);
    showIn(table, delegate);
}

void QlumPartsPage::partsReset()
{
    m_check.reset();
    m_messages->dismiss();
    showAround();
}

void QlumPartsPage::partsChanged()
{
    m_check.reset();
    showAround();
    emit edited();
}

bool QlumPartsPage::takeOpen() const
{
    if (!m_delegate->openFault().isEmpty())
        return false;
    m_delegate->commitOpen();
    return true;
}

void QlumPartsPage::openPart(const QModelIndex& place, const QlumValueContext& context, const UaVariant& part,
                             const Putter& put)
{
    auto* dialog = new QlumValueDialog(context, this, QStringLiteral("QlumPartDialog"));
    dialog->setObjectName(QStringLiteral("partDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setHeading(placeOf(place));
    dialog->setValue(part);
    dialog->setReadOnly(!put);
    if (put)
        dialog->setTaker([put, kept = QPersistentModelIndex(place)](const UaVariant& taken) {
            if (!kept.isValid())
                return tr("The value has changed meanwhile, and this part of it is gone.");
            return put(kept, taken) ? QString() : tr("It is no value of the type that belongs there.");
        });
    dialog->open();
}

// ---- value page

bool QlumPartsPage::isModified() const
{
    return arePartsModified() || m_delegate->isOpenChanged();
}

QString QlumPartsPage::fault() const
{
    const QString why = m_delegate->openFault();
    return why.isEmpty() ? why : tr("%1: %2").arg(placeOf(m_view->currentIndex()), why);
}

QlumValueCheck QlumPartsPage::check() const
{
    if (!m_check)
        m_check = checkParts();
    QlumValueCheck all = *m_check;
    all.add(m_delegate->openCheck());
    return all;
}

QString QlumPartsPage::remark() const
{
    return check().text();
}

QString QlumPartsPage::refusal() const
{
    return check().refused;
}

QString QlumPartsPage::elementTypeName(OpcUa_BuiltInType type) const
{
    UaVariant none;
    static_cast<void>(none.attachArray(type, 0, nullptr)); // no elements need no memory
    QString name = qlumTypeTextOf(none, m_context);
    name.truncate(name.lastIndexOf(QLatin1Char('[')));
    return name;
}
