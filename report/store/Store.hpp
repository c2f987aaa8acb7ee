#pragma once

#include <memory>
#include <string>

#include "Checksums.hpp"
#include "Package.hpp"

namespace Report {

/// A store to which packages are added. What was added is on the disk after commit(); a process that is
/// killed leaves the store as the last commit() did. Each function throws StoreError.
class Store {
public:
    /// Opens the store at a path, or makes one. Waits up to a minute for another process that writes to it.
    explicit Store(std::string where);
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    Store(Store&&) = delete;
    Store& operator=(Store&&) = delete;
    /// Drops what was added since the last commit().
    ~Store();

    /// Those of the packages that need not be read again: a limit ended the reading of the others.
    Checksums checksums();

    /// Adds a judged package, with its findings. Its parts and values are those of the package itself, not of
    /// packages inside. Returns false, and adds nothing, if the store contains it. A package that was not
    /// fully read is replaced once it is.
    bool add(const Package& package);

    void commit();

private:
    class Rows;

    std::string path;
    std::unique_ptr<Rows> rows;
};

}  // namespace Report
