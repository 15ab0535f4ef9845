// What the user does with a data logger view.
#include <plugins/datalogger/qlumloggerview.h>

#include <app/api/qlumdisplaytext.h>
#include <plugins/datalogger/qlumloggermodel.h>
#include <plugins/datalogger/qlumloggersession.h>
#include <plugins/datalogger/qlumloggersetupdialog.h>
#include <plugins/datalogger/qlumrecordingwindow.h>
#include <watching/qlumdasettingsdialog.h>

#include <QAction>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QMessageBox>
#include <QString>
#include <QTableView>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#define LOGGER_TEXT(text) QT_TRANSLATE_NOOP("QlumLoggerView", text)

namespace {

using L = QlumLoggerView;

constexpr std::array<QlumActionRow, 11> loggerRows{{
    {L::StartStop, "startRecording", LOGGER_TEXT("&Start"), "", qlumNoKey,
     LOGGER_TEXT("Starts or stops recording"),
     LOGGER_TEXT("<b>Start</b><br>Records all items that are not switched off, until you press Stop.")},
    {L::Setup, "recordingSettings", LOGGER_TEXT("Recording Se&ttings..."), "", qlumNoKey,
     LOGGER_TEXT("File, free space, and how much is kept"),
     LOGGER_TEXT("<b>Recording Settings</b><br>The file, how much room is left on the disk, and how much of "
                 "the past is kept.")},
    {L::AddNote, "recordNote", LOGGER_TEXT("&Note..."), "", qlumNoKey,
     LOGGER_TEXT("Records a note of yours with the time"),
     LOGGER_TEXT("<b>Note</b><br>Records a text of yours with the time of now.")},
    {L::OpenRecording, "openRecording", LOGGER_TEXT("&Open a Recording..."), "", qlumNoKey, "",
     LOGGER_TEXT("<b>Open a Recording</b><br>Shows a recording that was made here or elsewhere; no server is "
                 "needed.")},
    {L::ShowRecording, "showRecording", LOGGER_TEXT("Show &Recording"), "", qlumNoKey,
     LOGGER_TEXT("What has been recorded so far"),
     LOGGER_TEXT("<b>Show Recording</b><br>Shows what is in the file of this view: items, events, values.")},
    {L::StartItems, "startItems", LOGGER_TEXT("Switch Items O&n"), "", qlumNoKey, "",
     LOGGER_TEXT("<b>Switch Items On</b><br>Has the selected items recorded."), Qt::WidgetShortcut},
    {L::StopItems, "stopItems", LOGGER_TEXT("Switch Items O&ff"), "", qlumNoKey, "",
     LOGGER_TEXT(
         "<b>Switch Items Off</b><br>The selected items are not recorded any more, while the others are."),
     Qt::WidgetShortcut},
    {L::ItemSettings, "itemSettings", LOGGER_TEXT("Settings of &Items..."), "", qlumNoKey, "",
     LOGGER_TEXT(
         "<b>Settings of Items</b><br>How the selected items are watched: intervals, queue, deadband."),
     Qt::WidgetShortcut},
    {L::ViewSettings, "loggerViewSettings", LOGGER_TEXT("Settings of the &View..."), "", qlumNoKey, "",
     LOGGER_TEXT(
         "<b>Settings of the View</b><br>How all items are watched that have no settings of their own."),
     Qt::WidgetShortcut},
    {L::AskAgain, "loggerAskAgain", LOGGER_TEXT("Ask Servers A&gain"), "", qlumNoKey, "",
     LOGGER_TEXT(
         "<b>Ask Servers Again</b><br>Tries once more to have items watched that servers have refused."),
     Qt::WidgetShortcut},
    {L::Remove, "removeItems", LOGGER_TEXT("Re&move"), "", QKeySequence::Delete, "",
     LOGGER_TEXT(
         "<b>Remove</b><br>Takes the selected items out of this view. What is recorded of them stays."),
     Qt::WidgetShortcut},
}};

} // namespace

void QlumLoggerView::makeActions()
{
    m_actions = QlumActionTable(loggerRows, "QlumLoggerView", this);
    const auto on = [this](Command id, std::function<void()> act) {
        m_table->addAction(m_actions[id]);
        connect(
            m_actions[id], &QAction::triggered, this, [act = std::move(act)] { act(); });
    };
    on(
        StartItems, [this] { switchItems(selectedKeys(), true); });
    on(
        StopItems, [this] { switchItems(selectedKeys(), false); });
    on(
        ItemSettings, [this] { askSettings(selectedKeys()); });
    on(
        ViewSettings, [this] { askSettings({}); });
    on(
        AskAgain, [this] { m_session->retry(); });
    on(Remove, [this] { removeItems(selectedKeys()); });
    connect(m_actions[StartStop], &QAction::triggered, this, &QlumLoggerView::startOrStop);
    connect(m_actions[Setup], &QAction::triggered, this, &QlumLoggerView::askSetup);
    connect(m_actions[AddNote], &QAction::triggered, this, &QlumLoggerView::askNote);
    connect(m_actions[OpenRecording], &QAction::triggered, this, &QlumLoggerView::askRecording);
    connect(m_actions[ShowRecording], &QAction::triggered, this, [this] {
        const QString path = m_session->status().path;
        openRecording(path.isEmpty() ? m_setup.path : path);
    });
}

void QlumLoggerView::showCommands()
{
    const bool isRunning = m_session->isRunning();
    const bool hasSelection = m_table->selectionModel()->hasSelection();
    m_actions[StartStop]->setText(isRunning ? tr("&Stop") : tr("&Start"));
    m_actions[StartStop]->setEnabled(isRunning || (!m_session->isStopping() && m_model->rowCount() > 0));
    m_actions[AddNote]->setEnabled(isRunning);
    m_actions[ShowRecording]->setEnabled(m_setup.kind == QlumLoggerSetup::Sqlite);
    for (const Command command : {StartItems, StopItems, ItemSettings, Remove})
        m_actions[command]->setEnabled(hasSelection);
}

void QlumLoggerView::startOrStop()
{
    if (m_session->isRunning())
        m_session->stop();
    else
        m_session->start(m_setup);
}

// ---- questions

void QlumLoggerView::setSetup(const QlumLoggerSetup& setup)
{
    if (setup == m_setup)
        return;
    m_setup = setup;
    markModified();
    showCommands();
    if (m_session->isRunning())
        m_messages->tell({QlumMessage::Note,
                          QStringLiteral("setup"),
                          tr("The new settings hold from the next start on."),
                          tr("The recording that runs goes on as it is."),
                          {},
                          {}});
}

void QlumLoggerView::askSetup()
{
    auto* dialog = new QlumLoggerSetupDialog(m_setup, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] { setSetup(dialog->setup()); });
    dialog->open();
}

void QlumLoggerView::askNote()
{
    auto* dialog = new QInputDialog(this);
    dialog->setObjectName(QStringLiteral("noteDialog"));
    dialog->setWindowTitle(tr("Note"));
    dialog->setLabelText(tr("Is recorded with the time at which you press OK:"));
    dialog->setInputMode(QInputDialog::TextInput);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QInputDialog::textValueSelected, this, [this](const QString& text) {
        if (!text.trimmed().isEmpty())
            m_session->note(text);
    });
    dialog->open();
}

void QlumLoggerView::askRecording()
{
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open a Recording"), QFileInfo(m_setup.path).absolutePath(),
                                     tr("Recordings (*.sqlite);;All files (*)"));
    if (!path.isEmpty())
        openRecording(path);
}

void QlumLoggerView::openRecording(const QString& path)
{
    auto* window = new QlumRecordingWindow(path, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
}

// Of several items only what the user touches is changed in all.
void QlumLoggerView::askSettings(const std::vector<quint32>& keys)
{
    const QlumLoggerItem* const first = keys.empty() ? nullptr : m_model->find(keys.front());
    const QString heading = first == nullptr ? tr("All items of this view that have no settings of their own")
                            : keys.size() == 1
                                ? qlumSingleLine(first->name)
                                : tr("%n item(s); what is not touched stays as each of them has it", nullptr,
                                     static_cast<int>(keys.size()));
    auto* dialog = new QlumDaSettingsDialog(
        heading, first ? m_model->settingsOf(*first) : m_model->viewSettings(), std::nullopt, this);
    dialog->offerNoReading();
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, keys] {
        if (keys.empty()) {
            m_model->setViewSettings(dialog->applied(m_model->viewSettings()));
            std::vector<quint32> all;
            for (const QlumLoggerItem& item : m_model->rows())
                if (!item.settings)
                    all.push_back(item.key);
            m_session->applySettings(all);
        } else {
            for (const quint32 key : keys)
                if (const QlumLoggerItem* item = m_model->find(key)) {
                    const auto wanted =
                        std::make_shared<QlumDataSettings>(dialog->applied(m_model->settingsOf(*item)));
                    const bool isAsView = *wanted == m_model->viewSettings();
                    m_model->changeItem(
                        key, [&](QlumLoggerItem& one) { one.settings = isAsView ? nullptr : wanted; });
                }
            m_session->applySettings(keys);
        }
        markModified();
    });
    dialog->open();
}
