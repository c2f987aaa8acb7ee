#include "BwrapArguments.hpp"

#include <utility>

#include <sys/mman.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "TextFile.hpp"

namespace Boardsim {

void BwrapArguments::addFile(const std::string& option, std::string_view text, const std::string& path) {
    add({option, std::to_string(addData(text)), path});
}

void BwrapArguments::addDescriptor(const std::string& option, Base::UniqueFd descriptor) {
    add({option, std::to_string(descriptor.get())});
    data.push_back(std::move(descriptor));
}

int BwrapArguments::toDescriptor() {
    std::string text;
    for (const std::string& word : list) {
        text.append(word).push_back('\0');
    }
    return addData(text);
}

int BwrapArguments::addData(std::string_view text) {
    Base::UniqueFd memory(Base::checked(::memfd_create("boardsim", MFD_CLOEXEC), "memfd_create"));
    writeText(memory.get(), text, "memfd");
    Base::checked(::lseek(memory.get(), 0, SEEK_SET), "memfd");
    data.push_back(std::move(memory));
    return data.back().get();
}

}  // namespace Boardsim
