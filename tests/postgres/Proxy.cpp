#include "tests/postgres/Proxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace lumivard::platform::stores {
namespace {

sockaddr_in loopback(unsigned short port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}  // namespace

Proxy::Proxy(unsigned short server) : _server(server), _listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    if (::bind(_listener, any, size) != 0 || ::listen(_listener, 8) != 0 || ::getsockname(_listener, any, &size) != 0 ||
        ::pipe(_end) != 0) {
        throw std::runtime_error("no proxy can be made");
    }
    _port = ntohs(address.sin_port);
    _thread = std::thread([this] { serve(); });
}

Proxy::~Proxy() {
    ::close(_end[1]);
    _thread.join();
    ::close(_end[0]);
    ::close(_listener);
}

void Proxy::serve() {
    for (;;) {
        std::array<pollfd, 2> waited{{{_listener, POLLIN, 0}, {_end[0], POLLIN, 0}}};
        if (::poll(waited.data(), waited.size(), -1) < 0) continue;
        if (waited[1].revents != 0) return;
        const int client = ::accept(_listener, nullptr, nullptr);
        const int server = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        // Each message goes at once.
        for (const int socket : {client, server}) {
            const int yes = 1;
            ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        }
        const sockaddr_in address = loopback(_server);
        if (!_closed && ::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            relay(client, server);
        ::close(client);
        ::close(server);
    }
}

void Proxy::relay(int client, int server) {
    tStream asked{client, server, {}, true};
    tStream answered{server, client, {}, false};
    for (;;) {
        std::array<pollfd, 3> waited{{{client, POLLIN, 0}, {server, POLLIN, 0}, {_end[0], POLLIN, 0}}};
        if (::poll(waited.data(), waited.size(), -1) < 0) continue;
        if (waited[2].revents != 0) return;
        if (waited[0].revents != 0 && !handOn(asked)) return;
        if (waited[1].revents != 0 && !handOn(answered)) return;
    }
}

// Message by message: a letter, but for the first one, and a length of four bytes, which counts itself.
bool Proxy::handOn(tStream& stream) {
    std::array<char, 65536> piece;
    const ssize_t size = ::recv(stream.from, piece.data(), piece.size(), 0);
    if (size <= 0) return false;
    stream.bytes.append(piece.data(), static_cast<std::size_t>(size));
    for (;;) {
        const std::size_t head = stream.begins ? 0 : 1;
        if (stream.bytes.size() < head + 4) return true;
        std::size_t length = 0;
        for (std::size_t i = head; i < head + 4; ++i)
            length = length << 8 | static_cast<unsigned char>(stream.bytes[i]);
        if (stream.bytes.size() < head + length) return true;
        if (_closed || (_left > 0 && --_left == 0)) return false;
        const auto sent = static_cast<ssize_t>(head + length);
        if (::send(stream.to, stream.bytes.data(), head + length, MSG_NOSIGNAL) != sent) return false;
        stream.bytes.erase(0, head + length);
        stream.begins = false;
    }
}

}  // namespace lumivard::platform::stores
