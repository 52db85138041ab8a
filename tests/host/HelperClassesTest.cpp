#include "host/HostFixture.h"

TEST_F(Host, MakesTheHelperClassesForPlugins)
{
    services.cpuCount = 3;
    services.addFixture(u"UsesHelpers"_s, services.resources());
    delegate->applicationDidFinishLaunching();
    const QStringList events = services.recorder.take();
    for (const QString &note :
         {u"list 1 /opt/keep"_s, u"bundle plugin.fixture.UsesHelpers"_s, u"session 0"_s})
        EXPECT_TRUE(events.contains(note)) << qPrintable(note);
    EXPECT_EQ(events.filter(u"machine 3 "_s).size(), 1);
}
