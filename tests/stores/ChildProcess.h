#pragma once

#include <functional>

#include <sys/types.h>

namespace lumivard::platform::stores {

/// A process beside the test's own, made by fork(), that runs a piece of the test in step with it.
///
/// The two talk through pipes, so that no test has to guess how long something takes. The child ends by `_exit`,
/// without closing anything: what is to be closed is closed by the body. Make it while no other thread is running.
class ChildProcess {
public:
    /// The child's end of the line. Each call waits for its counterpart in the test.
    class Line {
    public:
        Line(int in, int out) : _in(in), _out(out) {}
        void tell(unsigned int number) const;
        unsigned int hear() const;  ///< ends the process when the test is gone

    private:
        int _in;
        int _out;
    };

    /// What the body returns is the exit status; an exception is 99.
    explicit ChildProcess(const std::function<int(const Line&)>& body);
    ~ChildProcess();  ///< kills the child if nobody has waited for it
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void tell(unsigned int number) const;

    /// The next number that the child tells, or `kGone` when it has ended and all was heard.
    unsigned int hear() const;
    static constexpr unsigned int kGone = 0xFFFFFFFF;

    /// Ends the child by SIGKILL and waits until it is gone; what it had told can still be heard.
    void kill();

    /// Waits for the end and gives the exit status, or -1 when it was killed.
    int wait();

private:
    pid_t _process = -1;
    int _in = -1;
    int _out = -1;
};

}  // namespace lumivard::platform::stores
