#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace lumivard::platform::stores {

/// Stands between clients and the server, and cuts a connection at a moment of its choice. One connection at a time,
/// which may not be encrypted; the server's own side of one that was cut goes on until it has noticed.
class Proxy {
public:
    /// Listens on the loopback, before the server at that port there.
    explicit Proxy(unsigned short server);
    ~Proxy();
    Proxy(const Proxy&) = delete;
    Proxy& operator=(const Proxy&) = delete;

    unsigned short port() const { return _port; }

    /// Cuts once, in place of handing on the message of that number from now on, counted from 1 in both directions
    /// together. What came before has reached the other side.
    void cutAt(int message) { _left = message; }

    /// Whether that has come.
    bool hasCut() const { return _left == 0; }

    /// Cuts at the next message, and lets nobody through until it is told otherwise.
    void close(bool closed) { _closed = closed; }

private:
    /// What has come from one side, as far as it is not handed on.
    struct tStream {
        int from;
        int to;
        std::string bytes;
        bool begins;  // with a message that has no letter before its length
    };

    void serve();
    void relay(int client, int server);
    bool handOn(tStream& stream);

    const unsigned short _server;
    unsigned short _port = 0;
    int _listener = -1;
    int _end[2] = {-1, -1};  // a pipe that is closed when all shall end
    std::atomic<int> _left{-1};
    std::atomic<bool> _closed{false};
    std::thread _thread;
};

}  // namespace lumivard::platform::stores
