#include "Budget.hpp"

#include <algorithm>
#include <array>
#include <ctime>

namespace Report {

namespace {

struct Option {
    Limit limit;
    std::string_view name;
};

constexpr std::array options{
    Option{Limit::bytes, "--max-bytes"},   Option{Limit::members, "--max-members"},
    Option{Limit::line, "--max-line"},     Option{Limit::name, "--max-name"},
    Option{Limit::depth, "--max-depth"},   Option{Limit::seconds, "--max-seconds"},
    Option{Limit::memory, "--max-memory"},
};

std::chrono::nanoseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

}  // namespace

std::string_view optionOf(Limit limit) {
    return std::ranges::find(options, limit, &Option::limit)->name;
}

Budget::Budget(const Limits& limits) : bounds(limits), start(processorTime()) {
}

bool Budget::inflate(std::uint64_t bytes) {
    if (bytes > bytesLeft()) {
        inflated = bounds.maxBytes;
        return exceed(Limit::bytes);
    }
    inflated += bytes;
    return true;
}

bool Budget::addMember() {
    if (members >= bounds.maxMembers) {
        return exceed(Limit::members);
    }
    ++members;
    return true;
}

bool Budget::keep(std::size_t bytes) {
    if (bytes > mostKept() - kept) {
        return exceed(Limit::memory);
    }
    kept += bytes;
    return true;
}

void Budget::release(std::size_t bytes) {
    kept -= std::min(bytes, kept);
}

bool Budget::checkTime() {
    return isTimeLeft({}) || exceed(Limit::seconds);
}

bool Budget::reserve(std::chrono::nanoseconds time) {
    if (!isTimeLeft(time)) {
        return false;
    }
    reserved += time;
    return true;
}

void Budget::release(std::chrono::nanoseconds time) {
    reserved -= time;
}

bool Budget::isTimeLeft(std::chrono::nanoseconds more) const {
    const std::chrono::nanoseconds reading = bounds.maxTime - bounds.maxTime / 10;
    return processorTime() - start + reserved + more <= reading;
}

bool Budget::exceed(Limit limit) {
    if (!first) {
        first = limit;
    }
    return false;
}

}  // namespace Report
