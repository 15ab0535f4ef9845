#pragma once
#include <QString>
#include <QStringList>
#include <QTranslator>

/// The language that the program speaks: its own texts, and those of Qt's dialogs and of the manual's window.
///
/// A file tavelin_LANGUAGE.qm is looked for in the folder in which the program was started, in the folder
/// "translations" beside the program, and in the program itself; the first that can be read counts. So a file
/// is all that a new language needs.
class QlumTranslations
{
public:
    QlumTranslations() = default;
    ~QlumTranslations();
    QlumTranslations(const QlumTranslations&) = delete;
    QlumTranslations& operator=(const QlumTranslations&) = delete;
    QlumTranslations(QlumTranslations&&) = delete;
    QlumTranslations& operator=(QlumTranslations&&) = delete;

    /// Speaks the language, such as de or de_AT, or the system's for "System" and for none, from now on. What
    /// cannot be read is told, for the log; English is what is left.
    QStringList install(const QString& language);

private:
    QTranslator m_program;
    QTranslator m_qt;
    QTranslator m_help;
};
