#pragma once
#include <QByteArray>
#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;

/// A field for the certificate that a server is known to have, which the user takes from a file. GUI thread.
class QlumGivenCertificate : public QWidget
{
    Q_OBJECT
public:
    explicit QlumGivenCertificate(QWidget* parent = nullptr);

    /// DER; empty for none.
    void setCertificate(const QByteArray& der);
    [[nodiscard]] const QByteArray& certificate() const { return m_der; }
    /// Takes the first certificate of a file in DER or PEM form; says so where there is none.
    void load(const QString& file);

signals:
    void changed();

private:
    void browse();

    QByteArray m_der;
    QLineEdit* m_shown;
    QToolButton* m_clear;
    QLabel* m_problem;
};
