#include <cstring>
#include <limits>
#include <memory>
#include <thread>

// One fault of each kind that the sanitizers are there to catch.

namespace {

int overrun(int index) {
    const std::unique_ptr<int[]> values(new int[4]());
    return values[static_cast<std::size_t>(index)];
}

int overflow(int value) {
    return std::numeric_limits<int>::max() + value;
}

int leak(int value) {
    const int* volatile lost = new int(value);
    const int seen = *lost;
    lost = nullptr;
    return seen - value;
}

int race() {
    int shared = 0;
    std::thread other([&] { ++shared; });
    ++shared;
    other.join();
    return shared;
}

}  // namespace

int main(int argc, char** argv) {
    const char* fault = argc > 1 ? argv[1] : "";
    if (std::strcmp(fault, "address") == 0) return overrun(argc + 2);
    if (std::strcmp(fault, "leak") == 0) return leak(argc);
    if (std::strcmp(fault, "undefined") == 0) return overflow(argc);
    if (std::strcmp(fault, "thread") == 0) return race();
    return 0;
}
