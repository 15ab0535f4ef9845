#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QStringList>
#include <QWidget>

class QCheckBox;
class QLabel;
class QTextStream;

/// Tip of the day.
class QlumTipWindow : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// Tips come from the given file; an empty name stands for "tips_en.txt" in the working directory, and
    /// where there is none, for the tips in the program.
    explicit QlumTipWindow(QWidget* parent = nullptr, const QString& tipFile = QString());
    ~QlumTipWindow() override;

    [[nodiscard]] bool showAtStart() const;
    [[nodiscard]] bool fileRead() const { return m_fileRead; }
    [[nodiscard]] int index() const { return m_index; }
    [[nodiscard]] QString currentText() const;

    /// Tips are separated by empty lines; one that is not followed by an empty line is dropped.
    [[nodiscard]] static QStringList readTips(QTextStream& stream);

public slots:
    void sltNext();
    void sltPrevious();

private:
    void makeWidgets();
    void showTip(int index);

    QStringList m_tips;
    int m_index = 0;
    bool m_fileRead = false;
    QLabel* m_text;
    QCheckBox* m_showAtStart;
};
