#include <app/startup/qlumtranslations.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLatin1Char>
#include <QLatin1String>
#include <QLibraryInfo>
#include <QLocale>

namespace {
class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumTranslations)
};

QStringList folders()
{
    return {QDir::currentPath(), QCoreApplication::applicationDirPath() + QStringLiteral("/translations"),
            QStringLiteral(":/translations")};
}

// de_AT, then de.
QStringList namesOf(const QString& language)
{
    QStringList names{language};
    if (const int country = language.indexOf(QLatin1Char('_')); country > 0)
        names.append(language.left(country));
    return names;
}

// A file that is damaged gives way to the next one.
bool loadProgram(QTranslator& translator, const QString& language, QStringList& damaged)
{
    for (const QString& name : namesOf(language))
        for (const QString& folder : folders()) {
            const QString file = folder + QStringLiteral("/tavelin_%1.qm").arg(name);
            if (!QFileInfo::exists(file))
                continue;
            if (translator.load(file))
                return true;
            damaged.append(file);
        }
    return false;
}

// Where Qt has its texts, or beside the program when it was carried to a system without them.
bool loadQt(QTranslator& translator, const QString& what, const QString& language)
{
    const QStringList places{QLibraryInfo::location(QLibraryInfo::TranslationsPath), folders().at(1)};
    for (const QString& folder : places)
        for (const QString& name : namesOf(language))
            if (translator.load(QStringLiteral("%1/%2_%3.qm").arg(folder, what, name)))
                return true;
    return false;
}
} // namespace

QlumTranslations::~QlumTranslations()
{
    for (QTranslator* translator : {&m_program, &m_qt, &m_help})
        QCoreApplication::removeTranslator(translator);
}

QStringList QlumTranslations::install(const QString& language)
{
    const QString name =
        language.isEmpty() || language == QLatin1String("System") ? QLocale::system().name() : language;
    QStringList damaged;
    if (loadProgram(m_program, name, damaged)) {
        // in one language or the other, never in both
        if (loadQt(m_qt, QStringLiteral("qtbase"), name))
            QCoreApplication::installTranslator(&m_qt);
        if (loadQt(m_help, QStringLiteral("qt_help"), name))
            QCoreApplication::installTranslator(&m_help);
        QCoreApplication::installTranslator(&m_program);
    } else if (loadProgram(m_program, QStringLiteral("en"), damaged)) // how English counts: 1 row, 2 rows
        QCoreApplication::installTranslator(&m_program);
    QStringList problems;
    for (const QString& file : damaged)
        problems.append(Text::tr("The translation %1 cannot be read.").arg(QDir::toNativeSeparators(file)));
    return problems;
}
