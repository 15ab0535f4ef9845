// The whole client, with a project that has one server in it.
#pragma once

#include <app/log/qlumlogmodel.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/startup/qlumfolders.h>
#include <app/startup/qlumservices.h>
#include <app/startup/qlumstartup.h>
#include <certificates/qlumcertificates.h>
#include <opcua/opcua.h>
#include <tests/support/owncertificate.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/system/uaxmldocument.h>

#include <QModelIndex>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTreeView>
#include <gtest/gtest.h>

#include <memory>
#include <string>

class ClientOnServer : public ::testing::Test
{
protected:
    static constexpr int limit = 20000; // ms; far more than any step takes

    static void SetUpTestSuite()
    {
        QlumStartup::loadResources();
        UaXmlDocument::initParser();
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        prepareFolders();
        ASSERT_EQ(provideOwnCertificate(), QString());
        ASSERT_EQ(QlumCertificates::instance(nullptr)->failure(), 0);
    }

    static void TearDownTestSuite()
    {
        QlumCertificates::cleanup();
        UaPlatformLayer::cleanup();
        UaXmlDocument::cleanupParser();
    }

    void SetUp() override
    {
        ASSERT_FALSE(url().empty()) << "the server has not been started";
        window = std::make_unique<QlumTavelin>(qlumServices());
        window->show();
    }

    QString writeProject(const QString& url) const
    {
        const QString file = folder.filePath(QStringLiteral("plant.uap"));
        QSettings project(file, QSettings::IniFormat);
        project.beginGroup(QStringLiteral("Servers/7"));
        project.setValue(QStringLiteral("Name"), QStringLiteral("Plant"));
        project.setValue(QStringLiteral("Connected"), true);
        project.setValue(QStringLiteral("ProjectServerId"), 7);
        project.setValue(QStringLiteral("ServerUrl"), url);
        project.setValue(QStringLiteral("MessageSecurityMode"), 1);
        project.setValue(QStringLiteral("SecurityPolicy"), QStringLiteral(OpcUa_SecurityPolicy_None));
        project.setValue(QStringLiteral("DisplayName"), QStringLiteral("Plant"));
        if (!role().isEmpty())
            project.setValue(QStringLiteral("Role"), role());
        return file;
    }

    /// Where the server listens; empty when it does not.
    [[nodiscard]] virtual std::string url() const = 0;
    /// What may be sent to it, as the project says; empty for what a project without roles gets.
    [[nodiscard]] virtual QString role() const { return {}; }

    void openProject(const std::string& url)
    {
        window->loadProject(writeProject(QString::fromStdString(url)));
        ASSERT_EQ(window->projectServerIds().size(), 1);
        serverId = window->projectServerIds().first();
        ASSERT_TRUE(QTest::qWaitFor([this] { return tree("Address Space") != nullptr; }, limit)) << logText();
    }

    /// The visible tree of that accessible name that has rows.
    QTreeView* tree(const char* name) const
    {
        for (QTreeView* view : window->findChildren<QTreeView*>())
            if (view->accessibleName() == QLatin1String(name) && view->isVisible() && view->model() &&
                view->model()->rowCount() > 0)
                return view;
        return nullptr;
    }

    /// The index below parent whose first column reads text, fetched when need be.
    static QModelIndex child(QTreeView& view, const QModelIndex& parent, const QString& text)
    {
        if (view.model()->canFetchMore(parent))
            view.model()->fetchMore(parent);
        for (int row = 0; row < view.model()->rowCount(parent); ++row) {
            const QModelIndex index = view.model()->index(row, 0, parent);
            if (index.data().toString() == text)
                return index;
        }
        return {};
    }

    static QModelIndex find(QTreeView& view, const QStringList& path)
    {
        QModelIndex index;
        for (const QString& text : path) {
            index = child(view, index, text);
            if (!index.isValid())
                return {};
        }
        return index;
    }

    void select(const QStringList& path)
    {
        QTreeView* view = tree("Address Space");
        ASSERT_NE(view, nullptr);
        const QModelIndex index = find(*view, path);
        ASSERT_TRUE(index.isValid()) << path.join(QLatin1Char('>')).toStdString();
        view->setCurrentIndex(index);
    }

    /// What the attribute window shows at a path of rows, once it shows the node.
    QString attribute(const QStringList& path, int column = 1) const
    {
        QTreeView* view = tree("Attributes");
        const QModelIndex index = view ? find(*view, path) : QModelIndex();
        return index.sibling(index.row(), column).data().toString();
    }

    bool waitForAttribute(const QStringList& path, const QString& text) const
    {
        return QTest::qWaitFor([&] { return attribute(path) == text; }, limit);
    }

    std::string logText() const
    {
        QString text;
        QTextStream stream(&text);
        window->logModel()->save(stream);
        return text.toStdString();
    }

    QTemporaryDir folder;
    std::unique_ptr<QlumTavelin> window;
    unsigned int serverId = qlumNoServer;
};
