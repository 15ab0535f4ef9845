// Answers modal dialogs, which would otherwise wait for ever.
#pragma once
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <gtest/gtest.h>

#include <functional>
#include <utility>

/// While it lives, every modal dialog that comes up is noted and answered: by answer, or by being rejected.
/// One at a time: of two it would be chance which one answers.
class DialogDriver : public QObject
{
public:
    using Answer = std::function<void(QDialog&)>;

    explicit DialogDriver(Answer answer = {}) : m_answer(std::move(answer))
    {
        EXPECT_FALSE(std::exchange(s_alive, true)) << "another driver is still alive";
        connect(&m_timer, &QTimer::timeout, this, [this] { look(); });
        m_timer.start(1);
    }

    ~DialogDriver() override { s_alive = false; }

    /// "title: text" of message boxes, the title of other dialogs, in the order in which they came up.
    [[nodiscard]] QStringList seen() const { return m_seen; }

    /// Answer that presses a button of a message box.
    static Answer press(QMessageBox::StandardButton button)
    {
        return [button](QDialog& dialog) {
            auto* box = qobject_cast<QMessageBox*>(&dialog);
            QAbstractButton* wanted = box ? box->button(button) : nullptr;
            if (wanted)
                wanted->click();
            else
                dialog.reject();
        };
    }

private:
    void look()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        const auto* box = qobject_cast<QMessageBox*>(dialog);
        if (m_last != dialog) // one that stays open is noted once
            m_seen.append(box ? box->windowTitle() + QStringLiteral(": ") + box->text()
                              : dialog->windowTitle());
        m_last = dialog;
        if (m_answer)
            m_answer(*dialog);
        else
            dialog->reject();
    }

    inline static bool s_alive = false;

    Answer m_answer;
    QPointer<QDialog> m_last;
    QTimer m_timer;
    QStringList m_seen;
};
