#pragma once
#include <plugins/gds/qlumpushdata.h>

#include <QString>
#include <QWidget>

#include <vector>

class QPlainTextEdit;

/// What was sent to servers and what they answered, as a text that can be copied and saved.
class QlumPushRecordPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumPushRecordPage(QWidget* parent = nullptr);

    /// Of that server, by that user of this computer.
    void add(const QString& server, const QString& user, const std::vector<QlumPushStep>& steps);
    /// A line of its own.
    void addLine(const QString& text);
    [[nodiscard]] QString text() const;

signals:
    /// The record could not be written, and why.
    void saveFailed(const QString& why);

private:
    void save();

    QPlainTextEdit* m_text;
};
