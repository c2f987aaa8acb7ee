// The archiver over any number of rotations, with faults:
//
//     endurance SHARE ROTATIONS [real-time]
//
// SHARE is what both logs get between two reads, as a share of what they keep, in percent. The archiver does
// not sleep, unless in real time. After each read, every byte of both logs must be in a file, or in a piece
// that was replaced, or announced as lost. The archiver's memory and descriptors must stay as they are after
// some rotations. Prints the sums. Exits 1 with a message at the first difference.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unistd.h>

#include "ArchivedLog.hpp"
#include "Archiver.hpp"
#include "Faults.hpp"
#include "Pace.hpp"
#include "StreamedLog.hpp"

namespace fs = std::filesystem;

namespace {

constexpr unsigned readsOfARun = 1500;
constexpr unsigned readsPerFault = 12;
constexpr unsigned readsAfterFailure = 5;
constexpr unsigned rotationsToGrow = 8;
constexpr unsigned long memorySlack = 64;  // kB

struct Plan {
    unsigned bytesPerRead;
    Pace::Sleep sleep;
    std::uint64_t rotations;
    std::chrono::minutes time;
};

class Endurance {
public:
    explicit Endurance(const Plan& chosen) : plan(chosen), pace(chosen.sleep) {}

    /// Runs the archiver again and again until there are enough rotations.
    void run() {
        while (!isDone(0)) {
            runOnce();
            ++runs;
        }
    }

    void print() const {
        std::printf(
            "%llu rotations in %llu reads, %llu failed rotations, %llu warnings, %llu runs of the archiver\n",
            number(total.rotations), number(reads), number(total.failedRotations), number(total.warnings),
            number(runs));
        std::printf("%llu bytes produced = %llu stored + %llu replaced + %llu announced as lost\n",
                    number(total.produced), number(total.stored), number(total.dropped), number(total.lost));
        std::printf("%lu kB of memory at most, %zu descriptors\n", most.memory, most.descriptors);
    }

private:
    static unsigned long long number(std::uint64_t value) { return value; }

    void runOnce() {
        makeNewDirectories();
        ArchivedLog dispatcherArchive(dispatcher, "dispatcher");
        ArchivedLog syslibArchive(syslib, "syslib");
        expectRead(dispatcherArchive, syslibArchive);
        Archiver archiver(pace);
        check(dispatcherArchive, syslibArchive, 0);
        std::optional<Archiver::Footprint> usual;
        unsigned readsWhileIdle = 0;
        for (unsigned read = 0; read < readsOfARun && readsWhileIdle < readsAfterFailure; ++read) {
            const std::uint64_t rotations =
                dispatcherArchive.soFar().rotations + syslibArchive.soFar().rotations;
            if (isDone(rotations)) {
                break;
            }
            readOnce(archiver, dispatcherArchive, syslibArchive);
            readsWhileIdle += syslibArchive.isIdle() ? 1 : 0;
            if (rotations >= rotationsToGrow) {
                compareFootprint(usual, archiver.footprint());
            }
            showProgress(rotations);
        }
        faults.clear();
        archiver.end();
        total += dispatcherArchive.finish();
        total += syslibArchive.finish();
    }

    /// `rotations`: those of this run of the archiver.
    bool isDone(std::uint64_t rotations) const {
        if (plan.sleep == Pace::Sleep::asLongAsUsual) {
            return std::chrono::steady_clock::now() - began >= plan.time;
        }
        return total.rotations + rotations >= plan.rotations;
    }

    /// SYSLIB's archive is on a disk of its own.
    static void makeNewDirectories() {
        fs::remove_all("/tmp/korvel");
        fs::remove_all("/ffs/syslib");
        fs::create_directories("/ffs/syslib");
        fs::create_directories("/tmp/korvel/archive");
        fs::create_directory_symlink("/ffs/syslib", "/tmp/korvel/archive/syslib");
    }

    void readOnce(Archiver& archiver, ArchivedLog& dispatcherArchive, ArchivedLog& syslibArchive) {
        faults.change(dispatcherArchive, syslibArchive, plan.bytesPerRead);
        dispatcher.write(plan.bytesPerRead);
        syslib.write(plan.bytesPerRead);
        expectRead(dispatcherArchive, syslibArchive);
        const unsigned failedBefore = archiver.failedCommands();
        archiver.goOn();
        check(dispatcherArchive, syslibArchive, archiver.failedCommands() - failedBefore);
        ++reads;
    }

    void expectRead(ArchivedLog& dispatcherArchive, ArchivedLog& syslibArchive) {
        endBefore = dispatcher.end();
        dispatcherArchive.expectRead();
        syslibArchive.expectRead();
    }

    void check(ArchivedLog& dispatcherArchive, ArchivedLog& syslibArchive, unsigned failedCommands) {
        dispatcher.update();
        syslib.update();
        for (ArchivedLog* const archive : {&dispatcherArchive, &syslibArchive}) {
            archive->check(isAnnounced(*archive), failedCommands);
        }
    }

    /// Whether the archiver has reported just now that it gives up a log.
    bool isAnnounced(const ArchivedLog& archive) const {
        const std::string_view entries = dispatcher.between(endBefore, dispatcher.end());
        const std::string& path = archive.files().runtimePath;
        return entries.find("Archive: Error while writing to  " + path) != std::string_view::npos ||
               entries.find("Archive: Error while opening " + path) != std::string_view::npos;
    }

    void compareFootprint(std::optional<Archiver::Footprint>& usual, const Archiver::Footprint& now) {
        most = {.memory = std::max(most.memory, now.memory),
                .descriptors = std::max(most.descriptors, now.descriptors)};
        if (!usual) {
            usual = now;
        }
        if (now.memory > usual->memory + memorySlack || now.descriptors != usual->descriptors) {
            throw std::runtime_error("the archiver needed " + textOf(*usual) + ", and needs " + textOf(now));
        }
    }

    static std::string textOf(const Archiver::Footprint& footprint) {
        return std::to_string(footprint.memory) + " kB, " + std::to_string(footprint.descriptors) +
               " descriptors";
    }

    void showProgress(std::uint64_t rotations) const {
        if (::isatty(STDERR_FILENO) == 0) {
            return;
        }
        std::fprintf(stderr, "[%llu rotations] \r", number(total.rotations + rotations));
    }

    Plan plan;
    Pace pace;
    StreamedLog dispatcher{"dispatcher_log_memory"};
    StreamedLog syslib{"syslib_log_memory"};
    Faults faults{readsPerFault};
    const std::chrono::steady_clock::time_point began = std::chrono::steady_clock::now();
    Balance total;
    Archiver::Footprint most;
    std::uint64_t endBefore = 0;
    std::uint64_t reads = 0;
    std::uint64_t runs = 0;
};

unsigned numberFrom(const char* text) {
    constexpr unsigned long most = 100'000;
    const unsigned long number = std::strtoul(text, nullptr, 10);
    if (number == 0 || number > most) {
        throw std::invalid_argument(std::string("not a number from 1 to 100000: ") + text);
    }
    return static_cast<unsigned>(number);
}

Plan planFrom(std::span<char*> arguments) {
    if (arguments.size() != 4) {
        throw std::invalid_argument("endurance SHARE {rotations|minutes} N");
    }
    const std::string unit = arguments[2];
    if (unit != "rotations" && unit != "minutes") {
        throw std::invalid_argument("neither rotations nor minutes: " + unit);
    }
    const unsigned amount = numberFrom(arguments[3]);
    return {.bytesPerRead = static_cast<unsigned>(StreamedLog::kept * numberFrom(arguments[1]) / 100),
            .sleep = unit == "minutes" ? Pace::Sleep::asLongAsUsual : Pace::Sleep::untilEnded,
            .rotations = amount,
            .time = std::chrono::minutes(amount)};
}

}  // namespace

int main(int argc, char** argv) {
    try {
        Endurance endurance(planFrom(std::span(argv, static_cast<std::size_t>(argc))));
        endurance.run();
        endurance.print();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "endurance: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
