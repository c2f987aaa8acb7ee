#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Options for bubblewrap, and the descriptors of the data that they refer to. Owns the descriptors. They are
/// close-on-exec; the child must inherit them under the same numbers.
class BwrapArguments {
public:
    void add(std::initializer_list<std::string> words) { list.insert(list.end(), words); }

    /// Adds a file with this text on the board. `option` is --file or --ro-bind-data.
    void addFile(const std::string& option, std::string_view text, const std::string& path);

    /// Adds an option whose data bubblewrap reads from `descriptor`.
    void addDescriptor(const std::string& option, Base::UniqueFd descriptor);

    /// A descriptor from which bubblewrap reads all options added so far.
    int toDescriptor();

    const std::vector<Base::UniqueFd>& descriptors() const { return data; }

private:
    int addData(std::string_view text);

    std::vector<std::string> list;
    std::vector<Base::UniqueFd> data;
};

}  // namespace Boardsim
