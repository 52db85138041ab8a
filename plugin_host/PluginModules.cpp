#include "plugin_host/PluginModules.h"

#include "platform/foundation/FilePath.h"

#include <QFileInfo>

#include <link.h>
#include <unwind.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <utility>

namespace {

/// In a list that only grows, so that whoever walks it needs no lock.
struct Module
{
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    const char *bundle = nullptr;
    const char *folder = nullptr; ///< its name
    std::atomic<const char *> id = nullptr;
    Module *next = nullptr;
};

std::atomic<Module *> modules = nullptr;

Module *moduleAt(std::uintptr_t address) noexcept
{
    Module *module = modules.load(std::memory_order_acquire);
    while (module && (address < module->begin || address >= module->end))
        module = module->next;
    return module;
}

/// Kept for good: a signal handler may be reading it.
const char *kept(const QByteArray &text)
{
    return ::strdup(text.constData());
}

struct Search
{
    QByteArray bundle;
    QByteArray folder;
    std::uintptr_t address = 0;
    QByteArray inside = bundle + '/';
    quint64 seen = 0;
    bool isAgain = false; ///< some of the objects were looked at before
};

/// How many of the process's objects were looked at, the first ones in the order of their loading,
/// and how many had been unloaded then. With thousands of plugins each search would take longer
/// than to load one.
quint64 looked = 0; // main thread
quint64 unloaded = 0;

int addWhatBelongs(dl_phdr_info *object, std::size_t, void *data)
{
    auto &search = *static_cast<Search *>(data);
    if (search.seen == 0 && std::exchange(unloaded, object->dlpi_subs) != object->dlpi_subs)
        looked = 0;
    search.isAgain |= looked == 0;
    if (search.seen++ < looked)
        return 0;
    std::uintptr_t begin = UINTPTR_MAX;
    std::uintptr_t end = 0;
    for (int i = 0; i < object->dlpi_phnum; ++i) {
        const ElfW(Phdr) &segment = object->dlpi_phdr[i];
        if (segment.p_type != PT_LOAD)
            continue;
        begin = std::min<std::uintptr_t>(begin, object->dlpi_addr + segment.p_vaddr);
        end = std::max<std::uintptr_t>(end, object->dlpi_addr + segment.p_vaddr + segment.p_memsz);
    }
    const bool isInside = QByteArrayView(object->dlpi_name).contains(search.inside);
    const bool holds = search.address >= begin && search.address < end;
    if (end == 0 || (!isInside && !holds) || (search.isAgain && moduleAt(begin)))
        return 0;
    auto *module =
        new Module{begin, end, kept(search.bundle), kept(search.folder), nullptr, modules};
    modules.store(module, std::memory_order_release);
    return 0;
}

struct Walk
{
    static constexpr int deepest = 1024; // frames; a damaged stack may go round in circles

    PluginModules::Owner owner;
    int depth = 0;
};

_Unwind_Reason_Code visit(_Unwind_Context *frame, void *data)
{
    auto &walk = *static_cast<Walk *>(data);
    int isBeforeCall = 0;
    const std::uintptr_t next = _Unwind_GetIPInfo(frame, &isBeforeCall);
    // Where the call was, not what follows it: that may be another function already.
    walk.owner = PluginModules::ownerOf(
        reinterpret_cast<const void *>(isBeforeCall || next == 0 ? next : next - 1));
    return walk.owner.bundle || ++walk.depth == Walk::deepest ? _URC_END_OF_STACK : _URC_NO_REASON;
}

} // namespace

void PluginModules::add(const QString &bundle, const void *address)
{
    Search search{FilePath::encode(bundle), QFileInfo(bundle).completeBaseName().toUtf8(),
                  reinterpret_cast<std::uintptr_t>(address)};
    ::dl_iterate_phdr(addWhatBelongs, &search);
    looked = search.seen;
    if (!address || moduleAt(search.address))
        return;
    // Another bundle has brought it along.
    search.seen = looked = 0;
    ::dl_iterate_phdr(addWhatBelongs, &search);
    looked = search.seen;
}

void PluginModules::setId(const QString &bundle, const QString &id)
{
    const QByteArray path = FilePath::encode(bundle);
    // They stand together, the latest first.
    Module *module = modules;
    while (module && path != module->bundle)
        module = module->next;
    for (; module && path == module->bundle; module = module->next) {
        if (!module->id)
            module->id = kept(id.toUtf8());
    }
}

PluginModules::Owner PluginModules::ownerOf(const void *address) noexcept
{
    const Module *module = moduleAt(reinterpret_cast<std::uintptr_t>(address));
    if (!module)
        return {};
    const char *id = module->id;
    return {module->bundle, id ? id : module->folder};
}

PluginModules::Owner PluginModules::onThisStack() noexcept
{
    Walk walk;
    _Unwind_Backtrace(visit, &walk);
    return walk.owner;
}
