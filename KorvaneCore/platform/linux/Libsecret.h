#pragma once

#include <libsecret/secret.h>

namespace korvane {

/// What is used of libsecret and of the libraries below it. Loaded when the first secret is asked
/// for: most runs of the program need none, and a system without a desktop need not have it.
struct Libsecret {
    decltype(&::g_bus_get_sync) busGet = nullptr;
    decltype(&::g_dbus_connection_set_exit_on_close) setExitOnClose = nullptr;
    decltype(&::g_dbus_connection_call_sync) callOnBus = nullptr;
    decltype(&::g_dbus_error_quark) busErrorDomain = nullptr;
    decltype(&::g_variant_new) variantNew = nullptr;
    decltype(&::g_variant_get) variantGet = nullptr;
    decltype(&::g_variant_unref) variantUnref = nullptr;
    decltype(&::g_object_unref) objectUnref = nullptr;
    decltype(&::g_error_free) errorFree = nullptr;
    decltype(&::g_cancellable_new) cancellableNew = nullptr;
    decltype(&::g_cancellable_cancel) cancellableCancel = nullptr;
    decltype(&::g_cancellable_is_cancelled) cancellableIsCancelled = nullptr;
    decltype(&::g_hash_table_new) tableNew = nullptr;
    decltype(&::g_hash_table_insert) tableInsert = nullptr;
    decltype(&::g_hash_table_unref) tableUnref = nullptr;
    decltype(&::g_str_hash) textHash = nullptr;
    decltype(&::g_str_equal) textEqual = nullptr;
    decltype(&::g_list_append) listAppend = nullptr;
    decltype(&::g_list_free) listFree = nullptr;
    decltype(&::secret_service_get_sync) serviceGet = nullptr;
    decltype(&::secret_service_disconnect) serviceDisconnect = nullptr;
    decltype(&::secret_service_search_sync) serviceSearch = nullptr;
    decltype(&::secret_service_unlock_sync) serviceUnlock = nullptr;
    decltype(&::secret_service_store_sync) serviceStore = nullptr;
    decltype(&::secret_collection_for_alias_sync) collectionForAlias = nullptr;
    decltype(&::secret_collection_get_locked) collectionIsLocked = nullptr;
    decltype(&::secret_item_get_secret) itemSecret = nullptr;
    decltype(&::secret_value_new) valueNew = nullptr;
    decltype(&::secret_value_get) valueGet = nullptr;
    decltype(&::secret_value_unref) valueUnref = nullptr;

    /// Null when the library is not installed. Any thread; never unloaded.
    [[nodiscard]] static const Libsecret* shared();
};

} // namespace korvane
