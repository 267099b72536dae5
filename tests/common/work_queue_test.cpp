#include "common/work_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace pelkrin {
namespace {

TEST(WorkQueue, ItemsComeInOrderAcrossThreads) {
    work_queue<int> q(10);
    std::thread producer([&] {
        for (int i = 0; i < 10000; ++i) ASSERT_TRUE(q.push(int{i}, 1));
    });
    for (int i = 0; i < 10000; ++i) {
        int got = -1;
        ASSERT_TRUE(q.pop(got));
        ASSERT_EQ(got, i);
    }
    producer.join();
}

TEST(WorkQueue, AProducerWaitsWhileTheWeightIsReached) {
    work_queue<int> q(10);
    ASSERT_TRUE(q.push(1, 6));
    std::atomic<bool> pushed{false};
    std::thread producer([&] {
        q.push(2, 6);
        pushed = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(pushed) << "6 + 6 is more than 10";
    int got = 0;
    ASSERT_TRUE(q.pop(got));
    producer.join();
    EXPECT_TRUE(pushed);
    ASSERT_TRUE(q.try_pop(got));
    EXPECT_EQ(got, 2);
}

TEST(WorkQueue, AnItemHeavierThanTheWholeQueuePassesAlone) {
    work_queue<int> q(10);
    ASSERT_TRUE(q.push(1, 100));
    int got = 0;
    ASSERT_TRUE(q.pop(got));
    EXPECT_EQ(got, 1);
    EXPECT_FALSE(q.try_pop(got));
}

TEST(WorkQueue, CancellingEndsTheWaitingOnBothSides) {
    work_queue<int> q(1);
    ASSERT_TRUE(q.push(1, 1));
    std::thread producer([&] { EXPECT_FALSE(q.push(2, 1)); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    q.cancel();
    producer.join();
    int got = 0;
    EXPECT_FALSE(q.pop(got));
    work_queue<int> empty(1);
    std::thread consumer([&] {
        int x = 0;
        EXPECT_FALSE(empty.pop(x));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    empty.cancel();
    consumer.join();
}

}  // namespace
}  // namespace pelkrin
