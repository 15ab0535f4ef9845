#include <servers/passwords/qlumsecretservice.h>

#include <stop_token>
#include <string>

// the precompiled headers bring Qt, whose keyword is the name of a member there. Items go by their paths: an
// object for each of them, made on a thread that ends, would never be freed whole
#define SECRET_API_SUBJECT_TO_CHANGE 1
#pragma push_macro("signals")
#undef signals
#include <libsecret/secret.h>
#pragma pop_macro("signals")

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <thread>

namespace {
using Answer = QlumKeyringAnswer;
using namespace std::chrono_literals;

constexpr auto serviceLimit = 5s; // for a service that does not ask the user
constexpr auto promptLimit = 120s;
constexpr auto graceLimit = 1s; // for what was cancelled

struct Unref
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using Object = std::unique_ptr<T, Unref>;

struct FreeValue
{
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
struct FreeTable
{
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
};
struct FreePaths
{
    void operator()(char** paths) const { g_strfreev(paths); }
};
using Value = std::unique_ptr<SecretValue, FreeValue>;
using Table = std::unique_ptr<GHashTable, FreeTable>;
using Paths = std::unique_ptr<char*, FreePaths>;

const char* firstOf(const Paths& paths)
{
    return paths ? *paths : nullptr;
}

// One exchange with the service: ends by itself, by its time or by a stop.
class Exchange
{
public:
    Exchange(std::chrono::seconds limit, const std::stop_token& stop)
        : m_cancellable(g_cancellable_new()),
          m_onStop(stop, [this] { g_cancellable_cancel(m_cancellable.get()); }),
          m_watch([this, limit](const std::stop_token& ended) { watch(limit, ended); })
    {
    }
    ~Exchange() { g_clear_error(&m_error); }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    [[nodiscard]] GCancellable* cancellable() const { return m_cancellable.get(); }
    [[nodiscard]] GError** error() { return &m_error; }
    [[nodiscard]] bool hasFailed() const { return m_error != nullptr; }
    // Of a failed one.
    [[nodiscard]] Answer failure(Answer::State otherwise, const std::stop_token& stop) const
    {
        if (stop.stop_requested())
            return {Answer::Cancelled, {}};
        if (g_error_matches(m_error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED))
            return {Answer::Locked, m_error->message};
        return {otherwise,
                g_cancellable_is_cancelled(m_cancellable.get()) ? "no answer in time" : m_error->message};
    }

private:
    void watch(std::chrono::seconds limit, const std::stop_token& ended)
    {
        std::unique_lock lock(m_mutex);
        if (!m_ended.wait_for(lock, ended, limit, [] { return false; }) && !ended.stop_requested())
            g_cancellable_cancel(m_cancellable.get());
    }

    const Object<GCancellable> m_cancellable;
    GError* m_error = nullptr;
    std::mutex m_mutex;
    std::condition_variable_any m_ended;
    std::stop_callback<std::function<void()>> m_onStop;
    std::jthread m_watch; // last: joined first
};

// What may ask the user goes through here: the library forgets a call whose question ends with its service,
// so its own waiting would never end. The end of the service cancels; a call that does not end even then is
// left behind, with its loop and what it holds.
class PromptedCall
{
public:
    PromptedCall(SecretService* service, Exchange& exchange) : m_exchange(exchange)
    {
        g_main_context_push_thread_default(m_pending->loop);
        const auto cancel = [](GDBusConnection*, const gchar*, gpointer cancellable) {
            g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
        };
        GDBusProxy* proxy = G_DBUS_PROXY(service);
        m_watch = g_bus_watch_name_on_connection(
            g_dbus_proxy_get_connection(proxy), g_dbus_proxy_get_name(proxy), G_BUS_NAME_WATCHER_FLAGS_NONE,
            nullptr, cancel, g_object_ref(exchange.cancellable()), g_object_unref);
        GSource* tick = g_timeout_source_new(100); // a cancel does not wake the loop
        g_source_set_callback(
            tick, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
        g_source_attach(tick, m_pending->loop);
        g_source_unref(tick);
    }
    ~PromptedCall()
    {
        g_bus_unwatch_name(m_watch);
        g_main_context_pop_thread_default(m_pending->loop);
        if (m_pending->result) {
            g_object_unref(m_pending->result);
            g_main_context_unref(m_pending->loop);
            delete m_pending;
        }
    }
    PromptedCall(const PromptedCall&) = delete;
    PromptedCall& operator=(const PromptedCall&) = delete;

    // The callback of the call, and its data.
    static void end(GObject*, GAsyncResult* result, gpointer pending)
    {
        static_cast<Pending*>(pending)->result = static_cast<GAsyncResult*>(g_object_ref(result));
    }
    [[nodiscard]] gpointer pending() const { return m_pending; }
    // Null, and the exchange has failed, when it does not end.
    [[nodiscard]] GAsyncResult* wait()
    {
        std::optional<std::chrono::steady_clock::time_point> end;
        while (!m_pending->result && (!end || std::chrono::steady_clock::now() < *end)) {
            g_main_context_iteration(m_pending->loop, TRUE);
            if (!end && g_cancellable_is_cancelled(m_exchange.cancellable()))
                end = std::chrono::steady_clock::now() + graceLimit;
        }
        if (!m_pending->result)
            g_set_error_literal(m_exchange.error(), G_IO_ERROR, G_IO_ERROR_TIMED_OUT, "no answer in time");
        return m_pending->result;
    }

private:
    struct Pending
    {
        GMainContext* loop = g_main_context_new();
        GAsyncResult* result = nullptr;
    };

    Exchange& m_exchange;
    Pending* const m_pending = new Pending; // outlives this when the call does
    guint m_watch = 0;
};

const SecretSchema& schema()
{
    static const SecretSchema schema{"com.korvanda.tavelin.Password",
                                     SECRET_SCHEMA_NONE,
                                     {{"server", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {"endpoint", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {"user", SECRET_SCHEMA_ATTRIBUTE_STRING},
                                      {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                                     0,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr,
                                     nullptr};
    return schema;
}

Table attributesOf(const QlumKeyringKey& key)
{
    Table table(g_hash_table_new_full(g_str_hash, g_str_equal, nullptr, g_free));
    const auto add = [&table](const char* name, const std::string& value) {
        g_hash_table_insert(table.get(), const_cast<char*>(name), g_strdup(value.c_str()));
    };
    if (!key.serverUri.empty())
        add("server", key.serverUri);
    add("endpoint", key.endpoint);
    add("user", key.user);
    return table;
}

// Null, and the answer, when there is none.
Object<SecretService> open(const std::stop_token& stop, Answer& answer)
{
    Exchange exchange(serviceLimit, stop);
    // else the program would be ended with its session bus
    const Object<GDBusConnection> bus(
        g_bus_get_sync(G_BUS_TYPE_SESSION, exchange.cancellable(), exchange.error()));
    if (!bus) {
        answer = exchange.failure(Answer::Absent, stop);
        return nullptr;
    }
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    Object<SecretService> service(
        secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, exchange.cancellable(), exchange.error()));
    if (!service)
        answer = exchange.failure(Answer::Absent, stop);
    return service;
}

// With the service that is there; once more when it was another one that the library remembers.
template <typename Call>
Answer ask(const std::stop_token& stop, Call call)
{
    Answer answer;
    for (int attempt = 0; attempt < 2; ++attempt) {
        answer = {};
        const Object<SecretService> service = open(stop, answer);
        if (service)
            answer = call(service.get());
        if (answer.state != Answer::Failed && answer.state != Answer::Absent)
            break;
        secret_service_disconnect();
    }
    return answer;
}

Answer unlock(SecretService* service, const char* path, const std::stop_token& stop)
{
    Exchange exchange(promptLimit, stop);
    const char* wanted[] = {path, nullptr};
    char** unlocked = nullptr;
    PromptedCall call(service, exchange);
    secret_service_unlock_dbus_paths(service, wanted, exchange.cancellable(), PromptedCall::end,
                                     call.pending());
    if (GAsyncResult* result = call.wait())
        secret_service_unlock_dbus_paths_finish(service, result, &unlocked, exchange.error());
    const Paths done(unlocked);
    if (exchange.hasFailed())
        return exchange.failure(Answer::Locked, stop);
    return {firstOf(done) ? Answer::Done : Answer::Locked, {}};
}

Answer load(SecretService* service, const char* path, UaClientSdk::SecretBytes& password,
            const std::stop_token& stop)
{
    Exchange exchange(serviceLimit, stop);
    const Value value(secret_service_get_secret_for_dbus_path_sync(service, path, exchange.cancellable(),
                                                                   exchange.error()));
    if (exchange.hasFailed())
        return exchange.failure(Answer::Failed, stop);
    if (!value)
        return {Answer::Missing, {}};
    gsize length = 0;
    const auto* text = reinterpret_cast<const OpcUa_Byte*>(secret_value_get(value.get(), &length));
    password.reserve(length);
    password.append(std::span<const OpcUa_Byte>(text, length));
    return {};
}
} // namespace

QlumKeyringAnswer QlumSecretService::check(const std::stop_token& stop)
{
    return ask(
        stop, [](SecretService*) { return Answer(); });
}

QlumKeyringAnswer QlumSecretService::find(const QlumKeyringKey& key, UaClientSdk::SecretBytes& password,
                                          const std::stop_token& stop)
{
    return ask(
        stop,
        [&](SecretService* service) -> Answer {
            Exchange exchange(serviceLimit, stop);
            const Table attributes = attributesOf(key);
            char** readablePaths = nullptr;
            char** closedPaths = nullptr;
            secret_service_search_for_dbus_paths_sync(service, &schema(), attributes.get(),
                                                      exchange.cancellable(), &readablePaths, &closedPaths,
                                                      exchange.error());
            const Paths readable(readablePaths);
            const Paths closed(closedPaths);
            if (exchange.hasFailed())
                return exchange.failure(Answer::Failed, stop);
            if (const char* path = firstOf(readable))
                return load(service, path, password, stop);
            const char* path = firstOf(closed);
            if (!path)
                return {Answer::Missing, {}};
            const Answer unlocked = unlock(service, path, stop);
            return unlocked.state == Answer::Done ? load(service, path, password, stop) : unlocked;
        });
}

QlumKeyringAnswer QlumSecretService::keep(const QlumKeyringKey& key, const UaClientSdk::SecretBytes& password,
                                          const std::string& label, const std::stop_token& stop)
{
    return ask(
        stop,
        [&](SecretService* service) -> Answer {
            Exchange exchange(promptLimit, stop); // it may ask to unlock, or for a first keyring
            const Table attributes = attributesOf(key);
            const std::span<const OpcUa_Byte> bytes = password.bytes();
            const Value value(secret_value_new(reinterpret_cast<const char*>(bytes.data()),
                                               static_cast<gssize>(bytes.size()), "text/plain"));
            PromptedCall call(service, exchange);
            secret_service_store(service, &schema(), attributes.get(), SECRET_COLLECTION_DEFAULT,
                                 label.c_str(), value.get(), exchange.cancellable(), PromptedCall::end,
                                 call.pending());
            GAsyncResult* result = call.wait();
            const bool isKept = result && secret_service_store_finish(service, result, exchange.error());
            if (exchange.hasFailed())
                return exchange.failure(Answer::Failed, stop);
            return {isKept ? Answer::Done : Answer::Locked, {}}; // the prompt was dismissed
        });
}

QlumKeyringAnswer QlumSecretService::forget(const QlumKeyringKey& key, const std::stop_token& stop)
{
    return ask(
        stop,
        [&](SecretService* service) -> Answer {
            Exchange exchange(promptLimit, stop);
            const Table attributes = attributesOf(key);
            PromptedCall call(service, exchange);
            secret_service_clear(service, &schema(), attributes.get(), exchange.cancellable(),
                                 PromptedCall::end, call.pending());
            GAsyncResult* result = call.wait();
            const bool isForgotten = result && secret_service_clear_finish(service, result, exchange.error());
            if (exchange.hasFailed())
                return exchange.failure(Answer::Failed, stop);
            return {isForgotten ? Answer::Done : Answer::Missing, {}};
        });
}
