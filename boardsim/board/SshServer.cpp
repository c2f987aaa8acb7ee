#include "SshServer.hpp"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "ChildProcess.hpp"
#include "SocketAddress.hpp"
#include "SystemCall.hpp"
#include "TextFile.hpp"
#include "UniqueFd.hpp"
#include "UsageError.hpp"

namespace Boardsim {
namespace {

/// dropbear gives every session its own search path. So it runs this command for each, with the board's.
constexpr const char* pathVariable = "BOARD_PATH";
constexpr const char* sessionCommand =
    "PATH=$BOARD_PATH; unset BOARD_PATH; eval \"${SSH_ORIGINAL_COMMAND:-exec env PS1='board# ' bash "
    "--norc}\"";

/// A port of the board. Those below 1024 need a privilege.
constexpr in_port_t connectionPort = 2222;

/// The two ends of a TCP connection. dropbear refuses other streams, because it names its peer's address.
std::pair<Base::UniqueFd, Base::UniqueFd> openConnection() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(connectionPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const sockaddr* const generic = Base::genericAddress(address);
    const Base::UniqueFd listener(Base::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
    Base::UniqueFd client(Base::checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket"));
    Base::checked(::bind(listener.get(), generic, sizeof address), "bind");
    Base::checked(::listen(listener.get(), 1), "listen");
    Base::checked(::connect(client.get(), generic, sizeof address), "connect");
    Base::UniqueFd server(Base::checked(::accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC), "accept"));
    return {std::move(client), std::move(server)};
}

pid_t start(ChildProcess& child, const std::vector<std::string>& words) {
    try {
        return child.start(words.front(), words);
    } catch (const std::system_error& error) {
        throw std::runtime_error("no SSH server: " + words.front() +
                                 " cannot be run: " + error.code().message() +
                                 "\ninstall dropbear (Debian, Ubuntu: apt-get install dropbear-bin)");
    }
}

int exitStatusOf(pid_t child) {
    int status = 0;
    Base::checked(Base::uninterrupted([&] { return ::waitpid(child, &status, 0); }), "waitpid");
    return shellStatus(status);
}

/// dropbear's options for its host key: the user's, if there is one, in dropbear's own format.
std::vector<std::string> hostKeyOptions() {
    if (!std::filesystem::exists(BoardPaths::hostKey)) {
        return {"-R"};  // make one
    }
    const std::string converted = std::string(BoardPaths::serverKeys) + "/host_key";
    ChildProcess converter;
    converter.openNull(STDOUT_FILENO);
    converter.openNull(STDERR_FILENO);  // reports success, too
    if (exitStatusOf(start(converter, {"dropbearconvert", "openssh", "dropbear", BoardPaths::hostKey,
                                       converted})) != EXIT_SUCCESS) {
        throw UsageError("--host-key: not a private key of ssh-keygen, or one with a passphrase");
    }
    return {"-r", converted};
}

/// Starts dropbear for one connection: no passwords, and with this program's environment.
pid_t startServer(const Base::UniqueFd& connection) {
    ::setenv(pathVariable, std::getenv("PATH"), 1);
    std::vector<std::string> words{"dropbear", "-i", "-s", "-e", "-c", sessionCommand};
    const std::vector<std::string> keys = hostKeyOptions();
    words.insert(words.end(), keys.begin(), keys.end());
    ChildProcess server;
    server.passDescriptor(connection.get(), STDIN_FILENO);
    server.passDescriptor(connection.get(), STDOUT_FILENO);
    return start(server, words);
}

/// Copies bytes until no more come, or nobody takes them.
void copy(int from, int to) {
    std::array<char, 65536> buffer{};
    try {
        for (ssize_t count = 0;
             (count = Base::uninterrupted([&] { return ::read(from, buffer.data(), buffer.size()); })) > 0;) {
            writeText(to, {buffer.data(), static_cast<std::size_t>(count)}, "SSH connection");
        }
    } catch (const std::system_error&) {
        return;
    }
}

}  // namespace

int runSshServer() {
    auto [client, connection] = openConnection();
    const pid_t server = startServer(connection);
    connection.reset();
    // The other direction has a descriptor of its own, because it may still wait for input at the end.
    const int input = Base::checked(::fcntl(client.get(), F_DUPFD_CLOEXEC, 0), "dup");
    std::thread([input] {
        const Base::UniqueFd toServer(input);
        copy(STDIN_FILENO, toServer.get());
        ::shutdown(toServer.get(), SHUT_WR);
    }).detach();
    copy(client.get(), STDOUT_FILENO);
    ::shutdown(client.get(), SHUT_RDWR);
    return exitStatusOf(server);
}

}  // namespace Boardsim
