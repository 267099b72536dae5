#pragma once
// Hands items from one thread to another in order. The queue holds items up
// to a total weight (what they cost in memory), so that a fast producer waits
// for a slow consumer; an item heavier than that still passes, alone.
// Cancelling ends the waiting on both sides for good.
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

namespace pelkrin {

template <typename Item>
class work_queue {
public:
    explicit work_queue(std::size_t most_weight) : most_weight_(most_weight) {}

    // Waits for room, then queues `item`; false (the item dropped) once cancelled.
    bool push(Item&& item, std::size_t weight) {
        {
            std::unique_lock lock(mutex_);
            room_.wait(lock, [&] { return cancelled_ || items_.empty() || weight_ + weight <= most_weight_; });
            if (cancelled_) return false;
            weight_ += weight;
            items_.emplace_back(std::move(item), weight);
        }
        ready_.notify_one();
        return true;
    }

    // Waits for an item and takes it; false once cancelled.
    bool pop(Item& item) {
        {
            std::unique_lock lock(mutex_);
            ready_.wait(lock, [&] { return cancelled_ || !items_.empty(); });
            if (cancelled_) return false;
            item = std::move(items_.front().first);
            weight_ -= items_.front().second;
            items_.pop_front();
        }
        room_.notify_one();
        return true;
    }

    // Takes an item if one is there; never waits.
    bool try_pop(Item& item) {
        {
            std::lock_guard lock(mutex_);
            if (cancelled_ || items_.empty()) return false;
            item = std::move(items_.front().first);
            weight_ -= items_.front().second;
            items_.pop_front();
        }
        room_.notify_one();
        return true;
    }

    void cancel() {
        {
            std::lock_guard lock(mutex_);
            cancelled_ = true;
        }
        ready_.notify_all();
        room_.notify_all();
    }

private:
    const std::size_t most_weight_;
    std::mutex mutex_;
    std::condition_variable ready_;
    std::condition_variable room_;
    std::deque<std::pair<Item, std::size_t>> items_;
    std::size_t weight_ = 0;
    bool cancelled_ = false;
};

}  // namespace pelkrin
