#include "SystemFacts.h"

#include "ReadFile.h"
#include "SolvanePlugin.h"

#include <QSet>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString readLine(const QString &path)
{
    return QString::fromUtf8(readFile(path)).simplified();
}

/// The system without the kernel, which has a place of its own on the page.
QString withoutKernel(const QString &system, const QString &kernel)
{
    const QString addition = u", "_s + kernel;
    return !kernel.isEmpty() && system.endsWith(addition) ? system.chopped(addition.size())
                                                          : system;
}

void readProcessor(const QString &root, SystemFacts &facts)
{
    QSet<std::pair<QByteArray, QByteArray>> cores;
    QByteArray package;
    int threads = 0;
    for (const QByteArray &line : readFile(root + u"/proc/cpuinfo"_s).split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray key = line.left(colon).trimmed();
        const QByteArray value = line.mid(colon + 1).trimmed();
        if (key == "processor") {
            // Some ARM kernels write the model's name under "Processor", told apart by its capital.
            ++threads;
            package.clear();
        } else if (key == "physical id") {
            package = value;
        } else if (key == "core id") {
            cores.insert({package, value});
        } else if (facts.processor.isEmpty()
                   && (key == "model name" || key == "cpu model" || key == "Processor"
                       || key == "uarch")) {
            facts.processor = QString::fromUtf8(value).simplified();
        }
    }
    facts.threads = std::max(facts.threads, threads);
    facts.cores = cores.isEmpty() ? facts.threads : int(cores.size());
}

} // namespace

SystemFacts hostFacts(mndCore *core)
{
    SystemFacts facts;
    const auto object = core ? core->newFactoryInstance(u"hardwareInfo"_s) : nullptr;
    if (auto *hardware = qobject_cast<hardwareInfoProtocol *>(object.get())) {
        facts.model = hardware->modelName();
        facts.system = hardware->osVersion();
        facts.threads = hardware->cpuCount();
    }
    return facts;
}

SystemFacts readSystemFacts(const QString &root, SystemFacts facts)
{
    const QString kernel = root + u"/proc/sys/kernel/"_s;
    facts.hostName = readLine(kernel + u"hostname"_s);
    facts.kernel =
        (readLine(kernel + u"ostype"_s) + u' ' + readLine(kernel + u"osrelease"_s)).trimmed();
    readProcessor(root, facts);
    facts.system = withoutKernel(facts.system, facts.kernel);
    return facts;
}
