#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QList>
#include <QString>
#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTextBrowser;

struct QlumDocumentType
{
    QString type;
    QString description; ///< rich text
    QString freeName;    ///< proposed name
};

/// Lets the user choose the type and name of a new document.
class QlumDocumentDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    QlumDocumentDialog(const QList<QlumDocumentType>& types, std::function<bool(const QString&)> isTaken,
                       QWidget* parent = nullptr);

    [[nodiscard]] QString type() const;
    [[nodiscard]] QString name() const;

private:
    void makeLayout();
    void sltTypeChanged(int row);
    void sltNameChanged();

    QList<QlumDocumentType> m_types;
    std::function<bool(const QString&)> m_isTaken;
    QListWidget* m_list;
    QTextBrowser* m_description;
    QLineEdit* m_name;
    QLabel* m_problem;
    QPushButton* m_ok = nullptr;
};
