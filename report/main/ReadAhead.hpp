#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <utility>
#include <vector>

namespace Report {

/// Makes results in threads of its own, and hands them over in order. Few wait for the caller, since a
/// package takes much memory.
template <typename Result>
class ReadAhead {
public:
    using Maker = std::function<Result(std::size_t)>;

    /// Makes the results of the numbers 0 to count - 1, with one thread for each maker. A maker is called by
    /// its own thread only.
    ReadAhead(std::size_t count, std::vector<Maker> makers) : end(count), ahead(makers.size()) {
        for (Maker& maker : makers) {
            threads.emplace_back([this, maker = std::move(maker)](const std::stop_token& stop) {
                while (const std::optional<std::size_t> number = nextNumber(stop)) {
                    put(*number, made(maker, *number));
                }
            });
        }
    }

    /// Returns the next result. Throws what its maker threw. Call this `count` times at most.
    Result next() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return waiting.contains(taken); });
        Made made = std::move(waiting.extract(taken++).mapped());
        lock.unlock();
        changed.notify_all();
        if (made.failure) {
            std::rethrow_exception(made.failure);
        }
        return std::move(*made.result);
    }

private:
    struct Made {
        std::optional<Result> result;
        std::exception_ptr failure;  ///< null if there is a result
    };

    static Made made(const Maker& maker, std::size_t number) {
        try {
            return {maker(number), nullptr};
        } catch (...) {
            return {std::nullopt, std::current_exception()};
        }
    }

    /// Waits while enough results are ahead of the caller. No number if there are no more.
    std::optional<std::size_t> nextNumber(const std::stop_token& stop) {
        std::unique_lock lock(mutex);
        const bool wanted =
            changed.wait(lock, stop, [this] { return begun == end || begun <= taken + ahead; });
        return wanted && begun < end ? std::optional(begun++) : std::nullopt;
    }

    void put(std::size_t number, Made result) {
        {
            const std::scoped_lock lock(mutex);
            waiting.emplace(number, std::move(result));
        }
        changed.notify_all();
    }

    const std::size_t end;
    const std::size_t ahead;
    std::mutex mutex;
    std::condition_variable_any changed;
    std::size_t begun = 0;
    std::size_t taken = 0;
    std::map<std::size_t, Made> waiting;
    std::vector<std::jthread> threads;  // the last member: they use the others
};

}  // namespace Report
