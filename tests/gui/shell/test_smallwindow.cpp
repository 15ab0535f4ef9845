#include <app/mainwindow/qlumdocumentarea.h>
#include <app/mainwindow/qlumtavelin.h>
#include <app/mainwindow/qlumtavelinservices.h>
#include <app/startup/qlumtranslations.h>
#include <uawidgets/qlummessagebar.h>

#include <QCoreApplication>
#include <QDockWidget>
#include <QLabel>
#include <QList>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTabWidget>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {
constexpr QSize smallest(1024, 700);
constexpr int narrowestDocument = 450; // what docks leave of that window

// The parts that want most room, for who has to mend it.
std::string widest(const QWidget& root, int width = smallest.width() / 3)
{
    QStringList result;
    for (const QWidget* one : root.findChildren<QWidget*>())
        if (const QSize size = one->minimumSizeHint(); !one->isWindow() && size.width() > width)
            result.append(QStringLiteral("%1 %2: %3 x %4")
                              .arg(QLatin1String(one->metaObject()->className()), one->objectName())
                              .arg(size.width())
                              .arg(size.height()));
    return result.join(QLatin1Char('\n')).toStdString();
}

QStringList cutTexts(const QWidget& page)
{
    QStringList result;
    for (const auto* label : page.findChildren<QLabel*>())
        if (label->isVisible() && label->wordWrap() && label->objectName() != QLatin1String("emptyText") &&
            label->height() < label->heightForWidth(label->width()))
            result.append(QStringLiteral("%1: %2 of %3 for \"%4\"")
                              .arg(label->objectName())
                              .arg(label->height())
                              .arg(label->heightForWidth(label->width()))
                              .arg(label->text()));
    return result;
}

// Whether the window takes the size; it is larger where its contents leave it no choice.
class SmallWindow : public ::testing::TestWithParam<const char*>
{
protected:
    SmallWindow()
    {
        QSettings().clear();
        EXPECT_TRUE(translations.install(QLatin1String(GetParam())).isEmpty());
        window = std::make_unique<QlumTavelin>(QlumTavelinServices());
        window->show();
        window->resize(smallest);
    }
    void expectFit(const QString& what) const
    {
        window->resize(smallest);
        const QSize wanted = window->minimumSizeHint();
        EXPECT_TRUE(wanted.width() <= smallest.width() && wanted.height() <= smallest.height())
            << what.toStdString() << " wants " << wanted.width() << " x " << wanted.height() << "\n"
            << widest(*window);
    }

    QlumTranslations translations;
    std::unique_ptr<QlumTavelin> window;
};
} // namespace

TEST_P(SmallWindow, HasRoomForTheStartPageAndDocumentsOfEveryType)
{
    expectFit(QStringLiteral("start page"));
    QlumDocumentArea* documents = window->documents();
    for (const QlumDocumentType& type : documents->types()) {
        ASSERT_NE(documents->add(type.type, type.freeName), nullptr) << type.type.toStdString();
        expectFit(type.type);
        documents->clear();
    }
}

TEST_P(SmallWindow, ShowsDocumentsOfEveryTypeWithoutScrollingSideways)
{
    QlumDocumentArea* documents = window->documents();
    const QTabWidget* tabs = window->centralTabWidget();
    const auto* place = qobject_cast<QScrollArea*>(window->centralWidget());
    ASSERT_NE(place, nullptr);
    for (const QlumDocumentType& type : documents->types()) {
        ASSERT_NE(documents->add(type.type, type.freeName), nullptr) << type.type.toStdString();
        const int width = tabs->currentWidget()->minimumSizeHint().width();
        EXPECT_LE(width, narrowestDocument) << type.type.toStdString() << "\n"
                                            << widest(*tabs->currentWidget(), narrowestDocument / 2);
        QCoreApplication::processEvents();
        EXPECT_EQ(place->horizontalScrollBar()->maximum(), 0)
            << type.type.toStdString() << "\n"
            << widest(*tabs->currentWidget(), narrowestDocument * 3 / 4);
        EXPECT_LT(place->verticalScrollBar()->maximum(), place->viewport()->height() / 2)
            << type.type.toStdString() << " is given more than it needs";
        documents->clear();
    }
}

TEST_P(SmallWindow, HasRoomForEveryDock)
{
    for (QDockWidget* dock : window->findChildren<QDockWidget*>()) {
        dock->show();
        dock->raise();
        expectFit(dock->objectName());
    }
}

TEST_P(SmallWindow, CutsNoTextOfAnyPage)
{
    QlumDocumentArea* documents = window->documents();
    const auto* place = qobject_cast<QScrollArea*>(window->centralWidget());
    for (const QlumDocumentType& type : documents->types()) {
        ASSERT_NE(documents->add(type.type, type.freeName), nullptr) << type.type.toStdString();
        QWidget* document = window->centralTabWidget()->currentWidget();
        for (auto* bar : document->findChildren<QlumMessageBar*>(QString(), Qt::FindDirectChildrenOnly))
            bar->tell({QlumMessage::Error,
                       QStringLiteral("test"),
                       QStringLiteral("The server cannot be configured over this connection."),
                       QStringLiteral("BadSecurityModeInsufficient: not over this connection, which is "
                                      "neither signed nor encrypted."),
                       QStringLiteral("Connect as an administrator..."),
                       {}});
        for (auto* label : document->findChildren<QLabel*>())
            if (label->wordWrap() && label->text().size() < 3) // "-" where a server will tell of something
                label->setText(QStringLiteral("what a server tells of it ").repeated(2));
        for (auto* tabs : document->findChildren<QTabWidget*>())
            for (int page = 0; page < tabs->count(); ++page) {
                tabs->setCurrentIndex(page);
                EXPECT_TRUE(QTest::qWaitFor([&] { return cutTexts(*tabs->currentWidget()).isEmpty(); }, 2000))
                    << type.type.toStdString() << ", page " << page << ":\n"
                    << cutTexts(*tabs->currentWidget()).join(QLatin1Char('\n')).toStdString();
            }
        EXPECT_EQ(place->horizontalScrollBar()->maximum(), 0) << type.type.toStdString() << "\n"
                                                              << widest(*document, narrowestDocument * 3 / 4);
        documents->clear();
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, SmallWindow, ::testing::Values("en", "de"));
