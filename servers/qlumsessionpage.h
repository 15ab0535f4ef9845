#pragma once
#include <servers/qlumsessionoptions.h>

#include <QString>
#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLineEdit;
class QSpinBox;

/// The name of a server's sessions, and what they are asked for. A field that is not ticked shows what the
/// settings of the program say, and follows them.
class QlumSessionPage : public QWidget
{
    Q_OBJECT
public:
    explicit QlumSessionPage(QWidget* parent = nullptr);

    void setSession(const QString& name, const QlumSessionOptions& options);
    [[nodiscard]] QString sessionName() const;
    [[nodiscard]] QlumSessionOptions options() const;

private:
    struct Row
    {
        QCheckBox* own;
        QSpinBox* number;
        const QlumSessionOptions::Field* field;
    };

    void addNumber(const QlumSessionOptions::Field& field);
    void addChoices();
    void showDictionaryMode(const QString& mode);
    [[nodiscard]] QCheckBox* addOwnRow(QWidget* field, const QString& name, const QString& label,
                                       const QString& explanation);

    QFormLayout* m_form;
    QLineEdit* m_name;
    std::vector<Row> m_rows;
    QCheckBox* m_ownReconnect = nullptr;
    QComboBox* m_reconnect = nullptr;
    QCheckBox* m_ownDictionary = nullptr;
    QComboBox* m_dictionary = nullptr;
    QCheckBox* m_ownLocales = nullptr;
    QLineEdit* m_locales = nullptr;
};
