#include <lumivard/platform/stores.h>

#include <iostream>

using namespace lumivard::platform;

// Asks for a store of a server that is not there.
int main() {
    try {
        stores::open("postgresql://127.0.0.1:1/db?store=x", stores::tMode::kRead);
    } catch (const stores::StoreError& error) {
        std::cout << error.what() << '\n';
        return std::string(error.what()).find("not linked") == std::string::npos ? 0 : 1;
    }
    return 2;
}
