#include "KorvaneCore/platform/linux/Libsecret.h"

#include "KorvaneCore/platform/linux/LibrarySymbols.h"

#include <optional>

namespace korvane {

namespace {

std::optional<Libsecret> load() {
    void* library = dlopen("libsecret-1.so.0", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    LibrarySymbols symbols(library);
    Libsecret api;
    symbols.find("g_bus_get_sync", api.busGet);
    symbols.find("g_dbus_connection_set_exit_on_close", api.setExitOnClose);
    symbols.find("g_dbus_connection_call_sync", api.callOnBus);
    symbols.find("g_dbus_error_quark", api.busErrorDomain);
    symbols.find("g_variant_new", api.variantNew);
    symbols.find("g_variant_get", api.variantGet);
    symbols.find("g_variant_unref", api.variantUnref);
    symbols.find("g_object_unref", api.objectUnref);
    symbols.find("g_error_free", api.errorFree);
    symbols.find("g_cancellable_new", api.cancellableNew);
    symbols.find("g_cancellable_cancel", api.cancellableCancel);
    symbols.find("g_cancellable_is_cancelled", api.cancellableIsCancelled);
    symbols.find("g_hash_table_new", api.tableNew);
    symbols.find("g_hash_table_insert", api.tableInsert);
    symbols.find("g_hash_table_unref", api.tableUnref);
    symbols.find("g_str_hash", api.textHash);
    symbols.find("g_str_equal", api.textEqual);
    symbols.find("g_list_append", api.listAppend);
    symbols.find("g_list_free", api.listFree);
    symbols.find("secret_service_get_sync", api.serviceGet);
    symbols.find("secret_service_disconnect", api.serviceDisconnect);
    symbols.find("secret_service_search_sync", api.serviceSearch);
    symbols.find("secret_service_unlock_sync", api.serviceUnlock);
    symbols.find("secret_service_store_sync", api.serviceStore);
    symbols.find("secret_collection_for_alias_sync", api.collectionForAlias);
    symbols.find("secret_collection_get_locked", api.collectionIsLocked);
    symbols.find("secret_item_get_secret", api.itemSecret);
    symbols.find("secret_value_new", api.valueNew);
    symbols.find("secret_value_get", api.valueGet);
    symbols.find("secret_value_unref", api.valueUnref);
    return symbols.complete() ? std::optional(api) : std::nullopt;
}

} // namespace

const Libsecret* Libsecret::shared() {
    static const std::optional<Libsecret> api = load();
    return api ? &*api : nullptr;
}

} // namespace korvane
