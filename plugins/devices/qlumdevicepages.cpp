#include <plugins/devices/qlumdevicepages.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/devices/qlumdevicelist.h>
#include <plugins/devices/qlumdevicewords.h>
#include <uawidgets/qlumformrow.h>
#include <uawidgets/qlumviewstate.h>
#include <uawidgets/qlumwrappingbar.h>

#include <QAbstractItemView>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLocale>
#include <QModelIndex>
#include <QPushButton>
#include <QSizePolicy>
#include <QTableView>
#include <QVBoxLayout>

#include <initializer_list>
#include <utility>

namespace {
QPushButton* deviceButton(const char* name, const QString& text, const QString& toolTip)
{
    auto* button = new QPushButton(text);
    qlumDescribeField(button, {QLatin1String(name), text, {}, toolTip});
    return button;
}

QLabel* deviceLabel(const char* name)
{
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void fillPage(QWidget* page, std::initializer_list<QWidget*> buttons, QWidget* view)
{
    auto* row = new QlumWrappingBar;
    for (QWidget* const button : buttons)
        row->add(button);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(row);
    layout->addWidget(view, 1);
}
} // namespace

// ---- methods

QlumDeviceMethodPage::QlumDeviceMethodPage(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_model(new QlumDeviceListModel({tr("Method"), tr("Groups")}, this)),
      m_view(qlumMakeDeviceTable(m_model, QStringLiteral("deviceMethods"), tr("Methods of the device"),
                                 tr("The device has no methods."), &state)),
      m_call(deviceButton("deviceCall", tr("&Call..."), tr("Call the selected method of the device")))
{
    fillPage(this, {m_call}, m_view);
    connect(m_call, &QPushButton::clicked, this, &QlumDeviceMethodPage::call);
    connect(m_view, &QTableView::doubleClicked, this, &QlumDeviceMethodPage::call);
}

void QlumDeviceMethodPage::setMethods(unsigned int serverId, const std::vector<QlumDeviceMethod>& methods)
{
    m_serverId = serverId;
    m_methods = methods;
    std::vector<QlumDeviceListRow> rows;
    for (const QlumDeviceMethod& method : methods)
        rows.push_back({{method.name, method.groups.join(QStringLiteral(", "))}});
    m_model->setRows(std::move(rows));
    if (!m_methods.empty())
        m_view->selectRow(0);
    m_call->setEnabled(!m_methods.empty());
}

void QlumDeviceMethodPage::call()
{
    const int row = m_view->currentIndex().row();
    QlumToolServices* const tools = QlumToolServices::instance();
    if (row < 0 || row >= static_cast<int>(m_methods.size()))
        return;
    const QlumDeviceMethod method = m_methods[static_cast<std::size_t>(row)];
    if (!tools || !tools->callMethod(m_serverId, method.object, method.id))
        emit told(tr("%1 was not called.").arg(method.name), tr("There is no tool that calls methods."));
}

// ---- documents

QlumDeviceDocumentPage::QlumDeviceDocumentPage(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_model(new QlumDeviceListModel({tr("Document"), tr("Kind"), tr("Where")}, this)),
      m_view(qlumMakeDeviceTable(m_model, QStringLiteral("deviceDocuments"), tr("Documents of the device"),
                                 tr("The device has no documents."), &state)),
      m_open(deviceButton("deviceOpenDocument", tr("&Open"),
                          tr("Show an image or a text here, or a page of the web in the browser"))),
      m_save(deviceButton("deviceSaveDocument", tr("Sa&ve As..."), tr("Save the document to a file")))
{
    fillPage(this, {m_open, m_save}, m_view);
    const auto open = [this] {
        if (const QlumDeviceDocument* const document = chosen(); document && m_open->isEnabled())
            emit openWanted(*document);
    };
    connect(m_open, &QPushButton::clicked, this, open);
    connect(m_view, &QTableView::doubleClicked, this, open);
    connect(m_save, &QPushButton::clicked, this, [this] {
        if (const QlumDeviceDocument* const document = chosen())
            emit saveWanted(*document);
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QlumDeviceDocumentPage::updateButtons);
}

void QlumDeviceDocumentPage::setDocuments(const std::vector<QlumDeviceDocument>& documents)
{
    m_documents = documents;
    std::vector<QlumDeviceListRow> rows;
    for (const QlumDeviceDocument& document : documents) {
        const QString place = document.isOfType ? tr("on the server, of the device's type")
                                                : tr("on the server, of the device");
        rows.push_back({{document.name, document.folder.isEmpty() ? tr("Manual") : document.folder,
                         document.address.isEmpty() ? place : document.address}});
    }
    m_model->setRows(std::move(rows));
    if (!m_documents.empty())
        m_view->selectRow(0);
    updateButtons();
}

void QlumDeviceDocumentPage::setReady(bool isReady)
{
    m_isReady = isReady;
    updateButtons();
}

const QlumDeviceDocument* QlumDeviceDocumentPage::chosen() const
{
    const int row = m_view->currentIndex().row();
    return row >= 0 && row < static_cast<int>(m_documents.size())
               ? &m_documents[static_cast<std::size_t>(row)]
               : nullptr;
}

void QlumDeviceDocumentPage::updateButtons()
{
    const QlumDeviceDocument* const document = chosen();
    const bool isHere = document && document->address.isEmpty();
    m_open->setEnabled(document && (!isHere || m_isReady));
    m_save->setEnabled(isHere && m_isReady);
}

// ---- transfers

QlumDeviceTransferPage::QlumDeviceTransferPage(QlumViewState& state, QWidget* parent)
    : QWidget(parent), m_model(new QlumDeviceListModel({tr("Parameter"), tr("Result")}, this)),
      m_view(qlumMakeDeviceTable(m_model, QStringLiteral("deviceTransferResults"),
                                 tr("Results of the transfer"),
                                 tr("What the device says of each parameter appears here."), &state)),
      m_to(deviceButton("deviceTransferTo", tr("&To Device"),
                        tr("Send the parameters that the server has to the device"))),
      m_from(deviceButton("deviceTransferFrom", tr("Fro&m Device"),
                          tr("Have the server fetch the parameters of the device"))),
      m_cancel(deviceButton("deviceTransferCancel", tr("&Cancel"), tr("Ask for no more results"))),
      m_note(deviceLabel("deviceTransferNote")), m_result(deviceLabel("deviceTransferResult"))
{
    fillPage(this, {m_to, m_from, m_cancel}, m_view);
    auto* const all = static_cast<QVBoxLayout*>(layout());
    all->insertWidget(1, m_note);
    all->insertWidget(2, m_result);
    connect(
        m_to, &QPushButton::clicked, this, [this] { emit transferWanted(true); });
    connect(m_from, &QPushButton::clicked, this, [this] { emit transferWanted(false); });
    connect(m_cancel, &QPushButton::clicked, this, &QlumDeviceTransferPage::cancelWanted);
    m_result->hide();
}

void QlumDeviceTransferPage::setState(bool isReady, bool isRunning, const QString& note)
{
    m_to->setEnabled(isReady && !isRunning);
    m_from->setEnabled(isReady && !isRunning);
    m_cancel->setEnabled(isRunning);
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

void QlumDeviceTransferPage::setOutcome(const QlumTransferOutcome& outcome)
{
    std::vector<QlumDeviceListRow> rows;
    int refused = 0;
    for (const QlumTransferRow& row : outcome.rows) {
        refused += row.status.isBad() ? 1 : 0;
        rows.push_back({{row.path, row.status.isGood() ? tr("Good") : qlumResultInWords(row.status)},
                        qlumStatusLevel(row.status.code())});
    }
    const int count = static_cast<int>(rows.size());
    m_model->setRows(std::move(rows));
    m_view->resizeColumnToContents(0);
    m_result->setText(outcome.fault.isEmpty()
                          ? tr("Done: %1 parameters, %2 of them refused.").arg(count).arg(refused)
                          : tr("Not finished after %1 parameters: %2.").arg(count).arg(outcome.fault));
    m_result->show();
}

void QlumDeviceTransferPage::clear()
{
    m_model->setRows({});
    m_result->hide();
}

// ---- lock

QlumDeviceLockBar::QlumDeviceLockBar(QWidget* parent)
    : QlumWrappingBar(parent), m_text(deviceLabel("deviceLockText")),
      m_lock(deviceButton("deviceLock", tr("&Lock"),
                          tr("Lock the device, so that nobody else changes it meanwhile"))),
      m_unlock(deviceButton("deviceUnlock", tr("&Unlock"), tr("Let others change the device again"))),
      m_break(deviceButton("deviceBreakLock", tr("&Break Lock..."),
                           tr("End the lock of somebody else; servers let administrators do that")))
{
    setObjectName(QStringLiteral("deviceLockBar"));
    m_text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    add(m_text);
    for (QPushButton* const button : {m_lock, m_unlock, m_break})
        add(button);
    connect(m_lock, &QPushButton::clicked, this, &QlumDeviceLockBar::lockWanted);
    connect(m_unlock, &QPushButton::clicked, this, &QlumDeviceLockBar::unlockWanted);
    connect(m_break, &QPushButton::clicked, this, &QlumDeviceLockBar::breakWanted);
}

void QlumDeviceLockBar::setLock(const QString& holder, const QlumDeviceLockState& state, bool isHeld,
                                bool isReady)
{
    const QString remaining = state.remaining > 0
                                  ? tr(", for %1 s more unless it is renewed")
                                        .arg(QLocale::system().toString(state.remaining / 1000, 'f', 0))
                                  : QString();
    if (isHeld)
        m_text->setText(tr("%1 is locked by you%2.").arg(holder, remaining));
    else if (state.isLocked)
        m_text->setText(tr("%1 is locked by %2%3.").arg(holder, qlumDeviceOwnerText(state), remaining));
    else
        m_text->setText(state.isKnown ? tr("%1 is not locked.").arg(holder)
                                      : tr("Whether %1 is locked cannot be read.").arg(holder));
    m_lock->setEnabled(isReady && !isHeld && !state.isLocked);
    m_unlock->setEnabled(isReady && isHeld);
    m_break->setEnabled(isReady && !isHeld && state.isLocked);
}
