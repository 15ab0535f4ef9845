#include <recording/recorder.h>

#include <recording/recorderwork_p.h>
#include <uabase/values/uadatetime.h>

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <chrono>
#include <memory>
#include <sys/statvfs.h>
#include <utility>
#include <vector>

namespace recording {

Surroundings Surroundings::usual()
{
    return {[] { return UaDateTime::now().value(); },
            [] {
                const auto now = std::chrono::steady_clock::now().time_since_epoch();
                return static_cast<OpcUa_Int64>(
                    std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
            },
            [](const QString& path) {
                struct statvfs facts
                {
                };
                if (::statvfs(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), &facts) != 0)
                    return qint64(-1);
                return static_cast<qint64>(facts.f_bavail) * static_cast<qint64>(facts.f_frsize);
            }};
}

Recorder::Recorder(std::unique_ptr<RecordSink> sink, const RecorderSettings& settings,
                   Surroundings surroundings)
    : d(std::make_unique<RecorderWork>(std::move(sink), settings, std::move(surroundings)))
{
}

Recorder::~Recorder()
{
    d->stop();
}

std::shared_ptr<monitoring::AllSink> Recorder::source(const QString& server)
{
    return d->source(server);
}

ItemNumber Recorder::addItem(const RecordedItem& item)
{
    return d->addItem(item);
}

void Recorder::start()
{
    d->start();
}

void Recorder::stop()
{
    d->stop();
}

void Recorder::mark(const Mark& mark)
{
    d->mark(mark);
}

bool Recorder::flush(int milliseconds)
{
    return d->flush(milliseconds);
}

RecorderStatus Recorder::status() const
{
    return d->status();
}

std::vector<ItemFigures> Recorder::takeFigures()
{
    return d->takeFigures();
}

} // namespace recording
