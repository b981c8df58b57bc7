#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "tests/model/PlainTree.h"
#include "tests/model/TreeOperation.h"

namespace lumivard::platform::model {

/// The names of the containers at the top of each store, which stay.
inline constexpr const wchar_t* kTops[] = {L"A", L"B"};

/// Random operations, of which most fit what there is: by the model of the tree, and what a client of it keeps.
class AnyOperation {
public:
    AnyOperation(std::uint64_t seed, const PlainTree& plain, TreeClient& client, unsigned int stores = 2)
        : _random(seed), _plain(plain), _client(client), _stores(stores) {}

    TreeOperation next();

    /// A number below another one.
    unsigned int below(std::uint64_t count) { return static_cast<unsigned int>(_random() % count); }

private:
    TreeOperation::tCode anyCode(int kind, bool kept);
    std::wstring anyName();
    std::wstring anyRoute();

    std::mt19937_64 _random;
    const PlainTree& _plain;
    TreeClient& _client;
    const unsigned int _stores;
};

}  // namespace lumivard::platform::model
