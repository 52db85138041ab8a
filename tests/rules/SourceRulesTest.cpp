#include "tests/rules/IncludeRules.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString root = QStringLiteral(SOLVANE_SOURCE_DIR);

IncludeRules rules()
{
    return {root, QStringLiteral(SOLVANE_PUBLIC_HEADERS).split(u'|')};
}

QByteArray contentOf(const QString &file)
{
    QFile source(root + u'/' + file);
    EXPECT_TRUE(source.open(QIODevice::ReadOnly)) << qPrintable(file);
    return source.readAll();
}

TEST(IncludeRules, KnowsWhatMayIncludeWhat)
{
    const struct
    {
        const char *file;
        const char *line;
        int violations;
    } cases[] = {
        {"host/a.cpp", R"(#include "host/b.h")", 0},
        {"host/a.cpp", R"(#include "platform/foundation/Result.h")", 0},
        {"app/main.cpp", R"(#include "host/mndAppDelegate.h")", 0},
        {"helpers/a.cpp", R"(#include "plugin_host/mndCore.h")", 0},
        {"helpers/a.cpp", "#include <host/b.h>\n#include \"a.moc\"\n#include \"ui_Prefs.h\"", 0},
        {"helpers/a.cpp", R"(#include "host/b.h")", 1},
        {"helpers/a.cpp", R"(#include "aux_windows/mndPrefs.h")", 1},
        {"platform/foundation/a.cpp", R"(  #  include "platform/ui/b.h")", 1},
        {"platform/ui/a.cpp", R"(#include "b.h")", 1},
        {"host/a.cpp", R"(#include "plugins/status/a.h")", 1},
        {"host/a.cpp", R"(#include "tests/support/a.h")", 1},
        {"host/a.cpp", "#include \"app/a.h\"\n#include \"app/b.h\"", 2},
        {"plugins/status/a.cpp", R"(#include "SolvanePlugin.h")", 0},
        {"plugins/status/a.cpp", R"(#include "plugin_host/mndCore.h")", 0},
        {"plugins/status/a.cpp", R"(#include "plugins/status/b.h")", 0},
        {"plugins/status/a.cpp", R"(#include "plugins/cleaner/b.h")", 1},
        {"plugins/status/a.cpp", R"(#include "helpers/sharedHelpers.h")", 1},
        {"plugins/status/a.cpp", R"(#include "platform/foundation/Result.h")", 1},
        {"plugin_host/mndCore.h", R"(#include "plugin_host/mndTheme.h")", 0},
        {"plugin_host/mndCore.h", R"(#include "platform/foundation/Result.h")", 1},
    };
    for (const auto &[file, line, violations] : cases) {
        EXPECT_EQ(rules().violations(QString::fromUtf8(file), line).size(), violations)
            << file << ": " << line;
    }
}

TEST(Sources, IncludeDownwardsOnly)
{
    const QStringList files = rules().files();
    ASSERT_GT(files.size(), 10) << "the sources were not found under " << qPrintable(root);
    for (const QString &file : files) {
        for (const QString &violation : rules().violations(file, contentOf(file)))
            ADD_FAILURE() << qPrintable(violation);
    }
}

// The delegate answers four protocols and is one class all the same.
const QString longHeader = u"host/mndAppDelegate.h"_s;

TEST(Sources, StayShort)
{
    for (const QString &file : rules().files()) {
        const int limit = !file.endsWith(u".h"_s) ? 500 : file == longHeader ? 260 : 200;
        EXPECT_LE(contentOf(file).count('\n'), limit) << qPrintable(file);
    }
}

} // namespace
