#pragma once

#include <QString>

/// Whose code is whose: the places in memory where plugins' modules lie. Modules stay until the
/// process ends, and so does what is known of them.
namespace PluginModules {

/// Notes the modules that the bundle has brought: what holds the address, and what was loaded from
/// inside the bundle's folder. Main thread.
/// @param address of something in the bundle's module; may be null.
void add(const QString &bundle, const void *address);

/// The id of the bundle's plugin, once it is known. Main thread.
void setId(const QString &bundle, const QString &id);

/// What is known of a module; the texts live as long as the process.
struct Owner
{
    const char *bundle = nullptr; ///< path, as the file system writes it; null for none
    const char *name = nullptr;   ///< UTF-8: its id; until that is known, its folder's
};

// The two look-ups take no memory and no locks: any thread, signal handlers included.

/// Whose code or data it is.
Owner ownerOf(const void *address) noexcept;
/// The plugin whose function was called last of those that the calling thread is in.
Owner onThisStack() noexcept;

} // namespace PluginModules
