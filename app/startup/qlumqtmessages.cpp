#include <app/startup/qlumqtmessages.h>

#include <uabase/system/uatrace.h>

#include <QMessageLogContext>
#include <QString>
#include <QtGlobal>

#include <cstdio>

namespace {
// Errors and warnings of the trace reach the log of the user, to whom Qt's are no news.
void writeToTrace(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QString line = qFormatLogMessage(type, context, text);
    UaTrace::traceOutput(type == QtFatalMsg ? UaTrace::Errors : UaTrace::Info, line.toUtf8().constData(), 0);
    if (type == QtFatalMsg) // the program ends now
        std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
}
} // namespace

void qlumTraceQtMessages()
{
    // Qt's own switch for those who want them on the console
    if (qEnvironmentVariableIsEmpty("QT_FORCE_STDERR_LOGGING"))
        qInstallMessageHandler(writeToTrace);
}
