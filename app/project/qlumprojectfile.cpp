#include <app/project/qlumprojectfile.h>

#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumkeptsettings.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <app/ini/qluminicheck.h>
#include <app/project/qlumprojectmodel.h>
#include <app/project/qlumprojectnodedocument.h>
#include <uabase/system/uadir.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVersionNumber>

#include <span>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace {
constexpr int maximumServers = 1000;
constexpr int maximumDocuments = 1000;
// Far above what servers have; an index that claims more would only size memory.
constexpr int maximumNamespaces = 4096;
constexpr int maximumLeftOut = 100;

const auto versionKey = QStringLiteral("SavedByVersion");

class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumProjectFile)
};

QlumLog projectLog()
{
    return QlumLog(Text::tr("Project"));
}

bool isWritable(const QString& fileName)
{
    const QFileInfo file(fileName);
    if (file.exists())
        return file.isFile() && file.isWritable();
    const QFileInfo folder(file.absolutePath());
    return folder.isDir() && folder.isWritable();
}

// An existing file keeps its access rights.
unsigned int modeFor(const QString& fileName)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(fileName).constData(), &status) == 0)
        return status.st_mode & 07777u;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666u & ~mask;
}

bool replaceFile(const QString& fileName, const QByteArray& content)
{
    const auto bytes = std::span(reinterpret_cast<const unsigned char*>(content.constData()),
                                 static_cast<std::size_t>(content.size()));
    const std::error_code error = uaWriteFileAtomically(toUaString(fileName), bytes, modeFor(fileName));
    if (error)
        projectLog().error(
            Text::tr("Writing %1 failed: %2.")
                .arg(QDir::toNativeSeparators(fileName), QString::fromStdString(error.message())));
    return !error;
}

// The version, when it is newer than this program's; else nothing.
QString newerThanThis(const QString& version)
{
    const QVersionNumber written = QVersionNumber::fromString(version);
    const QVersionNumber own = QVersionNumber::fromString(QCoreApplication::applicationVersion());
    return !own.isNull() && written > own ? written.toString() : QString();
}

QStringList readNamespaces(QSettings& settings)
{
    QStringList table;
    settings.beginGroup(QStringLiteral("Namespaces"));
    const QStringList keys = settings.childKeys();
    for (const QString& key : keys) {
        bool ok = false;
        const int index = key.toInt(&ok);
        if (!ok || index < 0 || index >= maximumNamespaces)
            continue;
        while (table.size() <= index)
            table.append(QString());
        table[index] = settings.value(key).toString();
    }
    settings.endGroup();
    return table;
}
} // namespace

QlumProjectFile::QlumProjectFile(QlumProjectModel* model, QlumAppEventInterface* plugins,
                                 QlumProjectFileHooks hooks)
    : m_model(model), m_plugins(plugins), m_hooks(std::move(hooks))
{
}

bool QlumProjectFile::save(const QString& fileName) const
{
    if (!isWritable(fileName))
        return false;
    // Written elsewhere first, so that neither a failure nor the end of the program can leave half a project
    // or the key that only tries whether writing works.
    const QTemporaryDir folder;
    const QString draft = folder.filePath(QStringLiteral("project.uap"));
    QSettings settings(draft, QSettings::IniFormat);
    settings.setValue(QStringLiteral("test"), 0);
    settings.sync();
    if (!folder.isValid() || settings.status() != QSettings::NoError)
        return false;
    settings.clear();
    write(settings);
    settings.sync();
    QFile file(draft);
    if (settings.status() != QSettings::NoError || !file.open(QIODevice::ReadOnly))
        return false;
    return replaceFile(fileName, file.readAll());
}

void QlumProjectFile::write(QSettings& settings) const
{
    settings.setValue(versionKey, QCoreApplication::applicationVersion());
    writeServers(settings);
    writeDocuments(settings);
    m_plugins->saveSettings(settings);
}

void QlumProjectFile::writeServers(QSettings& settings) const
{
    settings.beginGroup(QStringLiteral("Servers"));
    for (const QlumServerNode* server : m_model->servers()) {
        settings.beginGroup(QString::number(server->serverId()));
        settings.setValue(QStringLiteral("Name"), server->displayName());
        settings.setValue(QStringLiteral("Connected"), qlumIsConnected(server->connectionStatus()));
        settings.setValue(QStringLiteral("ProjectServerId"), server->serverId());
        server->storeSettings(settings);
        settings.beginGroup(QStringLiteral("Namespaces"));
        const QStringList uris = server->namespaceTable();
        for (int i = 0; i < uris.size(); ++i)
            settings.setValue(QString::number(i), uris.at(i));
        settings.endGroup();
        settings.endGroup();
    }
    settings.endGroup();
}

void QlumProjectFile::writeDocuments(QSettings& settings) const
{
    settings.beginGroup(QStringLiteral("Documents"));
    for (const QlumProjectNodeDocument* document : m_model->documents()) {
        auto* content = qobject_cast<QlumDocumentWidgetInterface*>(document->widget());
        if (!content)
            continue;
        settings.beginGroup(document->displayName());
        settings.setValue(QStringLiteral("DocumentType"), document->documentType());
        settings.beginGroup(QStringLiteral("DocumentSettings"));
        content->saveSettings(settings);
        settings.endGroup();
        settings.endGroup();
    }
    writeUnknownDocuments(settings);
    settings.endGroup();
}

void QlumProjectFile::writeUnknownDocuments(QSettings& settings) const
{
    const QMap<QString, QlumKeptSettings>& unknown = m_model->unknownDocuments();
    for (auto kept = unknown.cbegin(); kept != unknown.cend(); ++kept) {
        QString name = kept.key();
        for (int i = 2; m_model->findDocument(name) || (name != kept.key() && unknown.contains(name)); ++i)
            name = QStringLiteral("%1 %2").arg(kept.key()).arg(i); // somebody has taken it meanwhile
        settings.beginGroup(name);
        kept->write(settings);
        settings.endGroup();
    }
}

QlumProjectReading QlumProjectFile::load(const QString& fileName)
{
    m_serverIds.clear();
    m_reading = {};
    m_model->unknownDocuments().clear();
    const QlumIniCheck check = qlumCheckIniFile(fileName);
    const QTemporaryDir folder;
    QFile copy(folder.filePath(QStringLiteral("project.uap")));
    if (!check.readable)
        m_reading.error = check.error;
    else if (check.content.isEmpty() && !check.refused.isEmpty())
        m_reading.error = Text::tr("It is no project file.");
    else if (!copy.open(QIODevice::WriteOnly) || copy.write(check.content) != check.content.size())
        m_reading.error = copy.errorString();
    if (!m_reading.error.isEmpty()) {
        projectLog().error(Text::tr("The project %1 could not be read: %2")
                               .arg(QDir::toNativeSeparators(fileName), m_reading.error));
        return m_reading;
    }
    copy.close();
    for (const QString& line : check.refused)
        leaveOut(line);
    QSettings settings(copy.fileName(), QSettings::IniFormat);
    m_reading.newerVersion = newerThanThis(settings.value(versionKey).toString());
    readServers(settings);
    readDocuments(settings);
    m_plugins->loadSettings(settings, m_serverIds);
    return m_reading;
}

void QlumProjectFile::leaveOut(const QString& text)
{
    projectLog().error(text);
    if (m_reading.leftOut.size() < maximumLeftOut)
        m_reading.leftOut.append(text);
}

QStringList QlumProjectFile::bounded(QStringList groups, int maximum, const QString& what)
{
    if (groups.size() > maximum) {
        leaveOut(Text::tr("The project file holds %1 %2; only the first %3 were read.")
                     .arg(groups.size())
                     .arg(what)
                     .arg(maximum));
        groups = groups.mid(0, maximum);
    }
    return groups;
}

void QlumProjectFile::readServers(QSettings& settings)
{
    settings.beginGroup(QStringLiteral("Servers"));
    for (const QString& group : bounded(settings.childGroups(), maximumServers, Text::tr("servers"))) {
        settings.beginGroup(group);
        readServer(settings);
        settings.endGroup();
    }
    settings.endGroup();
}

void QlumProjectFile::readServer(QSettings& settings)
{
    const QString name = settings.value(QStringLiteral("Name")).toString();
    std::unique_ptr<QlumServerNode> made = m_hooks.createServer(name, settings);
    if (!made) {
        leaveOut(Text::tr("The server '%1' of the project could not be read.").arg(name));
        return;
    }
    ++m_reading.servers;
    QlumServerNode* server = m_model->addServer(std::move(made));
    if (m_hooks.serverAdded)
        m_hooks.serverAdded(server);
    if (settings.value(QStringLiteral("Connected")).toBool())
        m_reading.toConnect.append(server);
    bool hasId = false;
    const int storedId = settings.value(QStringLiteral("ProjectServerId")).toInt(&hasId);
    if (hasId)
        m_serverIds.insert(storedId, static_cast<int>(server->serverId()));
    server->setNamespaceTable(readNamespaces(settings));
}

void QlumProjectFile::readDocuments(QSettings& settings)
{
    settings.beginGroup(QStringLiteral("Documents"));
    for (const QString& name : bounded(settings.childGroups(), maximumDocuments, Text::tr("documents"))) {
        settings.beginGroup(name);
        readDocument(settings, name);
        settings.endGroup();
    }
    settings.endGroup();
}

void QlumProjectFile::readDocument(QSettings& settings, const QString& name)
{
    QString type = settings.value(QStringLiteral("DocumentType")).toString();
    if (type == QLatin1String("Data Access Classic View")) // written by older versions
        type = QStringLiteral("Data Access View");
    const QlumProjectNodeDocument* document = m_hooks.createDocument(type, name);
    if (!document) {
        m_model->unknownDocuments()[name].read(settings, m_serverIds);
        return;
    }
    ++m_reading.documents;
    if (auto* content = qobject_cast<QlumDocumentWidgetInterface*>(document->widget())) {
        settings.beginGroup(QStringLiteral("DocumentSettings"));
        content->loadSettings(settings, m_serverIds);
        settings.endGroup();
    }
}
