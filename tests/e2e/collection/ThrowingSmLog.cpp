#include <stdexcept>
#include <string>

#include "SmLog.hpp"

// A log library that throws, which its interface does not allow.

namespace {

class ThrowingClient final : public SmLog {
public:
    explicit ThrowingClient(const char* logName) : name(logName) {}

    void write(int /*level*/, const char* /*tag*/, const char* /*format*/, ...) override {}
    void vwrite(int /*level*/, const char* /*tag*/, const char* /*format*/,
                std::va_list /*arguments*/) override {}
    unsigned read(char* /*buffer*/, unsigned /*size*/, AppID /*app*/, unsigned /*start*/,
                  unsigned /*mode*/) override {
        throw std::runtime_error("cannot read " + name);
    }
    bool overlap(unsigned /*lastPosition*/, unsigned /*newPosition*/) override { return false; }

private:
    std::string name;
};

}  // namespace

SmLog* SmLog::getClientInstance(const char* name, AppID /*app*/) {
    static ThrowingClient client(name);
    return &client;
}
