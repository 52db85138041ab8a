#include "platform/foundation/SharedObject.h"

#include "platform/foundation/ElfFile.h"
#include "platform/foundation/FilePath.h"
#include "platform/foundation/WriteAccess.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <cxxabi.h>
#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// In the numbers of the mounted /proc, whatever this process takes for its own: a debugger opens
/// the name, too.
QByteArray processFolder()
{
    std::array<char, 32> target{};
    const ssize_t size = ::readlink("/proc/self", target.data(), target.size());
    return "/proc/" + (size > 0 ? QByteArray(target.data(), size) : QByteArray("self")) + "/fd/";
}

/// The loader takes a name that it has opened before for the module it has found then, and a
/// descriptor's number is given out again once it is closed: each name is spelt differently.
QByteArray nextName(int descriptor)
{
    static quint64 opened = 0;
    QByteArray name = processFolder();
    for (quint64 digits = ++opened; digits != 0; digits >>= 1)
        name += digits & 1 ? "./" : "/";
    return name + QByteArray::number(descriptor);
}

/// Nothing could be found in a file of the name that it was loaded under.
void rename(void *handle, const QByteArray &path)
{
    link_map *module = nullptr;
    if (::dlinfo(handle, RTLD_DI_LINKMAP, &module) != 0)
        return;
    // As long as the process: whoever looks for the module's name may do so to the very end.
    static auto &names = *new std::vector<std::pair<std::unique_ptr<char[]>, char *>>;
    auto name = std::make_unique<char[]>(static_cast<std::size_t>(path.size()) + 1);
    std::copy(path.begin(), path.end(), name.get());
    names.emplace_back(std::move(name), module->l_name);
    module->l_name = names.back().first.get();
}

QString readable(QString message)
{
    static const QRegularExpression mangled(u"\\b_Z\\w+"_s);
    for (auto found = mangled.match(message); found.hasMatch();
         found = mangled.match(message, found.capturedStart() + 1)) {
        const std::unique_ptr<char, decltype(&std::free)> name(
            abi::__cxa_demangle(found.captured().toLatin1().constData(), nullptr, nullptr, nullptr),
            std::free);
        if (name)
            message.replace(found.capturedStart(), found.capturedLength(),
                            QString::fromUtf8(name.get()));
    }
    return message;
}

Result<void *> open(const ModuleCopy &copy, const QString &path)
{
    const QByteArray name = nextName(copy.descriptor());
    void *handle = ::dlopen(name.constData(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) {
        const char *reason = ::dlerror();
        return Result<void *>::failure(
            readable(QString::fromLocal8Bit(reason).replace(QString::fromLatin1(name), path)));
    }
    rename(handle, FilePath::encode(path));
    return handle;
}

QString pathAtOrigin(QByteArray folder, const QString &path)
{
    if (!folder.startsWith("$ORIGIN") && !folder.startsWith("${ORIGIN}"))
        return {};
    folder = folder.mid(folder.startsWith("${") ? 9 : 7);
    return QFileInfo(path).absolutePath() + FilePath::decode(folder);
}

/// The loader finds what it needs among the loaded ones, by their own names. Its code runs as that
/// of the module does, so nobody else may have written it either.
Result<void *> loadNeeded(const QByteArray &library, const QString &path)
{
    if (const WriteAccess::Finding finding = WriteAccess::of(path); !finding.refusal.isNull())
        return Result<void *>::failure(u"others could have changed it: "_s + finding.refusal);
    auto copy = ModuleCopy::of(path);
    if (!copy)
        return Result<void *>::failure(path + u": "_s + copy.error());
    if (const QString problem = ElfFile::problem(copy.value().bytes()); !problem.isNull())
        return Result<void *>::failure(path + u": "_s + problem);
    if (void *loaded = ::dlopen(library.constData(), RTLD_LAZY | RTLD_NOLOAD))
        return loaded;
    return SharedObject::load(copy.value(), path);
}

} // namespace

Result<void *> SharedObject::load(const ModuleCopy &copy, const QString &path)
{
    // From the copy, $ORIGIN leads nowhere.
    const ElfFile::Libraries libraries = ElfFile::libraries(copy.bytes());
    for (const QByteArray &library : libraries.needed) {
        for (const QByteArray &folder : libraries.folders) {
            const QString place = pathAtOrigin(folder, path);
            const QString file = place + u'/' + FilePath::decode(library);
            if (place.isNull() || !QFileInfo(file).isFile())
                continue;
            if (const auto loaded = loadNeeded(library, file); !loaded)
                return loaded;
            break;
        }
    }
    return open(copy, path);
}
