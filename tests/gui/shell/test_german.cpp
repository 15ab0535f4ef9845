#include <app/api/qlumtext.h>
#include <app/log/qlumlogmeaning.h>
#include <app/log/qlumlogmodel.h>
#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlummainactions.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/mainwindow/qlumtipwindow.h>
#include <app/pluginloader/qlumplugindialog.h>
#include <app/settings/qlumlanguages.h>
#include <app/settings/qlumsettingsdialog.h>
#include <app/settings/qlumsettingsmodel.h>
#include <app/startup/qlumtranslations.h>
#include <plugins/dataaccess/parts/qlumnodelist.h>
#include <uabase/system/uatrace.h>
#include <uabase/text/uavaluetext.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumjsonfault.h>

#include <QAbstractButton>
#include <QAction>
#include <QByteArray>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QDockWidget>
#include <QFile>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMultiHash>
#include <QRegularExpression>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTreeWidget>
#include <QWidget>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <memory>

namespace {
// The English texts that have another German one, in every context that has them.
QSet<QString> textsToBeTranslated()
{
    QFile file(QStringLiteral(TAVELIN_SOURCE_FOLDER "/translations/tavelin_de.ts"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QSet<QString> different, same, german;
    QString source;
    for (QXmlStreamReader xml(&file); !xml.atEnd();) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source"))
            source = xml.readElementText();
        else if (xml.name() == QLatin1String("translation")) {
            const QString text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
            (text == source ? same : different).insert(source);
            german.insert(text); // "Attribute" is one German text and another English one
        }
    }
    return different - same - german;
}

QStringList textsOf(const QWidget& widget)
{
    QStringList texts{widget.toolTip(), widget.whatsThis(), widget.accessibleName(), widget.statusTip()};
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        texts << label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        texts << button->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
        texts << group->title();
    if (const auto* menu = qobject_cast<const QMenu*>(&widget))
        texts << menu->title();
    if (const auto* dock = qobject_cast<const QDockWidget*>(&widget))
        texts << dock->windowTitle();
    if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
        for (int i = 0; i < tabs->count(); ++i)
            texts << tabs->tabText(i);
    for (const QAction* action : widget.actions())
        texts << action->text() << action->toolTip() << action->whatsThis();
    return texts;
}

// What the client layer says, a mark in each place of its formats.
QString textsOfTheClientLayer()
{
    QString texts;
    for (QDirIterator files(QStringLiteral(TAVELIN_SOURCE_FOLDER "/uaclientsdk"),
                            {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                            QDirIterator::Subdirectories);
         files.hasNext();) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        texts += QString::fromUtf8(file.readAll());
    }
    texts.remove(QRegularExpression(QStringLiteral("\"\\s*\\n\\s*\""))); // lines that go on
    return texts.replace(QRegularExpression(QStringLiteral("(?:0x)?%[a-z]")), QStringLiteral("%"));
}

// Texts of a context, as textsOfTheClientLayer() writes them.
QStringList textsOfContext(const QString& context)
{
    QFile file(QStringLiteral(TAVELIN_SOURCE_FOLDER "/translations/tavelin_de.ts"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList texts;
    QString name;
    for (QXmlStreamReader xml(&file); !xml.atEnd();) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            name = xml.readElementText();
        else if (xml.name() == QLatin1String("source") && name == context)
            texts << xml.readElementText().replace(QRegularExpression(QStringLiteral("%[1-9]")),
                                                   QStringLiteral("%"));
    }
    return texts;
}

class German : public ::testing::Test
{
protected:
    German()
    {
        QSettings().clear();
        loaded = translations.install(QStringLiteral("de")).isEmpty();
        window = std::make_unique<QlumTavelin>(QlumTavelinServices());
    }
    // Mnemonics of the actions with a text, those that several share.
    static QStringList sharedMnemonics(const QWidget& menu)
    {
        QMultiHash<QString, QString> found;
        for (const QAction* action : menu.actions()) {
            const int at = action->text().indexOf(QLatin1Char('&'));
            if (at >= 0 && action->isVisible())
                found.insert(action->text().mid(at + 1, 1).toLower(), action->text());
        }
        QStringList shared;
        for (const QString& letter : found.uniqueKeys())
            if (found.count(letter) > 1)
                shared << menu.objectName() + QStringLiteral(": ") +
                              found.values(letter).join(QStringLiteral(" / "));
        return shared;
    }

    QlumTranslations translations;
    bool loaded = false;
    std::unique_ptr<QlumTavelin> window;
};
} // namespace

TEST_F(German, WindowAndDocumentsOfEveryTypeHaveNoEnglishText)
{
    ASSERT_TRUE(loaded);
    EXPECT_EQ(window->menuBar()->actions().constFirst()->text(), QStringLiteral("&Datei"));
    auto* documents = window->findChild<QlumDocumentArea*>();
    for (const char* type :
         {"Data Access View", "Data Logger View", "Event View", "GDS View (Push Model)", "History Trend View",
          "Image Viewer", "Performance View", "Server Diagnostics View"})
        ASSERT_NE(documents->add(QLatin1String(type), QStringLiteral("Dokument")), nullptr) << type;
    const QSet<QString> english = textsToBeTranslated();
    ASSERT_GT(english.size(), 1000);
    QSet<QString> left;
    for (const QWidget* widget : window->findChildren<QWidget*>())
        for (const QString& text : textsOf(*widget))
            if (english.contains(text))
                left.insert(text);
    EXPECT_TRUE(left.isEmpty()) << QStringList(left.values()).join(QStringLiteral("\n")).toStdString();
}

TEST_F(German, TipsAreAsManyAsInEnglish)
{
    const auto tips = [](const QString& name) {
        QFile file(QStringLiteral(":/tips/") + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << name.toStdString();
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        return QlumTipWindow::readTips(stream);
    };
    const QStringList german = tips(QStringLiteral("tips_de.txt"));
    EXPECT_EQ(german.size(), tips(QStringLiteral("tips_en.txt")).size());
    EXPECT_TRUE(german.contains(QlumTipWindow().currentText()));
}

TEST_F(German, NoLetterIsTwiceInTheMenuBarNorInAMenuOfIt)
{
    QStringList shared = sharedMnemonics(*window->menuBar());
    for (const QMenu* menu : window->menuBar()->findChildren<QMenu*>())
        shared << sharedMnemonics(*menu);
    EXPECT_TRUE(shared.isEmpty()) << shared.join(QLatin1Char('\n')).toStdString();
}

// The trace itself stays English; what of it reaches the log does not.
TEST_F(German, ErrorsOfTheLayersBelowAreReadInTheLog)
{
    const auto logged = [this](const char* text) {
        window->traceOutput(UaTrace::Errors, text, 0);
        auto* model = window->findChild<QlumLogModel*>();
        model->sltFlush();
        return model->rowAt(model->rowCount() - 1).message;
    };
    EXPECT_EQ(logged("Error: UaSession - connection lost [Session=7]"),
              QStringLiteral("Fehler: UaSession - Verbindung verloren [Session=7]"));
    EXPECT_EQ(
        logged("Warning: Notifications missing, lastSequenceNumber=%2 newSequenceNumber=9"),
        QString::fromUtf8("Warnung: Es fehlen Notifications, lastSequenceNumber=%2 newSequenceNumber=9"))
        << "what a server says is no place for another text";
    EXPECT_EQ(logged("something else 5 %"), QStringLiteral("something else 5 %"));
}

// Else they would never be found again.
TEST_F(German, ErrorsOfTheLayersBelowAreKnownByTheirOwnWords)
{
    const QString said = textsOfTheClientLayer();
    const QStringList known = textsOfContext(QStringLiteral("QlumTraceWords"));
    EXPECT_GT(known.size(), 30);
    for (const QString& text : known)
        EXPECT_TRUE(said.contains(text)) << text.toStdString();
}

TEST_F(German, WhatIsWrongWithAJsonTextIsSaidInGerman)
{
    const auto faultOf = [](const char* json) {
        UaVariant value;
        UaString error;
        EXPECT_TRUE(UaValueText::fromJson(json, nullptr, value, &error).isBad()) << json;
        EXPECT_NE(qlumJsonFault(toQString(error)), toQString(error)) << json;
        return qlumJsonFault(toQString(error));
    };
    EXPECT_EQ(faultOf(R"({"Type": 11, "Body": 1)"), QStringLiteral("kein } oder , bei Zeichen 23"));
    EXPECT_EQ(faultOf(R"({"Type": 6, "Body": "5: %1"})"), QStringLiteral("keine Zahl dieses Typs: 5: %1"));
    for (const char* const json :
         {"", "{} 1", "[1", "{1}", R"({"a" 1})", "\"\n\"", "\"a", "\"\xFF\"", R"("\q")", R"("\uD800")", "{}",
          R"({"Type": 6, "Body": true})", R"({"Type": 12, "Body": 1})", R"({"Type": 13, "Body": "x"})",
          R"({"Type": 15, "Body": "?"})", R"({"Type": 14, "Body": "x"})", R"({"Type": 1, "Body": 1})",
          R"({"Type": 6, "Body": [1, 2], "Dimensions": [3]})"})
        faultOf(json);
    EXPECT_EQ(qlumJsonFault(QStringLiteral("Place.X: a number was expected")),
              QStringLiteral("Place.X: eine Zahl wird erwartet"));
}

TEST_F(German, FailuresAndSuccessesInTheLogHaveTheirIcons)
{
    const auto icon = [](const char* message) {
        return qlumLogMeaningIcon(QString::fromUtf8(message)).pixmap(16).toImage();
    };
    const QImage none = icon("Sitzung wird aufgebaut");
    const QImage bad = icon("Call failed"), good = icon("Call succeeded"); // the trace stays English
    EXPECT_NE(bad, good);
    EXPECT_NE(bad, none);
    EXPECT_EQ(icon("Lesen von drei Werten ist fehlgeschlagen."), bad);
    EXPECT_EQ(icon("Das Abonnement wurde erfolgreich angelegt."), good);
}

TEST_F(German, PluginsHaveGermanNames)
{
    const QlumPluginDialog dialog({}, {});
    const auto* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("plugins"));
    ASSERT_EQ(tree->topLevelItemCount(), 12);
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        EXPECT_TRUE(tree->topLevelItem(i)->text(0).startsWith(QStringLiteral("Plugin ")))
            << tree->topLevelItem(i)->text(0).toStdString();
    EXPECT_FALSE(tree->findItems(QStringLiteral("Ereignisansicht"), Qt::MatchRecursive).isEmpty());
}

TEST_F(German, LogNamesThePluginsThatAreLoaded)
{
    auto* model = window->findChild<QlumLogModel*>();
    model->sltFlush();
    int loadedOnes = 0;
    for (int row = 0; row < model->rowCount(); ++row) {
        const QString message = model->rowAt(row).message;
        EXPECT_FALSE(message.contains(QLatin1String("Static Plugin"))) << message.toStdString();
        loadedOnes += message.endsWith(QLatin1String("geladen.")) ? 1 : 0;
    }
    EXPECT_EQ(loadedOnes, 12);
}

// What the settings keep are words of the program, not of the language that it is shown in.
TEST_F(German, SettingsKeepTheirKeysInAnyLanguage)
{
    QlumSettingsModel settings;
    QlumSettingsDialog dialog(&settings);
    const struct
    {
        const char* key;
        int place;
        const char* shown;
        const char* kept;
    } choices[] = {{"General.NewServerRole", 0, "Ansehen", "Look"},
                   {"General.TypeDictionaryMode", 1, "Nur von Hand", "Manual"},
                   {"General.LogLevel", 1, "Warnungen", "WARNING"}};
    for (const auto& choice : choices) {
        auto* box = dialog.findChild<QComboBox*>(QLatin1String(choice.key));
        ASSERT_NE(box, nullptr) << choice.key;
        box->setCurrentIndex(choice.place);
        EXPECT_EQ(box->currentText(), QLatin1String(choice.shown));
    }
    dialog.accept();
    for (const auto& choice : choices)
        EXPECT_EQ(settings.value(QLatin1String(choice.key)).toString(), QLatin1String(choice.kept));
}

// The folders that a user fills: what is damaged there is told and leaves what the program has itself.
TEST(Translations, DamagedFileIsToldAndALanguageNeedsOneFileOnly)
{
    const QTemporaryDir folder;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path()));
    const auto tip = [] { return QCoreApplication::translate("QlumTipWindow", "Tip of the day"); };
    const auto write = [&](const QString& language, const QByteArray& content) {
        QFile file(folder.filePath(QStringLiteral("tavelin_%1.qm").arg(language)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    QFile own(QStringLiteral(":/translations/tavelin_de.qm"));
    ASSERT_TRUE(own.open(QIODevice::ReadOnly));
    const QByteArray german = own.readAll();
    struct Case
    {
        const char* language;
        QByteArray file; // empty for none
        int problems;
        const char* shown;
    };
    const Case cases[] = {{"fr", {}, 0, "Tip of the day"},
                          {"fr", german.left(german.size() / 2), 1, "Tip of the day"},
                          {"fr", german, 0, "Tipp des Tages"}, // whatever it says
                          {"de", {}, 0, "Tipp des Tages"},
                          {"de_AT", {}, 0, "Tipp des Tages"},
                          {"de", QByteArray("no translation"), 1, "Tipp des Tages"},
                          {"../../etc/passwd", {}, 0, "Tip of the day"}};
    for (const Case& one : cases) {
        const QString language = QLatin1String(one.language);
        if (!one.file.isEmpty())
            write(language, one.file);
        QlumTranslations translations;
        const QStringList problems = translations.install(language);
        EXPECT_EQ(problems.size(), one.problems)
            << one.language << problems.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(tip(), QLatin1String(one.shown)) << one.language << one.file.size();
    }
    EXPECT_EQ(tip(), QStringLiteral("Tip of the day")) << "they go with their owner";
    QDir::setCurrent(before);
}

// English too, and what has no translation.
TEST(Translations, CountsAreSaidInWordsOfTheirNumber)
{
    const struct
    {
        const char* language;
        const char* one;
        const char* two;
    } cases[] = {
        {"en", "1 entry", "2 entries"}, {"it", "1 entry", "2 entries"}, {"de", "1 Eintrag", "2 Einträge"}};
    for (const auto& expected : cases) {
        QlumTranslations translations;
        ASSERT_TRUE(translations.install(QLatin1String(expected.language)).isEmpty());
        const auto entries = [](int count) {
            return QCoreApplication::translate("QlumStorePage", "%Ln entries", nullptr, count);
        };
        EXPECT_EQ(entries(1), QString::fromUtf8(expected.one)) << expected.language;
        EXPECT_EQ(entries(2), QString::fromUtf8(expected.two)) << expected.language;
    }
    EXPECT_FALSE(qlumLanguages().contains(QStringLiteral("en"))) << "the settings have it once, by itself";
}

TEST(Translations, ListsAreReadWithTheTitlesOfTheLanguageTheyWereExportedIn)
{
    QlumTranslations translations;
    ASSERT_TRUE(translations.install(QStringLiteral("de")).isEmpty());
    for (const char* titles : {"Server;NodeId;Wert;Neuer Wert", "Server;Node Id;Value;New Value"}) {
        const QlumNodeList list = qlumReadNodeList(QByteArray(titles) + "\nPLC;i=85;1;2\n");
        SCOPED_TRACE(titles);
        ASSERT_EQ(list.lines.size(), 1U);
        EXPECT_EQ(list.lines.front().server + list.lines.front().text + list.lines.front().value,
                  QStringLiteral("PLCi=852"));
    }
}
