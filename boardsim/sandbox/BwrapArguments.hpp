#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Options for bubblewrap, and the data that they refer to by descriptor. Owns those descriptors; they are
/// close-on-exec and keep their numbers, to be given to the child under the same ones.
class BwrapArguments {
public:
    void add(std::initializer_list<std::string> words) { list.insert(list.end(), words); }

    /// A file on the board with this text. `option` is --file or --ro-bind-data.
    void addFile(const std::string& option, std::string_view text, const std::string& path);

    /// An option with data that bubblewrap reads from this descriptor.
    void addDescriptor(const std::string& option, Base::UniqueFd descriptor);

    /// A descriptor from which bubblewrap reads all options added so far.
    int seal();

    const std::vector<Base::UniqueFd>& descriptors() const { return data; }

private:
    int hold(std::string_view text);

    std::vector<std::string> list;
    std::vector<Base::UniqueFd> data;
};

}  // namespace Boardsim
