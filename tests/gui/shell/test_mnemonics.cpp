#include <app/api/qlumjournal.h>
#include <app/api/qlumservicerecorder.h>
#include <app/journal/qlumjournalwindow.h>
#include <app/mainwindow/qlumaboutdialog.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlumdocumentdialog.h>
#include <app/mainwindow/qlumhelpviewer.h>
#include <app/mainwindow/qlumshortcutsdialog.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/mainwindow/qlumtipwindow.h>
#include <app/mainwindow/qlumupdatedialog.h>
#include <app/recovery/qlumrecoverydialog.h>
#include <app/recovery/qlumsessionrecord.h>
#include <app/services/qlumservicesview.h>
#include <app/settings/qlumsettingsdialog.h>
#include <app/settings/qlumsettingsmodel.h>
#include <app/startup/qlumtranslations.h>
#include <app/support/qlumsupportdialog.h>
#include <app/support/qlumsupportreport.h>
#include <certificates/qlumcertificatedialog.h>
#include <certificates/qlumcertificatemanager.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumnewcertificatedlg.h>
#include <plugins/datalogger/qlumloggeritem.h>
#include <plugins/datalogger/qlumloggersetupdialog.h>
#include <plugins/gds/qlumpushauthoritydialog.h>
#include <plugins/gds/qlumpushlogindialog.h>
#include <plugins/gds/qlumpushplandialog.h>
#include <servers/qlumchangedcertificatedialog.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumidentitydialog.h>
#include <servers/qlumserversettingsdialog.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/qlumpassworddlg.h>
#include <uawidgets/qlumuserpassworddlg.h>

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QIcon>
#include <QKeySequence>
#include <QLabel>
#include <QList>
#include <QMap>
#include <QMenuBar>
#include <QObject>
#include <QSettings>
#include <QStackedWidget>
#include <QString>
#include <QStringList>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <vector>

namespace {
// What the keys of a window lead to, as it is just now: of a page only when it is the one in front.
class Keys
{
public:
    explicit Keys(const QWidget& window)
    {
        for (const QWidget* widget : window.findChildren<QWidget*>())
            if (widget->isVisibleTo(&window) && widget->window() == &window)
                takeOf(*widget);
        for (const QAction* action : m_actions)
            for (const QKeySequence& key : action->shortcuts())
                take(key, action->text());
    }
    [[nodiscard]] QStringList shared() const
    {
        QStringList result;
        for (auto key = m_found.begin(); key != m_found.end(); ++key)
            if (key->size() > 1)
                result.append(key.key() + QStringLiteral(": ") + key->join(QStringLiteral(" / ")));
        return result;
    }

private:
    void takeOf(const QWidget& widget)
    {
        for (const QAction* action : widget.actions()) // an action may be of several widgets
            if (action->shortcutContext() == Qt::WindowShortcut ||
                action->shortcutContext() == Qt::ApplicationShortcut)
                m_actions.insert(action);
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
            take(button->shortcut(), button->text());
        else if (const auto* label = qobject_cast<const QLabel*>(&widget); label && label->buddy())
            take(QKeySequence::mnemonic(label->text()), label->text());
        else if (const auto* box = qobject_cast<const QGroupBox*>(&widget))
            take(QKeySequence::mnemonic(box->title()), box->title());
        else if (const auto* bar = qobject_cast<const QMenuBar*>(&widget))
            takeOfMenus(*bar);
        if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
            for (int i = 0; i < tabs->count(); ++i)
                take(QKeySequence::mnemonic(tabs->tabText(i)), tabs->tabText(i));
    }
    // Two menus may share a letter: pressed again, it goes to the next of them.
    void takeOfMenus(const QMenuBar& bar)
    {
        QMap<QString, QStringList> menus;
        for (const QAction* action : bar.actions())
            if (const QKeySequence key = QKeySequence::mnemonic(action->text()); !key.isEmpty())
                menus[key.toString()].append(action->text());
        for (auto menu = menus.begin(); menu != menus.end(); ++menu)
            m_found[menu.key()].append(menu->join(QStringLiteral(" and ")));
    }
    void take(const QKeySequence& key, const QString& text)
    {
        if (!key.isEmpty())
            m_found[key.toString()].append(text);
    }

    std::set<const QAction*> m_actions;
    QMap<QString, QStringList> m_found;
};

// On each page of the window, one after the other.
QStringList sharedKeys(QWidget& window)
{
    window.show();
    QStringList found = Keys(window).shared();
    for (QStackedWidget* stack : window.findChildren<QStackedWidget*>()) {
        auto* tabs = qobject_cast<QTabWidget*>(stack->parentWidget());
        const int before = stack->currentIndex();
        const auto turnTo = [&](int page) {
            tabs ? tabs->setCurrentIndex(page) : stack->setCurrentIndex(page);
        };
        for (int page = 0; page < stack->count(); ++page) {
            turnTo(page);
            found.append(Keys(window).shared());
        }
        turnTo(before);
    }
    found.removeDuplicates();
    return found;
}

class Mnemonics : public ::testing::TestWithParam<const char*>
{
protected:
    Mnemonics()
    {
        QSettings().clear();
        EXPECT_TRUE(translations.install(QLatin1String(GetParam())).isEmpty());
    }
    ~Mnemonics() override { QSettings().clear(); }
    static void expectNoneShared(QWidget& window)
    {
        const QStringList found = sharedKeys(window);
        EXPECT_TRUE(found.isEmpty()) << window.metaObject()->className() << ":\n"
                                     << found.join(QLatin1Char('\n')).toStdString();
        window.hide();
    }

    QlumTranslations translations;
};
} // namespace

TEST_P(Mnemonics, AreEachOfOneControlInDialogsOfTheWindow)
{
    QlumSettingsModel settings;
    expectNoneShared(*std::make_unique<QlumSettingsDialog>(&settings));
    expectNoneShared(*std::make_unique<QlumShortcutsDialog>(QList<QlumShortcutRow>()));
    expectNoneShared(
        *std::make_unique<QlumSupportDialog>(std::vector<QlumReportPart>{{"log.txt", "Log", "text"}}));
    expectNoneShared(*std::make_unique<QlumAboutDialog>());
    expectNoneShared(*std::make_unique<QlumUpdateDialog>(7));
    expectNoneShared(*std::make_unique<QlumTipWindow>());
    expectNoneShared(*std::make_unique<QlumHelpViewer>());
    const QTemporaryDir folder;
    expectNoneShared(*std::make_unique<QlumJournalWindow>(std::make_shared<QlumJournal>(folder.path())));
    expectNoneShared(*std::make_unique<QlumServicesView>(std::make_shared<QlumServiceRecorder>()));
}

TEST_P(Mnemonics, AreEachOfOneControlInDialogsOfServersAndCertificates)
{
    expectNoneShared(*std::make_unique<QlumServerSettingsDialog>());
    QlumDiscoverySetting known;
    known.displayName = QStringLiteral("Press");
    expectNoneShared(*std::make_unique<QlumServerSettingsDialog>(known));
    expectNoneShared(*std::make_unique<QlumIdentityDialog>(QStringLiteral("Press"), QlumUserChoice(),
                                                           QStringLiteral("Not encrypted.")));
    expectNoneShared(*std::make_unique<QlumUserPasswordDlg>(QStringLiteral("Press")));
    expectNoneShared(*std::make_unique<QlumPasswordDlg>());
    expectNoneShared(
        *std::make_unique<QlumNewCertificateDlg>(QStringLiteral("Press"), QStringLiteral("Plant")));
    expectNoneShared(*std::make_unique<QlumCertificateManager>(
        QStringLiteral("Press"), QStringLiteral("Plant"), QlumCertificateStoreConfiguration(), QIcon()));
}

TEST_P(Mnemonics, AreEachOfOneControlInQuestions)
{
    const QString server = QStringLiteral("Press");
    const QString url = QStringLiteral("opc.tcp://press.example:4840");
    expectNoneShared(*std::make_unique<QlumCertificateDialog>(server, url, UaByteString(),
                                                              UaStatusCode(OpcUa_BadCertificateUntrusted)));
    for (const bool isTrusted : {false, true})
        expectNoneShared(*std::make_unique<QlumChangedCertificateDialog>(
            QlumCertificateChange{server, url, UaByteString(), UaByteString(), isTrusted}));
    const QTemporaryDir folder;
    const QlumSessionRecord record(folder.path(), folder.path());
    QlumSessionRecord::Leftover leftover;
    leftover.recovered = leftover.crashReport = folder.filePath(QStringLiteral("left"));
    expectNoneShared(*std::make_unique<QlumRecoveryDialog>(record, QList{leftover}));
    const QList<QlumDocumentType> types{{QStringLiteral("Trend"), QString(), QString()}};
    expectNoneShared(*std::make_unique<QlumDocumentDialog>(types, [](const QString&) { return false; }));
}

TEST_P(Mnemonics, AreEachOfOneControlInDialogsOfTools)
{
    for (const auto kind : {QlumLoggerSetup::Sqlite, QlumLoggerSetup::Csv}) {
        QlumLoggerSetup setup;
        setup.kind = kind;
        expectNoneShared(*std::make_unique<QlumLoggerSetupDialog>(setup));
    }
    for (const bool isNew : {false, true})
        expectNoneShared(*std::make_unique<QlumPushAuthorityDialog>(isNew));
    expectNoneShared(*std::make_unique<QlumPushLoginDialog>(QStringLiteral("Press")));
    expectNoneShared(*std::make_unique<QlumPushPlanDialog>(QlumPushPlan{
        QStringLiteral("Renew"), {QStringLiteral("one call")}, {}, QStringLiteral("It is the last one.")}));
}

TEST_P(Mnemonics, AreEachOfOneControlInEditorsOfValues)
{
    for (const OpcUa_BuiltInType type :
         {OpcUaType_Boolean, OpcUaType_Int32, OpcUaType_String, OpcUaType_ByteString, OpcUaType_DateTime,
          OpcUaType_NodeId, OpcUaType_LocalizedText}) {
        SCOPED_TRACE(type);
        QlumValueContext context;
        context.builtInType = type;
        for (const int rank : {-1, 1, 2}) {
            SCOPED_TRACE(rank);
            context.valueRank = rank;
            expectNoneShared(*std::make_unique<QlumValueDialog>(context));
        }
    }
}

TEST_P(Mnemonics, AreEachOfOneControlInTheWindowWithEachDocument)
{
    QlumTavelin window{QlumTavelinServices()};
    for (const QlumDocumentType& type : window.documents()->types()) {
        window.documents()->clear();
        ASSERT_NE(window.documents()->add(type.type, type.freeName), nullptr);
        SCOPED_TRACE(type.type.toStdString());
        expectNoneShared(window);
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, Mnemonics, ::testing::Values("en", "de"));
