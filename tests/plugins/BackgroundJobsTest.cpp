#include "plugins/common/BackgroundJobs.h"

#include <QThread>

#include <future>

TEST(BackgroundJobs, DeliverOnTheMainThread)
{
    BackgroundJobs jobs;
    QThread *worked = nullptr;
    QThread *delivered = nullptr;
    ASSERT_TRUE(jobs.start(u"lane"_s, [&] {
        worked = QThread::currentThread();
        return [&] { delivered = QThread::currentThread(); };
    }));
    ASSERT_SOON(delivered != nullptr);
    EXPECT_EQ(delivered, QThread::currentThread());
    EXPECT_NE(worked, delivered);
    EXPECT_FALSE(jobs.isBusy(u"lane"_s));
}

TEST(BackgroundJobs, AHangingOneHoldsUpItsLaneOnly)
{
    std::promise<void> release;
    auto released = release.get_future().share();
    auto finished = std::make_shared<std::promise<void>>();
    bool delivered = false;
    bool other = false;
    {
        BackgroundJobs jobs;
        ASSERT_TRUE(jobs.start(u"hangs"_s, [released, finished, &delivered] {
            released.wait();
            // Set when the thread drops the job, after it has handed over the result.
            finished->set_value_at_thread_exit();
            return [&delivered] { delivered = true; };
        }));
        EXPECT_FALSE(jobs.start(u"hangs"_s, [] { return [] {}; }));
        EXPECT_TRUE(jobs.start(u"other"_s, [&other] { return [&other] { other = true; }; }));
        EXPECT_SOON(other);
        EXPECT_TRUE(jobs.isBusy(u"hangs"_s));
    } // does not wait
    release.set_value();
    finished->get_future().wait();
    QTest::qWait(20);
    EXPECT_FALSE(delivered) << "nobody waits for it any more";
}
