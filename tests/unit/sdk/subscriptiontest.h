// A session over the scripted stack whose server has subscriptions, and a callback that remembers what it
// hears.
#pragma once

#include <tests/unit/sdk/sessiontest.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

class RecordingSubscription : public UaClientSdk::UaSubscriptionCallback
{
public:
    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override
    {
        add(handle, "status", status.toString().toStdString());
    }
    void keepAlive(OpcUa_UInt32 handle) override { add(handle, "alive"); }
    void notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32 previous, OpcUa_UInt32 next) override
    {
        std::ostringstream text;
        text << previous << '-' << next;
        add(handle, "missing", text.str());
    }
    void dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& items, UaDiagnosticInfos&) override
    {
        std::ostringstream text;
        for (const OpcUa_MonitoredItemNotification& item : items)
            text << (text.tellp() > 0 ? " " : "") << item.ClientHandle << '=' << item.Value.Value.Value.Int32;
        add(handle, "data", text.str());
    }
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override
    {
        add(handle, "events", std::to_string(events.length()));
    }
    void createMonitoredItemsComplete(OpcUa_UInt32 transactionId, const UaStatus& status,
                                      const UaMonitoredItemCreateResults& results,
                                      const UaDiagnosticInfos&) override
    {
        std::ostringstream text;
        text << status.toString().toUtf8();
        for (const OpcUa_MonitoredItemCreateResult& result : results)
            text << ' ' << result.MonitoredItemId;
        add(transactionId, "created", text.str());
    }
    void deleteMonitoredItemsComplete(OpcUa_UInt32 transactionId, const UaStatus& status,
                                      const UaStatusCodeArray& results, const UaDiagnosticInfos&) override
    {
        std::ostringstream text;
        text << status.toString().toUtf8() << ' ' << results.length();
        add(transactionId, "deleted", text.str());
    }

    /// Runs in every callback, before it is remembered.
    std::function<void(const std::string& text)> during;

    std::vector<std::string> heard()
    {
        std::lock_guard lock(m_mutex);
        return m_heard;
    }
    /// Whether these are all that is heard within the limit, in this order.
    bool waitFor(const std::vector<std::string>& wanted)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_heard == wanted; });
    }
    bool waitForCount(std::size_t count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_heard.size() >= count; });
    }
    /// Whether it is heard within the limit, whatever else is.
    bool waitForLine(const std::string& line)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] {
            return std::find(m_heard.begin(), m_heard.end(), line) != m_heard.end();
        });
    }

private:
    void add(OpcUa_UInt32 first, const char* what, const std::string& rest = {})
    {
        std::ostringstream line;
        line << first << ' ' << what << (rest.empty() ? "" : " ") << rest;
        const std::string text = line.str();
        if (during)
            during(text);
        std::lock_guard lock(m_mutex);
        m_heard.push_back(text);
        m_changed.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_heard;
};

class SubscriptionTest : public SessionTest
{
protected:
    using Answer = std::function<OpcUa_StatusCode(OpcUa_PublishResponse&)>;
    using Values = std::map<OpcUa_UInt32, OpcUa_Int32>; ///< client handle -> value

    void SetUp() override
    {
        SessionTest::SetUp();
        stack.on(OpcUa_CreateSubscriptionRequest_EncodeableType, [this](const void* request, void* response) {
            const auto& asked = *static_cast<const OpcUa_CreateSubscriptionRequest*>(request);
            auto& answer = *static_cast<OpcUa_CreateSubscriptionResponse*>(response);
            answer.SubscriptionId = nextId++;
            answer.RevisedPublishingInterval = asked.RequestedPublishingInterval;
            answer.RevisedLifetimeCount = asked.RequestedLifetimeCount;
            answer.RevisedMaxKeepAliveCount = asked.RequestedMaxKeepAliveCount;
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
        stack.on(
            OpcUa_DeleteSubscriptionsRequest_EncodeableType,
            [this](const void* request, void* response) {
                {
                    std::lock_guard lock(m_mutex);
                    m_deleted.push_back(
                        *static_cast<const OpcUa_DeleteSubscriptionsRequest*>(request)->SubscriptionIds);
                }
                auto& answer = *static_cast<OpcUa_DeleteSubscriptionsResponse*>(response);
                UaStatusCodeArray(1u).detach(&answer.NoOfResults, &answer.Results);
                return static_cast<OpcUa_StatusCode>(OpcUa_Good);
            });
        stack.on(
            OpcUa_PublishRequest_EncodeableType,
            [this](const void* request, void* response) {
                return publish(*static_cast<const OpcUa_PublishRequest*>(request),
                               *static_cast<OpcUa_PublishResponse*>(response));
            });
        answerRepublish([](OpcUa_UInt32, OpcUa_UInt32, OpcUa_NotificationMessage&) {
            return OpcUa_BadMessageNotAvailable;
        });
        stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, true);
        ASSERT_TRUE(connect().isGood());
    }

    void TearDown() override
    {
        if (session.isConnected()) {
            stack.holdAnswers(OpcUa_PublishRequest_EncodeableType, false);
            EXPECT_TRUE(disconnect().isGood());
        }
    }

    UaClientSdk::UaSubscription* create(OpcUa_UInt32 handle)
    {
        UaClientSdk::ServiceSettings settings;
        UaClientSdk::UaSubscription* subscription = nullptr;
        const UaStatus status = session.createSubscription(
            settings, &events, handle, UaClientSdk::SubscriptionSettings(), true, &subscription);
        EXPECT_TRUE(status.isGood()) << status.toString().toUtf8();
        return subscription;
    }

    UaStatus remove(UaClientSdk::UaSubscription*& subscription)
    {
        UaClientSdk::ServiceSettings settings;
        return session.deleteSubscription(settings, &subscription);
    }

    /// The next answer to Publish, which goes out at once when a request is there.
    void answer(Answer how)
    {
        {
            std::lock_guard lock(m_mutex);
            m_answers.push_back(std::move(how));
        }
        stack.releaseAnswers(OpcUa_PublishRequest_EncodeableType, 1);
    }
    void fail(OpcUa_StatusCode status)
    {
        answer([status](OpcUa_PublishResponse&) { return status; });
    }
    void keepAlive(OpcUa_UInt32 id, OpcUa_UInt32 number, std::vector<OpcUa_UInt32> available = {})
    {
        answer([=](OpcUa_PublishResponse& response) {
            response.SubscriptionId = id;
            response.NotificationMessage.SequenceNumber = number;
            setAvailable(response, available);
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
    }
    /// available: what the server says it has kept; when it is left out, the message itself.
    void data(OpcUa_UInt32 id, OpcUa_UInt32 number, const Values& values,
              std::vector<OpcUa_UInt32> available = {})
    {
        if (available.empty())
            available = {number};
        answer([=](OpcUa_PublishResponse& response) {
            response.SubscriptionId = id;
            fillData(response.NotificationMessage, number, values);
            setAvailable(response, available);
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
    }
    /// A message with one notification of any type.
    template <typename T>
    void notify(OpcUa_UInt32 id, OpcUa_UInt32 number, const OpcUa_EncodeableType& type,
                std::function<void(T&)> fill)
    {
        answer([=, &type](OpcUa_PublishResponse& response) {
            response.SubscriptionId = id;
            fill(*attach<T>(response.NotificationMessage, number, type));
            setAvailable(response, {number});
            return static_cast<OpcUa_StatusCode>(OpcUa_Good);
        });
    }

    template <typename T>
    static T* attach(OpcUa_NotificationMessage& message, OpcUa_UInt32 number,
                     const OpcUa_EncodeableType& type)
    {
        void* const object = OpcUa_EncodeableObject_Create(&type);
        UaExtensionObjectArray list(1u);
        OpcUa_ExtensionObject_AttachEncodeable(&list[0], &type, object);
        list.detach(&message.NoOfNotificationData, &message.NotificationData);
        message.SequenceNumber = number;
        return static_cast<T*>(object);
    }
    static void fillData(OpcUa_NotificationMessage& message, OpcUa_UInt32 number, const Values& values)
    {
        auto* const change = attach<OpcUa_DataChangeNotification>(
            message, number, OpcUa_DataChangeNotification_EncodeableType);
        UaMonitoredItemNotifications items(static_cast<OpcUa_UInt32>(values.size()));
        OpcUa_UInt32 i = 0;
        for (const auto& [handle, value] : values) {
            items[i].ClientHandle = handle;
            items[i].Value.Value.Datatype = OpcUaType_Int32;
            items[i++].Value.Value.Value.Int32 = value;
        }
        items.detach(&change->NoOfMonitoredItems, &change->MonitoredItems);
    }
    static void setAvailable(OpcUa_PublishResponse& response, const std::vector<OpcUa_UInt32>& numbers)
    {
        UaUInt32Array(static_cast<OpcUa_Int32>(numbers.size()), numbers.data())
            .detach(&response.NoOfAvailableSequenceNumbers, &response.AvailableSequenceNumbers);
    }

    using Republish = std::function<OpcUa_StatusCode(OpcUa_UInt32 id, OpcUa_UInt32 number,
                                                     OpcUa_NotificationMessage& message)>;
    void answerRepublish(Republish how)
    {
        stack.on(
            OpcUa_RepublishRequest_EncodeableType,
            [how = std::move(how)](const void* request, void* response) {
                const auto& asked = *static_cast<const OpcUa_RepublishRequest*>(request);
                return how(asked.SubscriptionId, asked.RetransmitSequenceNumber,
                           static_cast<OpcUa_RepublishResponse*>(response)->NotificationMessage);
            });
    }

    /// "id:number" of each acknowledgement that came with an answered request.
    std::vector<std::string> acknowledged()
    {
        std::lock_guard lock(m_mutex);
        return m_acknowledged;
    }
    /// The ids that the server was told to delete, and did.
    std::vector<OpcUa_UInt32> deleted()
    {
        std::lock_guard lock(m_mutex);
        return m_deleted;
    }
    int publishCalls() { return stack.calls(OpcUa_PublishRequest_EncodeableType); }
    bool waitForPublishCalls(int count)
    {
        return stack.waitForCalls(OpcUa_PublishRequest_EncodeableType, count);
    }

    RecordingSubscription events;
    std::atomic<OpcUa_UInt32> nextId{1};
    std::atomic<bool> acknowledgeTooFew{false};
    std::atomic<OpcUa_StatusCode> acknowledgeResult{OpcUa_Good};

private:
    OpcUa_StatusCode publish(const OpcUa_PublishRequest& request, OpcUa_PublishResponse& response)
    {
        Answer how;
        const OpcUa_Int32 count = request.NoOfSubscriptionAcknowledgements;
        {
            std::lock_guard lock(m_mutex);
            if (m_answers.empty())
                return OpcUa_BadSessionClosed; // released at the end of the test
            how = std::move(m_answers.front());
            m_answers.pop_front();
            for (OpcUa_Int32 i = 0; i < count; ++i) {
                const auto& one = request.SubscriptionAcknowledgements[i];
                std::ostringstream text;
                text << one.SubscriptionId << ':' << one.SequenceNumber;
                m_acknowledged.push_back(text.str());
            }
        }
        UaStatusCodeArray results(static_cast<OpcUa_UInt32>(acknowledgeTooFew ? 0 : count));
        for (OpcUa_StatusCode& result : results)
            result = acknowledgeResult;
        results.detach(&response.NoOfResults, &response.Results);
        return how(response);
    }

    std::mutex m_mutex;
    std::deque<Answer> m_answers;
    std::vector<std::string> m_acknowledged;
    std::vector<OpcUa_UInt32> m_deleted;
};

class SubscriptionReconnect : public SubscriptionTest
{
protected:
    /// The link breaks; the next attempt to connect is left to passWatchdogTime.
    void breakLink()
    {
        const auto before = callback.statuses().size();
        stack.failNext(OpcUa_ReadRequest_EncodeableType, {OpcUa_BadConnectionClosed});
        stack.loseLink();
        ASSERT_TRUE(callback.waitForCount(before + 1));
        ASSERT_EQ(callback.statuses().back(), UaClientSdk::UaClient::ConnectionErrorApiReconnect);
    }
    /// It comes back; replaced: the server has forgotten the session.
    void mendLink(bool replaced = false)
    {
        const auto before = callback.statuses().size();
        if (replaced)
            stack.failNext(OpcUa_ActivateSessionRequest_EncodeableType, {OpcUa_BadSessionIdInvalid});
        passWatchdogTime();
        ASSERT_TRUE(callback.waitForCount(before + (replaced ? 2 : 1)));
        ASSERT_EQ(callback.statuses().back(), UaClientSdk::UaClient::Connected);
    }
};
