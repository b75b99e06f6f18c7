#include "KorvaneCore/platform/linux/SecretServiceStore.h"

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/linux/Libsecret.h"

#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <optional>

#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* label = "Korvane audit key";

const SecretSchema& schema() {
    static const SecretSchema schema = [] {
        SecretSchema made{};
        made.name = "com.ostrel.Korvane.secret";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return schema;
}

/// Something of the library's that is given back at the end.
template <typename T, typename Argument = void>
using Owned = std::unique_ptr<T, void (*)(Argument*)>;

template <typename T>
Owned<T> ownedObject(const Libsecret& api, T* object) {
    return {object, api.objectUnref};
}

/// Cancels what the library is waiting for once the time is up.
class Deadline {
  public:
    Deadline(const Libsecret& api, std::chrono::milliseconds limit)
        : cancellable_(ownedObject(api, api.cancellableNew())), watch_([this, &api, limit] {
              std::unique_lock guard(lock_);
              if (!finished_.wait_for(guard, limit, [this] { return done_; })) {
                  api.cancellableCancel(cancellable_.get());
              }
          }) {}
    ~Deadline() {
        const std::lock_guard guard(lock_);
        done_ = true;
        finished_.notify_all();
    }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    [[nodiscard]] GCancellable* get() const { return cancellable_.get(); }

  private:
    Owned<GCancellable> cancellable_;
    std::mutex lock_;
    std::condition_variable finished_;
    bool done_ = false;
    Task watch_; // last: ends before what it uses
};

/// Where the library puts an error.
class Failure {
  public:
    explicit Failure(const Libsecret& api) : api_(api) {}
    ~Failure() { clear(); }
    Failure(const Failure&) = delete;
    Failure& operator=(const Failure&) = delete;

    /// To be filled by the next call.
    [[nodiscard]] GError** out() {
        clear();
        return &error_;
    }
    [[nodiscard]] explicit operator bool() const { return error_ != nullptr; }
    [[nodiscard]] const GError* get() const { return error_; }
    [[nodiscard]] SecretReading reading() const {
        return {SecretReading::Outcome::unavailable, "",
                fmt::format("The keyring could not be read: {}",
                            error_ != nullptr ? displayText(error_->message) : "no answer")};
    }

  private:
    void clear() {
        if (error_ != nullptr) {
            api_.errorFree(error_);
            error_ = nullptr;
        }
    }

    const Libsecret& api_;
    GError* error_ = nullptr;
};

/// Whether there is a session bus to be asked; the library would start one of its own.
bool hasSessionBus() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); // NOLINT(concurrency-mt-unsafe)
    if (address != nullptr && *address != '\0') {
        return true;
    }
    const char* runtime = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe)
    return runtime != nullptr && *runtime == '/' &&
           access((std::string(runtime) + "/bus").c_str(), F_OK) == 0;
}

enum class Presence { absent, present, silent };

/// Asks the bus itself.
Owned<GVariant, GVariant> askBus(const Libsecret& api, GDBusConnection* bus, const char* question,
                                 GVariant* arguments, const Deadline& deadline, Failure& failure) {
    return {api.callOnBus(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                          "org.freedesktop.DBus", question, arguments, nullptr,
                          G_DBUS_CALL_FLAGS_NONE, -1, deadline.get(), failure.out()),
            api.variantUnref};
}

/// Whether the bus has the service, which is started when it can be and is not running.
Presence presenceOnBus(const Libsecret& api, const Deadline& deadline, Failure& failure) {
    const auto bus =
        ownedObject(api, api.busGet(G_BUS_TYPE_SESSION, deadline.get(), failure.out()));
    if (!bus) {
        return api.cancellableIsCancelled(deadline.get()) != 0 ? Presence::silent
                                                               : Presence::absent;
    }
    // By default the library ends the process when the bus goes away, be it in mid-cleanup.
    api.setExitOnClose(bus.get(), 0);
    gboolean running = 0;
    const auto owned = askBus(api, bus.get(), "NameHasOwner", api.variantNew("(s)", serviceName),
                              deadline, failure);
    if (!owned) {
        return Presence::silent;
    }
    api.variantGet(owned.get(), "(b)", &running);
    if (running != 0 || askBus(api, bus.get(), "StartServiceByName",
                               api.variantNew("(su)", serviceName, 0U), deadline, failure)) {
        return Presence::present;
    }
    const GError* error = failure.get();
    return error != nullptr && error->domain == api.busErrorDomain() &&
                   error->code == G_DBUS_ERROR_SERVICE_UNKNOWN
               ? Presence::absent
               : Presence::silent;
}

using Items = std::vector<Owned<SecretItem>>;

/// One secret's place in the service.
class SecretPlace {
  public:
    SecretPlace(const Libsecret& api, std::string_view service, std::string_view account)
        : api_(api), service_(service), account_(account),
          attributes_(api.tableNew(api.textHash, api.textEqual), api.tableUnref) {
        api_.tableInsert(attributes_.get(), serviceKey_.data(), service_.data());
        api_.tableInsert(attributes_.get(), accountKey_.data(), account_.data());
    }
    SecretPlace(const SecretPlace&) = delete;
    SecretPlace& operator=(const SecretPlace&) = delete;

    /// Finds and starts the service and opens a session with it.
    Presence connect(const Deadline& deadline, Failure& failure) {
        const Presence presence = presenceOnBus(api_, deadline, failure);
        if (presence == Presence::present) {
            // The library keeps on to a service that was restarted since.
            api_.serviceDisconnect();
            keyring_.reset(
                api_.serviceGet(SECRET_SERVICE_OPEN_SESSION, deadline.get(), failure.out()));
            return keyring_ ? presence : Presence::silent;
        }
        return presence;
    }

    /// Everything kept in this place, locked or not; nothing after a failure.
    std::optional<Items> search(const Deadline& deadline, Failure& failure) const {
        constexpr auto flags =
            static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS);
        GList* list = api_.serviceSearch(keyring_.get(), &schema(), attributes_.get(), flags,
                                         deadline.get(), failure.out());
        Items items;
        for (const GList* node = list; node != nullptr; node = node->next) {
            items.push_back(ownedObject(api_, static_cast<SecretItem*>(node->data)));
        }
        api_.listFree(list);
        return failure ? std::nullopt : std::optional(std::move(items));
    }

    [[nodiscard]] std::optional<std::string> secretOf(const Items& items) const {
        for (const auto& item : items) {
            const Owned<SecretValue> value(api_.itemSecret(item.get()), api_.valueUnref);
            if (value) {
                gsize length = 0;
                const char* bytes = api_.valueGet(value.get(), &length);
                return std::string(bytes, length);
            }
        }
        return std::nullopt;
    }

    /// The default collection when it is locked, in which case it may hide the secret.
    Owned<SecretCollection> lockedCollection(const Deadline& deadline, Failure& failure) const {
        auto collection = ownedObject(
            api_, api_.collectionForAlias(keyring_.get(), SECRET_COLLECTION_DEFAULT,
                                          SECRET_COLLECTION_NONE, deadline.get(), failure.out()));
        if (collection && api_.collectionIsLocked(collection.get()) == 0) {
            collection.reset();
        }
        return collection;
    }

    /// Lets the service ask the user; what came of it shows in the next search.
    void unlock(gpointer object, const Deadline& deadline, Failure& failure) const {
        GList* objects = api_.listAppend(nullptr, object);
        api_.serviceUnlock(keyring_.get(), objects, deadline.get(), nullptr, failure.out());
        api_.listFree(objects);
    }

    bool store(std::string_view data, const Deadline& deadline, Failure& failure) const {
        const Owned<SecretValue> value(api_.valueNew(data.data(), static_cast<gssize>(data.size()),
                                                     "application/octet-stream"),
                                       api_.valueUnref);
        return api_.serviceStore(keyring_.get(), &schema(), attributes_.get(),
                                 SECRET_COLLECTION_DEFAULT, label, value.get(), deadline.get(),
                                 failure.out()) != 0;
    }

  private:
    const Libsecret& api_;
    std::string serviceKey_ = "service";
    std::string accountKey_ = "account";
    std::string service_;
    std::string account_;
    Owned<GHashTable, GHashTable> attributes_;
    Owned<SecretService> keyring_{nullptr, api_.objectUnref};
};

/// The library, when there is a session in which it can find a service.
const Libsecret* usableLibrary() {
    return hasSessionBus() ? Libsecret::shared() : nullptr;
}

} // namespace

SecretReading SecretServiceStore::read(std::string_view service, std::string_view account) {
    const Libsecret* api = usableLibrary();
    if (api == nullptr) {
        return {};
    }
    const std::lock_guard guard(lock_);
    SecretPlace place(*api, service, account);
    Failure failure(*api);
    while (true) {
        const Deadline deadline(*api, patience_.answer);
        const Presence presence = place.connect(deadline, failure);
        if (presence != Presence::present) {
            return presence == Presence::absent ? SecretReading{} : failure.reading();
        }
        const auto items = place.search(deadline, failure);
        if (!items) {
            return failure.reading();
        }
        if (auto secret = place.secretOf(*items)) {
            return {SecretReading::Outcome::found, std::move(*secret), ""};
        }
        const auto collection = place.lockedCollection(deadline, failure);
        if (failure) {
            return failure.reading();
        }
        if (!collection && items->empty()) {
            return {};
        }
        if (askedToUnlock_) {
            return {SecretReading::Outcome::unavailable, "", "The keyring is locked."};
        }
        askedToUnlock_ = true;
        const Deadline promptDeadline(*api, patience_.prompt);
        place.unlock(items->empty() ? static_cast<gpointer>(collection.get())
                                    : static_cast<gpointer>(items->front().get()),
                     promptDeadline, failure);
    }
}

bool SecretServiceStore::store(std::string_view service, std::string_view account,
                               std::string_view data) {
    const Libsecret* api = usableLibrary();
    if (api == nullptr) {
        return false;
    }
    const std::lock_guard guard(lock_);
    SecretPlace place(*api, service, account);
    Failure failure(*api);
    const Deadline deadline(*api, patience_.answer);
    const Deadline promptDeadline(*api, patience_.prompt);
    return place.connect(deadline, failure) == Presence::present &&
           place.store(data, promptDeadline, failure);
}

} // namespace korvane
