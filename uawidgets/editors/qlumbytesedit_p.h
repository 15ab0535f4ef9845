// The text field of QlumPagedBytes.
#pragma once
#include <QEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPlainTextEdit>
#include <QResizeEvent>
#include <QString>
#include <QWidget>

/// Plain text that hands large pastes to its owner. For bytes in hexadecimal it shows where each line is and
/// what it reads as, beside the text.
class QlumBytesEdit : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit QlumBytesEdit(QWidget* parent = nullptr);

    /// Shows a page; offset is that of its first byte. Undo begins anew.
    void showPage(const QString& text, bool isHexadecimal, int offset);
    /// The text as it stands, no-break spaces and the like included.
    [[nodiscard]] QString rawText() const;

signals:
    /// More was pasted than the field shall lay out; nothing has been inserted.
    void pasted(const QString& text);

protected:
    void insertFromMimeData(const QMimeData* source) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    class Margin;

    void placeMargins();
    void paintMargin(Margin& margin, bool isOffset);

    Margin* m_offsets;
    Margin* m_characters;
    bool m_isHexadecimal = false;
    int m_offset = 0;
};
