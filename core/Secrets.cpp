// SPDX-License-Identifier: GPL-3.0-or-later
#include "Secrets.h"

#include "platform/SessionBus.h"

#include <QStringDecoder>

#include <libsecret/secret.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace lumbra::Secrets {

namespace {

constexpr char variable[] = "CORVANE_API_KEY";
constexpr char serviceName[] = "com.lumbra.ildo";
constexpr char accountName[] = "corvane-api-key";
constexpr char label[] = "Lumbra: Corvane Ildo key";
constexpr auto patience = std::chrono::seconds(2);

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
struct FreeAttributes {
    void operator()(GHashTable* attributes) const { g_hash_table_unref(attributes); }
};
struct FreeItems {
    void operator()(GList* items) const { g_list_free_full(items, g_object_unref); }
};
struct FreeValue {
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
struct FreeError {
    void operator()(GError* error) const { g_error_free(error); }
};

using Service = std::unique_ptr<SecretService, Unref>;
using Attributes = std::unique_ptr<GHashTable, FreeAttributes>;
using Value = std::unique_ptr<SecretValue, FreeValue>;
using Error = std::unique_ptr<GError, FreeError>;

// An item is found by service and account alone, so that one made with another tool counts too.
const SecretSchema* schema() {
    static const SecretSchema made = [] {
        SecretSchema schema{};
        schema.name = serviceName;
        schema.flags = SECRET_SCHEMA_DONT_MATCH_NAME;
        schema.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        schema.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return schema;
    }();
    return &made;
}

Attributes attributes() {
    return Attributes(
        secret_attributes_build(schema(), "service", serviceName, "account", accountName, static_cast<char*>(nullptr)));
}

// Cancels what is given its `cancellable` once the time has passed.
class TimeLimit {
public:
    explicit TimeLimit(std::chrono::milliseconds limit)
        : m_cancellable(g_cancellable_new()), m_clock([this, limit](const std::stop_token& stop) {
              std::mutex mutex;
              std::unique_lock lock(mutex);
              std::condition_variable_any woken;
              if (!woken.wait_for(lock, stop, limit, [&stop] { return stop.stop_requested(); }))
                  g_cancellable_cancel(m_cancellable.get());
          }) {}

    GCancellable* cancellable() const { return m_cancellable.get(); }

private:
    std::unique_ptr<GCancellable, Unref> m_cancellable;
    std::jthread m_clock; // ends first
};

// Null when there is no bus, or nobody on it who keeps secrets.
Service secretService(GCancellable* cancellable) {
    if (!sessionBusIsNamed())
        return nullptr;
    GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, nullptr);
    if (!bus)
        return nullptr;
    // By default the library ends this process together with the bus.
    g_dbus_connection_set_exit_on_close(bus, FALSE);
    g_object_unref(bus);
    return Service(secret_service_get_sync(SECRET_SERVICE_NONE, cancellable, nullptr));
}

std::optional<QString> decoded(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

std::optional<QString> keptKey() {
    const TimeLimit limit(patience);
    const Service service = secretService(limit.cancellable());
    if (!service)
        return std::nullopt;
    // Without the flag that unlocks: an item that is locked comes without its secret.
    const std::unique_ptr<GList, FreeItems> found(secret_service_search_sync(
        service.get(), schema(), attributes().get(), SECRET_SEARCH_LOAD_SECRETS, limit.cancellable(), nullptr));
    if (!found)
        return std::nullopt;
    const Value value(secret_item_get_secret(static_cast<SecretItem*>(found->data)));
    if (!value)
        return std::nullopt;
    gsize length = 0;
    const gchar* const bytes = secret_value_get(value.get(), &length);
    return decoded(QByteArrayView(bytes, qsizetype(length)));
}

} // namespace

std::optional<QString> ildoKey() {
    if (const QByteArray told = qgetenv(variable); !told.isEmpty())
        return decoded(told);
    return keptKey();
}

int setIldoKey(const QString& key) {
    constexpr int failed = -1;
    const Service service = secretService(nullptr);
    if (!service)
        return failed;
    removeIldoKey();
    const QByteArray bytes = key.toUtf8();
    const Value value(secret_value_new(bytes.constData(), bytes.size(), "text/plain"));
    GError* problem = nullptr;
    const bool stored = secret_service_store_sync(service.get(), schema(), attributes().get(),
                                                  SECRET_COLLECTION_DEFAULT, label, value.get(), nullptr, &problem);
    const Error error(problem);
    if (stored)
        return 0;
    return error && error->code != 0 ? error->code : failed; // without an error the user has refused
}

void removeIldoKey() {
    if (const Service service = secretService(nullptr))
        secret_service_clear_sync(service.get(), schema(), attributes().get(), nullptr, nullptr);
}

} // namespace lumbra::Secrets
