// A file system that never answers one kind of request:  stuck_fs FOLDER OPERATION
// It serves a copy in memory of FOLDER's files and symbolic links, mounted at FOLDER. OPERATION is a name in
// `unanswerables`. It prints "ready" when it serves. If it is killed, waiting readers get an error.

#define FUSE_USE_VERSION 35

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <fuse3/fuse_lowlevel.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

constexpr double notRemembered = 0;  // seconds: each access to a file reaches this program

struct Entry {
    std::string name;
    std::string content;  // of a link: its target
    struct stat status {};
};

std::string contentOf(const fs::path& path) {
    if (fs::is_symlink(path)) {
        return fs::read_symlink(path);
    }
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Entry entryOf(const std::string& name, const fs::path& path) {
    Entry entry{.name = name, .content = fs::is_directory(path) ? "" : contentOf(path)};
    ::lstat(path.c_str(), &entry.status);
    return entry;
}

/// The entry of inode N is at index N - 1. The folder itself comes first.
using Folder = std::vector<Entry>;

Folder load(const fs::path& path) {
    Folder folder{entryOf("", path)};
    for (const auto& file : fs::directory_iterator(path)) {
        folder.push_back(entryOf(file.path().filename(), file.path()));
    }
    for (std::size_t place = 0; place < folder.size(); ++place) {
        folder[place].status.st_ino = place + 1;
    }
    return folder;
}

const Folder& folderOf(fuse_req_t request) {
    return *static_cast<const Folder*>(fuse_req_userdata(request));
}

const Entry& entryOf(fuse_req_t request, fuse_ino_t inode) {
    return folderOf(request).at(inode - 1);
}

void lookUp(fuse_req_t request, fuse_ino_t /*parent*/, const char* name) {
    const Folder& folder = folderOf(request);
    const auto found = std::find_if(folder.begin(), folder.end(),
                                    [name](const Entry& candidate) { return candidate.name == name; });
    if (found == folder.end()) {
        fuse_reply_err(request, ENOENT);
        return;
    }
    fuse_entry_param entry{};
    entry.ino = found->status.st_ino;
    entry.attr = found->status;
    entry.attr_timeout = notRemembered;
    entry.entry_timeout = notRemembered;
    fuse_reply_entry(request, &entry);
}

void getAttributes(fuse_req_t request, fuse_ino_t inode, fuse_file_info* /*file*/) {
    fuse_reply_attr(request, &entryOf(request, inode).status, notRemembered);
}

void readLink(fuse_req_t request, fuse_ino_t inode) {
    fuse_reply_readlink(request, entryOf(request, inode).content.c_str());
}

/// Bypasses the kernel's page cache, in which a reader would wait for a page instead of this program.
void open(fuse_req_t request, fuse_ino_t /*inode*/, fuse_file_info* file) {
    file->direct_io = 1;
    fuse_reply_open(request, file);
}

void read(fuse_req_t request, fuse_ino_t inode, std::size_t size, off_t offset, fuse_file_info* /*file*/) {
    const std::string& content = entryOf(request, inode).content;
    const std::size_t start = std::min(content.size(), static_cast<std::size_t>(offset));
    fuse_reply_buf(request, content.data() + start, std::min(size, content.size() - start));
}

constexpr fuse_lowlevel_ops answeredOperations() {
    fuse_lowlevel_ops operations{};
    operations.lookup = lookUp;
    operations.getattr = getAttributes;
    operations.readlink = readLink;
    operations.open = open;
    operations.read = read;
    return operations;
}

/// Receives a request and never replies. The kernel treats the request as in progress, so signals do not
/// interrupt its sender.
template <typename... Arguments>
void swallow(fuse_req_t /*request*/, Arguments... /*arguments*/) {
}

struct Unanswerable {
    std::string_view name;
    void (*choose)(fuse_lowlevel_ops& operations);
};

constexpr std::array unanswerables{
    Unanswerable{"NONE", [](fuse_lowlevel_ops& /*operations*/) {}},
    Unanswerable{"LOOKUP", [](fuse_lowlevel_ops& operations) { operations.lookup = swallow; }},
    Unanswerable{"GETATTR", [](fuse_lowlevel_ops& operations) { operations.getattr = swallow; }},
    Unanswerable{"READLINK", [](fuse_lowlevel_ops& operations) { operations.readlink = swallow; }},
    Unanswerable{"ACCESS", [](fuse_lowlevel_ops& operations) { operations.access = swallow; }},
    Unanswerable{"OPEN", [](fuse_lowlevel_ops& operations) { operations.open = swallow; }},
    Unanswerable{"READ", [](fuse_lowlevel_ops& operations) { operations.read = swallow; }},
    Unanswerable{"FLUSH", [](fuse_lowlevel_ops& operations) { operations.flush = swallow; }},
    Unanswerable{"RELEASE", [](fuse_lowlevel_ops& operations) { operations.release = swallow; }},
};

/// The session keeps the unanswered requests, so it serves until it is killed.
void serve(fuse_session* session) {
    fuse_buf buffer{};
    bool ready = false;
    while (fuse_session_receive_buf(session, &buffer) > 0) {
        fuse_session_process_buf(session, &buffer);
        if (!ready) {  // the kernel's first request
            std::cout << "ready\n" << std::flush;
            ready = true;
        }
    }
}

int fail(const char* reason) {
    std::cerr << "stuck_fs: " << reason << '\n';
    return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return fail("usage: stuck_fs FOLDER OPERATION");
    }
    const auto* const chosen =
        std::find_if(unanswerables.begin(), unanswerables.end(),
                     [argv](const Unanswerable& candidate) { return candidate.name == argv[2]; });
    if (chosen == unanswerables.end()) {
        return fail("no such operation");
    }
    fuse_lowlevel_ops operations = answeredOperations();
    chosen->choose(operations);
    Folder folder = load(argv[1]);
    fuse_args arguments{.argc = 1, .argv = argv, .allocated = 0};
    fuse_session* const session = fuse_session_new(&arguments, &operations, sizeof operations, &folder);
    if (session == nullptr || fuse_session_mount(session, argv[1]) != 0) {
        return fail("cannot mount");
    }
    serve(session);
    fuse_session_unmount(session);
    fuse_session_destroy(session);
    return EXIT_SUCCESS;
}
