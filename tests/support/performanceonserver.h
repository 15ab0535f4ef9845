// The performance view of a whole client, used as a user does.
#pragma once
#include <app/api/qlumtoolservices.h>
#include <plugins/performance/qlummeasuredarguments.h>
#include <plugins/performance/qlummeasurement.h>
#include <plugins/performance/qlumperformancepanel.h>
#include <plugins/performance/qlumperformanceview.h>
#include <plugins/performance/qlumperformancework.h>
#include <plugins/performance/qlumrunmodel.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QString>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>

/// The client is a fixture that has a project with a server.
template <typename Client>
class PerformanceOn : public Client
{
protected:
    static bool waitFor(const std::function<bool()>& condition)
    {
        return QTest::qWaitFor(condition, Client::limit);
    }

    void openView(const QlumToolNodes& nodes)
    {
        ASSERT_TRUE(QlumToolServices::instance()->openNodes("Performance View", nodes));
        view = this->window->template findChild<QlumPerformanceView*>();
        ASSERT_NE(view, nullptr);
        ASSERT_TRUE(waitFor([this] { return !view->panel()->plan().nodes.empty(); })) << this->logText();
    }
    /// Without a number of calls: until it is ended.
    void choose(QlumMeasuredKind kind, int calls)
    {
        view->findChild<QSpinBox*>("seconds")->setValue(calls > 0 ? 0 : 3600);
        auto* box = view->findChild<QComboBox*>("kind");
        box->setCurrentIndex(box->findData(static_cast<int>(kind)));
        view->findChild<QSpinBox*>("calls")->setValue(calls);
        ASSERT_EQ(view->panel()->obstacle().toStdString(), "") << static_cast<int>(kind);
    }
    void press(const char* name) { view->findChild<QPushButton*>(name)->click(); }
    /// Whatever is asked before the run.
    void agree()
    {
        if (auto* dialog = view->findChild<QlumMeasuredArgumentsDialog*>(); dialog && dialog->isVisible())
            dialog->accept();
        if (auto* box = view->findChild<QMessageBox*>("performanceQuestion"); box && box->isVisible())
            for (QAbstractButton* button : box->buttons())
                if (box->buttonRole(button) == QMessageBox::AcceptRole)
                    button->click();
    }
    bool waitForRuns(int count)
    {
        return waitFor([this, count] {
            agree();
            return view->runs()->rowCount() == count && !view->work()->isBusy();
        });
    }
    [[nodiscard]] const QlumMeasurementRun& lastRun() const
    {
        return view->runs()->rowAt(view->runs()->rowCount() - 1);
    }

    QlumPerformanceView* view = nullptr;
};
