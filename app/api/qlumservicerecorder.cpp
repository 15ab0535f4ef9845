#include <app/api/qlumservicerecorder.h>

#include <app/api/qlumserviceneed.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>

#include <chrono>
#include <cstddef>
#include <cstring>
#include <map>
#include <utility>

namespace {
using UaClientSdk::ServiceCall;
using UaClientSdk::ServiceOutcome;

// What must not lie about in a copy: the structure itself is copied without what it points to, and the
// pointer is nulled before all that is left is copied deeply.
void forgetSecrets(const OpcUa_EncodeableType& type, void* shallow)
{
    if (type.FieldCount > 0 && type.Fields[0].StructureType == &OpcUa_RequestHeader_EncodeableType)
        OpcUa_NodeId_Initialize(&static_cast<OpcUa_RequestHeader*>(shallow)->AuthenticationToken);
    if (type.TypeId == OpcUaId_CreateSessionResponse)
        OpcUa_NodeId_Initialize(&static_cast<OpcUa_CreateSessionResponse*>(shallow)->AuthenticationToken);
    if (type.TypeId == OpcUaId_ActivateSessionRequest) {
        OpcUa_ExtensionObject& token = static_cast<OpcUa_ActivateSessionRequest*>(shallow)->UserIdentityToken;
        token.Encoding = OpcUa_ExtensionObjectEncoding_None;
        token.Body = {};
    }
}

std::shared_ptr<const QlumCallNote> noteOf(const ServiceCall& call)
{
    const auto* note = dynamic_cast<const QlumCallNote*>(call.note);
    if (!note)
        return nullptr;
    auto secrets = std::make_shared<QlumCallNote>(); // the values that were shown are of no use here
    secrets->secretArguments = note->secretArguments;
    secrets->isSecret = note->isSecret;
    return secrets;
}

qint64 since(OpcUa_UInt64 start, OpcUa_UInt64 stamp)
{
    return stamp > start ? static_cast<qint64>(stamp - start) : -1;
}
} // namespace

QlumServiceMessage::QlumServiceMessage(const OpcUa_EncodeableType& type, const void* message) : m_type(type)
{
    std::vector<std::max_align_t> shallow(type.AllocationSize / sizeof(std::max_align_t) + 1);
    std::memcpy(shallow.data(), message, type.AllocationSize);
    forgetSecrets(type, shallow.data());
    m_object = OpcUa_EncodeableObject_Create(&type);
    if (m_object && OpcUa_IsBad(OpcUa_EncodeableObject_Copy(&type, shallow.data(), m_object)))
        OpcUa_EncodeableObject_Delete(&m_type, &m_object);
}

QlumServiceMessage::~QlumServiceMessage()
{
    if (m_object)
        OpcUa_EncodeableObject_Delete(&m_type, &m_object);
}

// The observer of one session: calls that are under way, by their number in it.
class QlumServiceRecorder::Tap final : public UaClientSdk::ServiceObserver
{
public:
    Tap(const std::shared_ptr<QlumServiceRecorder>& recorder, unsigned int serverId,
        std::function<QString()> serverName)
        : m_recorder(recorder), m_serverId(serverId), m_serverName(std::move(serverName))
    {
        setLooking(recorder->isOn());
    }
    using ServiceObserver::setLooking;

    void serviceBegun(OpcUa_UInt64 number, const ServiceCall& call) override
    {
        const auto recorder = m_recorder.lock();
        if (!recorder)
            return;
        QlumServiceRecord record;
        record.serverId = m_serverId;
        record.server = m_serverName();
        record.service = qlumServiceName(call.type);
        record.callPurpose = call.purpose;
        record.purpose = qlumPurposeWords(toQString(call.purpose));
        record.begun = QDateTime::currentDateTime();
        record.passed = static_cast<qint64>(monotonicNow());
        record.note = noteOf(call);
        record.request = std::make_shared<QlumServiceMessage>(call.type, call.request);
        recorder->add(record);
        const std::lock_guard lock(m_mutex);
        m_underWay.emplace(number, std::move(record));
    }

    void serviceEnded(OpcUa_UInt64 number, const ServiceOutcome& outcome) override
    {
        std::map<OpcUa_UInt64, QlumServiceRecord>::node_type begun;
        {
            const std::lock_guard lock(m_mutex);
            begun = m_underWay.extract(number);
        }
        const auto recorder = m_recorder.lock();
        if (begun.empty() || !recorder)
            return;
        QlumServiceRecord& record = begun.mapped();
        finish(record, outcome);
        recorder->add(record);
    }

private:
    static void finish(QlumServiceRecord& record, const ServiceOutcome& outcome)
    {
        const OpcUa_CallMeasure& measure = outcome.measure;
        record.hasEnded = true;
        record.status = outcome.status;
        record.bytesOut = measure.BytesOut;
        record.bytesIn = measure.BytesIn;
        record.times = {since(outcome.passed, measure.Encoded), since(outcome.passed, measure.Sent),
                        since(outcome.passed, measure.FirstByte), since(outcome.passed, measure.Decoded),
                        since(outcome.passed, monotonicNow())};
        if (measure.BytesOut > maximumMessage)
            record.request.reset();
        if (outcome.response && measure.BytesIn <= maximumMessage)
            record.response = std::make_shared<QlumServiceMessage>(*outcome.type, outcome.response);
    }

    static OpcUa_UInt64 monotonicNow()
    {
        using namespace std::chrono;
        return static_cast<OpcUa_UInt64>(
            duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count());
    }

    const std::weak_ptr<QlumServiceRecorder> m_recorder;
    const unsigned int m_serverId;
    const std::function<QString()> m_serverName;
    std::mutex m_mutex;
    std::map<OpcUa_UInt64, QlumServiceRecord> m_underWay;
};

QlumServiceRecorder::QlumServiceRecorder() = default;
QlumServiceRecorder::~QlumServiceRecorder() = default;

const std::shared_ptr<QlumServiceRecorder>& QlumServiceRecorder::ofApplication()
{
    static const auto recorder = std::make_shared<QlumServiceRecorder>();
    return recorder;
}

std::shared_ptr<UaClientSdk::ServiceObserver>
QlumServiceRecorder::observerOf(unsigned int serverId, std::function<QString()> serverName)
{
    auto tap = std::make_shared<Tap>(shared_from_this(), serverId, std::move(serverName));
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_taps, [](const std::weak_ptr<Tap>& old) { return old.expired(); });
    m_taps.push_back(tap);
    tap->setLooking(isOn()); // should it have been switched meanwhile
    return tap;
}

void QlumServiceRecorder::setOn(bool isOn)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_isOn.exchange(isOn) == isOn)
            return;
        for (const std::weak_ptr<Tap>& each : m_taps)
            if (const auto tap = each.lock())
                tap->setLooking(isOn);
    }
    emit switched(isOn);
}

void QlumServiceRecorder::add(QlumServiceRecord& record)
{
    bool isFirst = false;
    {
        const std::lock_guard lock(m_mutex);
        if (record.number == 0) // so that they come in the order of their numbers
            record.number = m_next++;
        isFirst = m_waiting.empty();
        if (m_waiting.size() >= maximumWaiting) {
            m_waiting.erase(m_waiting.begin(), m_waiting.begin() + maximumWaiting / 2);
            m_dropped.fetch_add(static_cast<int>(maximumWaiting / 2));
        }
        m_waiting.push_back(record);
    }
    if (isFirst)
        emit recorded();
}

std::vector<QlumServiceRecord> QlumServiceRecorder::take()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_waiting, {});
}
